import QtQuick 2.15
import QtQuick.Controls 2.15
import Skarnvisor 1.0
import "parts"

// The ramp with its values. The lock keeps the range for the colour mode; a double click fits it.
Rectangle {
    id: legend
    property var scale
    property real room: 1000  // height that there is for it
    readonly property real roomOfRamp: room - 40 - (scale.locked ? 20 : 0)
    readonly property real step: Math.max(1.5, Math.min(5, roomOfRamp / Math.max(1, colors.length)))
    readonly property var colors: scale.legendColors
    readonly property var ticks: scale.legendTicks
    readonly property bool shown: viewer.ready && window.legendShown && !scale.rgb && roomOfRamp >= 1.5 * colors.length
    visible: shown
    width: content.width + 16
    height: content.height + 16
    radius: 4
    // The points behind would make the numbers hard to read.
    color: theme.veil

    Column {
        id: content
        anchors.centerIn: parent
        spacing: 6
        Label { anchors.right: parent.right; text: legend.scale.legendTitle; font.pixelSize: 13 }
        Label { anchors.right: parent.right; visible: legend.scale.locked; text: "locked"; font.pixelSize: 11; color: theme.accent }
        Row {
            anchors.right: parent.right
            spacing: 8
            // From the top down, so the colours and the values are taken from their end.
            Column {
                Repeater {
                    model: legend.colors.length
                    Rectangle { width: 14; height: legend.step; color: legend.colors[legend.colors.length - 1 - index] || "transparent" }
                }
            }
            Item {
                id: values
                width: Math.max(24, childrenRect.width)
                height: legend.step * legend.colors.length
                Repeater {
                    model: legend.ticks.length
                    Label {
                        visible: values.height > 70 || index % 2 === 0
                        y: values.height * (1 - index / (legend.ticks.length - 1)) - height / 2
                        text: legend.ticks[index] || ""
                        font.pixelSize: 12
                    }
                }
            }
        }
    }
    MouseArea {
        id: mouse
        anchors.fill: parent
        enabled: canvas.tool === CloudCanvas.Orbit  // what is picked or drawn lies on the canvas
        hoverEnabled: true
        acceptedButtons: Qt.LeftButton | Qt.RightButton
        onClicked: if (mouse.button === Qt.RightButton) menu.popup()
        onDoubleClicked: legend.scale.fit()
        ToolTip.visible: containsMouse && !menu.visible
        ToolTip.delay: 800
        ToolTip.text: "Double click: fit to what is shown. Right click: more"
    }
    PopMenu {
        id: menu
        MenuEntry { text: "Fit to what is shown"; onTriggered: legend.scale.fit() }
        MenuEntry { text: "Lock this range"; ticked: legend.scale.locked; onTriggered: legend.scale.locked = !ticked }
    }
}
