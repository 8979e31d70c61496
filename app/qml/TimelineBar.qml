import QtQuick 2.15
import QtQuick.Controls 2.15
import QtQuick.Layouts 1.15
import "parts"

Pane {
    id: bar
    readonly property var line: viewer.timeline
    readonly property bool byFrame: line.frameCount > 0 && viewer.playByFrame
    padding: 6
    background: Rectangle { color: theme.window }

    RowLayout {
        anchors.fill: parent
        spacing: 6

        component TransportButton: PushButton {
            enabled: viewer.ready
            Layout.preferredWidth: 38
        }

        TransportButton { text: "|\u25c0"; tip: "First frame (Ctrl+Home)"; onClicked: bar.line.first() }
        TransportButton { text: "\u25c0|"; tip: "Frame back (Left)"; onClicked: bar.line.stepFrames(-1) }
        TransportButton {
            objectName: "playButton"
            text: bar.line.playing ? "\u275a\u275a" : "\u25b6"
            tip: bar.line.playing ? "Pause (Space)" : "Play (Space)"
            onClicked: bar.line.togglePlaying()
        }
        TransportButton { text: "|\u25b6"; tip: "Frame on (Right)"; onClicked: bar.line.stepFrames(1) }
        TransportButton { text: "\u25b6|"; tip: "Last frame (Ctrl+End)"; onClicked: bar.line.last() }

        // The track with its clip; the filled part is what has been played.
        Slider {
            id: cursor
            objectName: "cursor"
            focusPolicy: Qt.TabFocus
            Layout.fillWidth: true
            enabled: viewer.ready
            Accessible.name: "Place in the capture"
            from: bar.byFrame ? 0 : bar.line.beginSeconds
            to: bar.byFrame ? Math.max(1, bar.line.frameCount - 1) : Math.max(bar.line.beginSeconds + 0.1, bar.line.endSeconds)
            stepSize: bar.byFrame ? 1 : 0
            value: bar.byFrame ? bar.line.frame : bar.line.cursorSeconds
            onMoved: bar.byFrame ? bar.line.seekFrame(Math.round(value)) : bar.line.seekSeconds(value)
            Connections {
                target: bar.line
                function onCursorChanged() { if (!cursor.pressed) cursor.value = bar.byFrame ? bar.line.frame : bar.line.cursorSeconds }
            }
            background: Rectangle {
                x: cursor.leftPadding
                y: cursor.topPadding + cursor.availableHeight / 2 - height / 2
                width: cursor.availableWidth
                height: 14
                radius: 3
                color: theme.field
                border.color: theme.line
                Rectangle { width: cursor.visualPosition * parent.width; height: parent.height; radius: 3; color: theme.accent; opacity: viewer.ready ? 0.55 : 0 }
                Label { anchors.centerIn: parent; text: viewer.title; font.pixelSize: 10; color: theme.faint; width: parent.width - 20; elide: Text.ElideMiddle; horizontalAlignment: Text.AlignHCenter }
            }
            handle: Rectangle {
                x: cursor.leftPadding + cursor.visualPosition * (cursor.availableWidth - width)
                y: cursor.topPadding + cursor.availableHeight / 2 - height / 2
                width: 7
                height: 22
                radius: 2
                visible: viewer.ready
                color: cursor.pressed || cursor.visualFocus ? theme.text : theme.accent
            }
        }

        Label {
            objectName: "frameText"
            visible: bar.line.frameCount > 0
            text: "frame " + bar.line.frame + " / " + (bar.line.frameCount - 1)
            font.family: "DejaVu Sans Mono"
            font.pixelSize: 12
        }
        Label {
            objectName: "timeText"
            text: viewer.ready ? bar.line.cursorText : ""
            font.family: "DejaVu Sans Mono"
            font.pixelSize: 12
        }
        Choice {
            readonly property var speeds: [0.1, 0.25, 0.5, 1, 2, 5, 10]
            objectName: "speed"
            label: "Speed"
            visible: !viewer.live
            Layout.preferredWidth: 76
            model: speeds.map(function (factor) { return "\u00d7 " + factor })
            currentIndex: speeds.indexOf(bar.line.speed)
            onActivated: bar.line.speed = speeds[index]
        }
        Check { text: "Loop"; visible: !viewer.live; checked: bar.line.loop; onToggled: bar.line.loop = checked }
        Check { text: "By time"; tip: "Play by the clock; otherwise every frame is shown"; visible: !viewer.live; enabled: !window.exporting; checked: !viewer.playByFrame; onToggled: viewer.playByFrame = !checked }
        Check { objectName: "follow"; text: "Follow"; tip: "Keep to the newest data"; visible: viewer.live; checked: bar.line.follow; onToggled: { bar.line.follow = checked; if (checked) bar.line.playing = true } }
        StackEditor {}
        PushButton {
            objectName: "cutButton"
            text: "Cut\u2026"
            tip: "Save some of the frames as a capture of their own"
            visible: !viewer.live && viewer.clip !== null && typeof viewer.clip.cutPcap === "function" && typeof viewer.clip.fileList !== "function"
            enabled: bar.line.frameCount > 0 && !jobs.running
            onClicked: cutDialog.begin()
        }
        PushButton {
            objectName: "recordButton"
            text: viewer.recording ? "End recording" : "Record\u2026"
            visible: viewer.live && viewer.clip !== null && typeof viewer.clip.setRecord === "function"
            onClicked: viewer.record(!viewer.recording)
        }
    }
}
