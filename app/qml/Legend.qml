import QtQuick 2.15
import QtQuick.Controls 2.15

Column {
    id: legend
    spacing: 6

    // The points behind would make the numbers hard to read.
    Rectangle {
        parent: legend.parent
        anchors { fill: legend; margins: -8 }
        visible: legend.visible
        color: "#b0101418"
        z: -1
    }

    Label { anchors.right: parent.right; text: viewer.legendTitle; font.pixelSize: 13 }

    Row {
        anchors.right: parent.right
        spacing: 8
        // From the top down, so the colours and the values are taken from their end.
        Column {
            Repeater {
                model: viewer.legendColors
                Rectangle {
                    width: 14
                    height: 11
                    color: viewer.legendColors[viewer.legendColors.length - 1 - index]
                }
            }
        }
        Item {
            id: ticks
            width: 48
            height: 11 * viewer.legendColors.length
            Repeater {
                model: viewer.legendTicks
                Label {
                    y: ticks.height * (1 - index / (viewer.legendTicks.length - 1)) - height / 2
                    text: modelData
                    font.pixelSize: 12
                }
            }
        }
    }
}
