import QtQuick 2.15
import QtQuick.Controls 2.15
import QtQuick.Layouts 1.15

Pane {
    id: bar
    readonly property var line: viewer.timeline
    readonly property bool byFrame: line.frameCount > 0
    padding: 6

    RowLayout {
        anchors.fill: parent
        spacing: 6

        component TransportButton: Button {
            focusPolicy: Qt.NoFocus
            enabled: viewer.ready
            Layout.preferredWidth: 40
        }

        TransportButton { text: "\u25c0|"; onClicked: bar.line.stepFrames(-1); ToolTip.visible: hovered; ToolTip.text: "Frame back (Left)" }
        TransportButton {
            objectName: "playButton"
            text: bar.line.playing ? "\u275a\u275a" : "\u25b6"
            onClicked: bar.line.togglePlaying()
            ToolTip.visible: hovered
            ToolTip.text: bar.line.playing ? "Pause (Space)" : "Play (Space)"
        }
        TransportButton { text: "|\u25b6"; onClicked: bar.line.stepFrames(1); ToolTip.visible: hovered; ToolTip.text: "Frame on (Right)" }

        Slider {
            objectName: "cursor"
            focusPolicy: Qt.NoFocus
            Layout.fillWidth: true
            enabled: viewer.ready
            from: bar.byFrame ? 0 : bar.line.beginSeconds
            to: bar.byFrame ? Math.max(1, bar.line.frameCount - 1) : Math.max(bar.line.beginSeconds + 0.1, bar.line.endSeconds)
            stepSize: bar.byFrame ? 1 : 0
            value: bar.byFrame ? bar.line.frame : bar.line.cursorSeconds
            onMoved: bar.byFrame ? bar.line.seekFrame(Math.round(value)) : bar.line.seekSeconds(value)
        }

        Label {
            objectName: "frameText"
            text: bar.byFrame ? "frame " + bar.line.frame + " / " + (bar.line.frameCount - 1) : ""
            font.family: "DejaVu Sans Mono"
            font.pixelSize: 12
        }
        Label {
            Layout.leftMargin: 10
            Layout.rightMargin: 6
            text: viewer.ready ? bar.line.cursorText : ""
            font.family: "DejaVu Sans Mono"
            font.pixelSize: 12
        }
        ComboBox {
            id: speed
            readonly property var speeds: [0.1, 0.25, 0.5, 1, 2, 5, 10]
            focusPolicy: Qt.NoFocus
            Layout.preferredWidth: 84
            model: speeds.map(function (factor) { return "\u00d7 " + factor })
            currentIndex: speeds.indexOf(bar.line.speed)
            onActivated: bar.line.speed = speeds[index]
        }
        CheckBox {
            focusPolicy: Qt.NoFocus
            text: "Loop"
            checked: bar.line.loop
            onToggled: bar.line.loop = checked
        }
        CheckBox {
            focusPolicy: Qt.NoFocus
            text: "By time"
            checked: !viewer.playByFrame
            onToggled: viewer.playByFrame = !checked
        }
    }
}
