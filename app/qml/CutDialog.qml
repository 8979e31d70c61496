import QtQuick 2.15
import QtQuick.Controls 2.15
import QtQuick.Layouts 1.15
import "parts"

Dialog {
    id: dialog
    objectName: "cutDialog"
    anchors.centerIn: Overlay.overlay
    modal: true
    title: "Cut frames out"
    width: 360
    standardButtons: Dialog.Save | Dialog.Cancel
    readonly property int last: Math.max(0, viewer.timeline.frameCount - 1)
    function begin() { from.value = Math.max(0, viewer.timeline.frame); to.value = last; open() }
    onAccepted: {
        var first = Math.min(from.value, to.value), end = Math.max(from.value, to.value)
        chooser.ask("Save the cut", ["pcap files (*.pcap)"], true, function (url) { jobs.cut(viewer.clip, url, first, end) })
    }
    GridLayout {
        width: parent.width
        columns: 2
        Label { text: "From frame" }
        SpinBox { id: from; objectName: "cutBegin"; Layout.fillWidth: true; editable: true; from: 0; to: dialog.last; Accessible.name: "First frame of the cut" }
        Label { text: "To frame" }
        SpinBox { id: to; objectName: "cutEnd"; Layout.fillWidth: true; editable: true; from: 0; to: dialog.last; Accessible.name: "Last frame of the cut" }
        Note { Layout.columnSpan: 2; Layout.fillWidth: true; text: "The packets go into the new capture as they are." }
    }
}
