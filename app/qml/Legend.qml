import QtQuick 2.15
import QtQuick.Controls 2.15
import "parts"

// The ramp with its values. The lock keeps the range for the colour mode; a double click fits it.
Rectangle {
    id: legend
    property var scale
    readonly property var colors: scale.legendColors
    readonly property var ticks: scale.legendTicks
    readonly property bool shown: viewer.ready && window.legendShown && !scale.rgb
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
        Row {
            anchors.right: parent.right
            spacing: 4
            Label { text: legend.scale.legendTitle; font.pixelSize: 13 }
            Label { visible: legend.scale.locked; text: "locked"; font.pixelSize: 11; color: theme.accent; anchors.verticalCenter: parent.verticalCenter }
        }
        Row {
            anchors.right: parent.right
            spacing: 8
            // From the top down, so the colours and the values are taken from their end.
            Column {
                Repeater {
                    model: legend.colors.length
                    Rectangle { width: 14; height: 5; color: legend.colors[legend.colors.length - 1 - index] || "transparent" }
                }
            }
            Item {
                id: values
                width: 52
                height: 5 * legend.colors.length
                Repeater {
                    model: legend.ticks.length
                    Label {
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
