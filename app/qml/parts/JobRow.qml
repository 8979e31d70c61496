import QtQuick 2.15
import QtQuick.Controls 2.15

// A long job: what it is, how far, and the way out. A job that is over in a moment is not shown.
Row {
    id: row
    property bool running: false
    property string text
    property real share: -1  // 0 to 1; below 0 nobody knows
    property bool ending: false
    property string way: "Cancel"
    property bool lasting: false
    signal cancelled()
    visible: running && lasting
    spacing: 8
    onRunningChanged: if (!running) lasting = false
    Timer { interval: 200; running: row.running && !row.lasting; onTriggered: row.lasting = true }

    Label {
        objectName: "jobText"
        anchors.verticalCenter: parent.verticalCenter
        font.pixelSize: 12
        text: row.ending ? "Ending: " + row.text : row.text
    }
    ProgressBar {
        anchors.verticalCenter: parent.verticalCenter
        width: 90
        height: 14
        background: Rectangle { radius: 2; color: theme.field; border.color: theme.edge }
        indeterminate: row.share < 0
        value: Math.max(0, row.share)
        Accessible.name: row.text + (row.share < 0 ? "" : ", " + Math.round(row.share * 100) + " percent")
    }
    PushButton {
        objectName: "cancelJob"
        anchors.verticalCenter: parent.verticalCenter
        text: row.way
        tip: row.way + ": " + row.text
        implicitHeight: 22
        enabled: !row.ending
        onClicked: row.cancelled()
    }
}
