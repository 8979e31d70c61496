import QtQuick 2.15
import QtQuick.Controls 2.15
import QtQuick.Layouts 1.15
import Skarnvisor 1.0
import "parts"

// What is open and how it goes; an error takes the line until it is clicked away, a job shows how far it is.
Rectangle {
    id: line
    readonly property bool failed: viewer.error.length > 0
    readonly property string toolHint: canvas.tool === CloudCanvas.Select ? "Draw a band over points, or click one; Escape ends"
        : canvas.tool === CloudCanvas.Ruler ? "Click two points to measure; Escape ends" : ""
    height: 28
    color: failed ? theme.errorBack : theme.bar

    // A tool tip in sight must not take the Escape key from the window.
    Component.onCompleted: ToolTip.toolTip.closePolicy = Popup.CloseOnPressOutsideParent

    RowLayout {
        anchors { fill: parent; leftMargin: 10; rightMargin: 10 }
        spacing: 14

        Label {
            objectName: "statusLabel"
            Layout.fillWidth: true
            text: line.failed ? viewer.error
                : viewer.opening ? "Opening \u2026"
                : line.toolHint.length > 0 ? line.toolHint
                : notice.fresh ? viewer.notice
                : viewer.ready ? viewer.title + "   " + viewer.statusText : "Open a capture with Ctrl+O, or press ? for the keys"
            color: line.failed ? theme.errorText : theme.faint
            font.pixelSize: 12
            elide: Text.ElideRight
            Accessible.role: line.failed ? Accessible.AlertMessage : Accessible.StaticText
            Accessible.name: text
            MouseArea { anchors.fill: parent; enabled: line.failed; onClicked: viewer.clearError() }
        }
        PushButton { visible: line.failed; text: "Dismiss"; implicitHeight: 22; onClicked: viewer.clearError() }

        // A long job: what, how far, and the way out.
        Row {
            id: job
            readonly property var writer: window.pointExport && window.pointExport.running ? window.pointExport : null
            visible: jobs.running || viewer.indexing || writer !== null
            spacing: 8
            Label {
                objectName: "jobText"
                anchors.verticalCenter: parent.verticalCenter
                font.pixelSize: 12
                text: job.writer ? "Saving points" : jobs.running ? (jobs.cancelling ? "Ending: " : "") + jobs.text : "Reading, " + viewer.timeline.frameCount + " frames found"
            }
            ProgressBar { anchors.verticalCenter: parent.verticalCenter; width: 90; indeterminate: job.writer === null && (!jobs.running || jobs.share < 0); value: job.writer ? job.writer.progress : Math.max(0, jobs.share) }
            PushButton { objectName: "cancelJob"; text: "Cancel"; implicitHeight: 22; enabled: !jobs.cancelling; onClicked: job.writer ? job.writer.cancel() : jobs.running ? jobs.cancel() : viewer.close() }
        }
        Label { visible: viewer.recording; text: viewer.recordingText; font.pixelSize: 12; color: "#e0555f" }
        Label { objectName: "lossLabel"; visible: viewer.lossText.length > 0; text: viewer.lossText; font.pixelSize: 12; color: theme.dark ? "#ffc46b" : "#8a5a00" }
        Label { objectName: "countLabel"; text: viewer.countText; font.pixelSize: 12 }
    }
    Timer { id: notice; property bool fresh: running; interval: 6000 }
    Connections { target: viewer; function onNoticeChanged() { notice.restart() } }
}
