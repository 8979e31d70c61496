import QtQuick 2.15
import QtQuick.Controls 2.15
import QtQuick.Dialogs 1.3
import Skarnvisor 1.0

ApplicationWindow {
    id: window
    width: 1280
    height: 800
    minimumWidth: 640
    minimumHeight: 400
    visible: true
    title: viewer.title ? viewer.title + " - Skarnvisor" : "Skarnvisor"
    color: "#101418"
    palette {
        window: "#1b2026"; windowText: "#d6dce2"
        base: "#14181d"; alternateBase: "#20262d"; text: "#d6dce2"
        button: "#2a3139"; buttonText: "#d6dce2"; brightText: "white"
        light: "#3a434d"; mid: "#3a434d"; dark: "#101317"
        highlight: "#3d8bd9"; highlightedText: "white"
        toolTipBase: "#2a3139"; toolTipText: "#d6dce2"
    }

    Shortcut { sequence: "Space"; onActivated: viewer.timeline.togglePlaying() }
    Shortcut { sequence: "Left"; onActivated: viewer.timeline.stepFrames(-1) }
    Shortcut { sequence: "Right"; onActivated: viewer.timeline.stepFrames(1) }
    Shortcut { sequence: "Home"; onActivated: viewer.timeline.first() }
    Shortcut { sequence: "End"; onActivated: viewer.timeline.last() }
    Shortcut { sequence: StandardKey.Open; onActivated: openDialog.open() }

    FileDialog {
        id: openDialog
        title: "Open a capture"
        nameFilters: ["Captures (*.pcap *.pcapng)", "All files (*)"]
        onAccepted: viewer.openUrl(fileUrl)
    }

    header: ToolStrip {
        onOpenRequested: openDialog.open()
        onViewChosen: canvas.setView(name)
    }

    CloudCanvas {
        id: canvas
        objectName: "canvas"
        anchors.fill: parent
        viewer: window.viewerObject

        Repeater {
            model: canvas.labels
            Label {
                x: modelData.x + 4
                y: modelData.y - height
                text: modelData.text
                font.pixelSize: 11
                color: "#788490"
            }
        }

        Label {
            anchors.centerIn: parent
            visible: !viewer.ready
            text: viewer.opening ? "Opening ..." : "Open a capture, or drop one here"
            font.pixelSize: 18
            color: "#788490"
        }

        Legend {
            anchors { right: parent.right; bottom: parent.bottom; margins: 18 }
            visible: viewer.legendVisible
        }
    }

    DropArea {
        anchors.fill: parent
        onDropped: if (drop.hasUrls) viewer.openUrl(drop.urls[0])
    }

    readonly property var viewerObject: viewer

    footer: Column {
        TimelineBar { width: parent.width }
        StatusLine { width: parent.width }
    }
}
