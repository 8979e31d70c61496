import QtQuick 2.15
import QtQuick.Controls 2.15
import QtQuick.Layouts 1.15
import "parts"

// Which frames a cut takes: from the cursor on at first, the same again after that.
Dialog {
    id: dialog
    objectName: "cutDialog"
    anchors.centerIn: Overlay.overlay
    modal: true
    title: "Cut frames out"
    width: 380
    padding: 14
    focus: true
    footer: Buttons {}
    standardButtons: Dialog.Save | Dialog.Cancel
    readonly property int last: Math.max(0, viewer.timeline.frameCount - 1)
    readonly property int first: Math.min(from.value, to.value)
    readonly property int end: Math.max(from.value, to.value)
    property var cutClip: null
    function begin() {
        if (cutClip !== viewer.clip) {
            cutClip = viewer.clip
            to.value = last
            from.value = viewer.timeline.frame < last ? Math.max(0, viewer.timeline.frame) : 0
        }
        open()
    }
    function seconds() {
        if (viewer.clip === null) return 0
        var begins = viewer.clip.getFrameStartSeconds(first)
        return (end < last ? viewer.clip.getFrameStartSeconds(end + 1) : viewer.clip.endSeconds) - begins
    }
    onOpened: from.forceActiveFocus()
    Connections { target: viewer; function onCaptureChanged() { dialog.close() } }
    onAccepted: {
        var a = first, b = end
        chooser.ask("Save the cut", ["pcap files (*.pcap)"], true, function (url) { jobs.cut(viewer.clip, url, a, b) }, chooser.sourceName() + "-" + a + "-" + b)
    }
    GridLayout {
        width: parent.width
        columns: 3
        columnSpacing: 10
        rowSpacing: 8
        Keys.onReturnPressed: dialog.accept()
        Keys.onEnterPressed: dialog.accept()
        Label { text: "From frame" }
        SpinBox { id: from; objectName: "cutBegin"; Layout.fillWidth: true; editable: true; from: 0; to: dialog.last; Accessible.name: "First frame of the cut" }
        PushButton { text: "Cursor"; tip: "Begin at the frame that is shown"; onClicked: from.value = viewer.timeline.frame }
        Label { text: "To frame" }
        SpinBox { id: to; objectName: "cutEnd"; Layout.fillWidth: true; editable: true; from: 0; to: dialog.last; Accessible.name: "Last frame of the cut" }
        PushButton { text: "Cursor"; tip: "End with the frame that is shown"; onClicked: to.value = viewer.timeline.frame }
        Note {
            Layout.columnSpan: 3
            Layout.fillWidth: true
            text: dialog.visible ? (dialog.end - dialog.first + 1) + " frames, " + dialog.seconds().toFixed(1) + " s. The packets go into the new capture as they are." : ""
        }
    }
}
