import QtQuick 2.15
import QtQuick.Controls 2.15
import QtQuick.Layouts 1.15
import Skarnvisor 1.0
import "parts"

// What is open and how it goes; an error takes the line until it is dismissed.
Rectangle {
    id: line
    readonly property bool failed: viewer.error.length > 0
    readonly property string toolHint: canvas.tool === CloudCanvas.Select ? "Draw a band over points, or click one; Escape ends"
        : canvas.tool === CloudCanvas.Ruler ? "Click two points to measure; Escape ends" : ""
    readonly property string frameText: {
        var last = viewer.timeline.frameCount - 1
        var frame = String(viewer.timeline.frame)
        // Blanks of a digit's width: what follows stays where it is.
        while (frame.length < String(last).length) frame = "\u2007" + frame
        return last >= 0 ? "frame " + frame + " / " + last : ""
    }
    readonly property string sourceText: [viewer.title, viewer.lidarType, frameText, viewer.statusText]
        .filter(function (part) { return part.length > 0 }).join("   ")
    // A lidar's packets are counted, a point file has none.
    readonly property bool counted: viewer.buffer !== null && typeof viewer.buffer.importCorrectionsFile === "function"
    // The wrapped text has its height when the others of the line have taken their width.
    property real textHeight: 0
    function measure() { textHeight = message.implicitHeight }
    height: failed ? Math.max(28, textHeight + 10) : 28
    color: failed ? theme.errorBack : theme.bar

    // A tool tip in sight must not take the Escape key from the window.
    Component.onCompleted: ToolTip.toolTip.closePolicy = Popup.CloseOnPressOutsideParent

    component Fact: Label {
        id: fact
        font.pixelSize: 12
        elide: Text.ElideRight
        Accessible.name: text
        HoverHandler { id: hover }
        ToolTip.visible: hover.hovered && fact.truncated
        ToolTip.text: text
    }

    RowLayout {
        anchors { fill: parent; leftMargin: 10; rightMargin: 10 }
        spacing: 14

        Fact {
            id: message
            objectName: "statusLabel"
            Layout.fillWidth: true
            text: line.failed ? viewer.error
                : viewer.opening ? viewer.openingText
                : notice.fresh ? viewer.notice
                : line.toolHint.length > 0 ? line.toolHint
                : viewer.ready ? line.sourceText : "Open a capture with Ctrl+O, or press ? for the keys"
            color: line.failed ? theme.errorText : theme.faint
            wrapMode: line.failed ? Text.Wrap : Text.NoWrap
            maximumLineCount: line.failed ? 4 : 1
            onImplicitHeightChanged: Qt.callLater(line.measure)
            Accessible.role: line.failed ? Accessible.AlertMessage : Accessible.StaticText
        }
        PushButton { objectName: "dismiss"; visible: line.failed; text: "Dismiss"; tip: "Dismiss the message (Escape)"; implicitHeight: 22; onClicked: viewer.clearError() }

        JobLine {}
        Row {
            visible: window.exporting
            spacing: 8
            Label { anchors.verticalCenter: parent.verticalCenter; text: "Saving each frame"; font.pixelSize: 12; color: theme.accent }
            PushButton { objectName: "endFrameExport"; text: "End"; tip: "End the saving of each frame"; implicitHeight: 22; onClicked: window.endFrameExport() }
        }
        Fact { visible: viewer.recording; text: viewer.recordingText; color: theme.logError }
        Fact {
            objectName: "lossLabel"
            visible: !line.failed && text.length > 0
            text: viewer.lossText.length > 0 ? viewer.lossText : line.counted ? "no packets lost" : ""
            color: viewer.lossText.length > 0 ? theme.logWarning : theme.faint
            Layout.maximumWidth: line.width * 0.3
        }
        Fact { objectName: "countLabel"; visible: !line.failed && text.length > 0; text: viewer.countText }
        PushButton {
            objectName: "logErrors"
            visible: logModel.errorCount > 0 && !dock.logSeen
            text: logModel.errorCount === 1 ? "1 error" : logModel.errorCount + " errors"
            tip: "Show the log"
            implicitHeight: 22
            onClicked: dock.showLog()
        }
    }
    Timer { id: notice; property bool fresh: running; interval: 6000 }
    Connections { target: viewer; function onNoticeChanged() { notice.restart() } }
}
