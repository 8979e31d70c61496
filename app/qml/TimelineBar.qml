import QtQuick 2.15
import QtQuick.Controls 2.15
import QtQuick.Layouts 1.15
import "parts"

// Time: the track with its read-out above, the keys of a player and what is done with frames below.
Pane {
    id: bar
    readonly property var line: viewer.timeline
    readonly property Item stackEditor: stack
    readonly property bool canCut: cut.visible && cut.enabled
    readonly property bool canRecord: record.visible
    readonly property bool narrow: width < 900
    padding: 8
    topPadding: 6
    background: Rectangle { color: theme.window }

    component TransportButton: PushButton {
        enabled: viewer.ready
        leftPadding: 2
        rightPadding: 2
        Layout.preferredWidth: bar.narrow ? 28 : 38
    }
    component Gap: Rectangle { width: 1; Layout.preferredHeight: 20; color: theme.line }
    component Mono: Label { font { family: "DejaVu Sans Mono"; pixelSize: 12 } }

    ColumnLayout {
        anchors.fill: parent
        spacing: 6

        RowLayout {
            spacing: 8
            Column {
                Layout.preferredWidth: 206
                spacing: 4
                Mono {
                    objectName: "frameText"
                    text: bar.line.frameCount > 0 ? "frame " + bar.line.frame + " / " + (bar.line.frameCount - 1) : viewer.ready ? "no frame yet" : "no source"
                    color: viewer.ready ? theme.text : theme.faint
                }
                Mono { objectName: "timeText"; text: viewer.ready ? bar.line.cursorText : ""; color: theme.faint }
            }
            Loader { objectName: "trackBody"; Layout.fillWidth: true; source: viewer.trackBodyFile }
        }

        RowLayout {
            spacing: 6
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
            Check { objectName: "loop"; text: "Loop"; tip: "Begin again at the end"; visible: !viewer.live; checked: bar.line.loop; onToggled: bar.line.loop = checked }
            Check { objectName: "byTime"; text: "By time"; tip: "Play by the clock; otherwise every frame is shown"; visible: !viewer.live; enabled: !window.exporting; checked: !viewer.playByFrame; onToggled: viewer.playByFrame = !checked }
            Check { objectName: "follow"; text: "Follow"; tip: "Keep to the newest data"; visible: viewer.live; checked: bar.line.follow; onToggled: { bar.line.follow = checked; if (checked) bar.line.playing = true } }
            Item { Layout.fillWidth: true }
            Choice {
                objectName: "sensor"
                label: "Sensor of this capture"
                visible: viewer.sensors.length > 1
                Layout.fillWidth: true
                Layout.minimumWidth: 64
                Layout.maximumWidth: bar.narrow ? 112 : 160
                model: viewer.sensors
                displayText: bar.narrow ? currentText.replace(", port ", ":") : currentText
                currentIndex: viewer.sensor
                onActivated: viewer.showSensor(index)
            }
            StackEditor { id: stack; narrow: bar.narrow }
            Gap { visible: stack.visible && (cut.visible || record.visible) }
            PushButton {
                id: cut
                Layout.preferredWidth: bar.narrow ? 56 : 80
                objectName: "cutButton"
                text: "Cut\u2026"
                tip: "Save some of the frames as a capture of their own"
                visible: !viewer.live && viewer.clip !== null && typeof viewer.clip.cutPcap === "function" && typeof viewer.clip.fileList !== "function"
                enabled: bar.line.frameCount > 0 && !jobs.running
                onClicked: cutDialog.begin()
            }
            PushButton {
                id: record
                objectName: "recordButton"
                text: viewer.recording ? "End recording" : "Record\u2026"
                tip: viewer.recording ? "Close the file that is being recorded" : "Write what arrives to a capture"
                visible: viewer.live && viewer.clip !== null && typeof viewer.clip.setRecord === "function"
                onClicked: viewer.record(!viewer.recording)
            }
        }
    }
}
