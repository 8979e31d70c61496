import QtQuick 2.15
import QtQuick.Controls 2.15

// Which way the sensor's axes point: x to its right, y ahead, z up.
Item {
    id: cross
    property bool narrow: false
    readonly property real reach: narrow ? 18 : 28
    readonly property var names: ["x", "y", "z"]
    readonly property var tints: theme.dark ? ["#e5646c", "#62c06e", "#6aa2f0"] : ["#c02630", "#1f7a2c", "#1f5fc4"]
    width: 2 * reach + 24
    height: width
    Accessible.role: Accessible.Graphic
    Accessible.name: "Directions of the axes"

    // Behind the axes that point away, too.
    Rectangle { z: -2; anchors.fill: parent; radius: width / 2; color: theme.veil }
    Repeater {
        model: 3
        Item {
            readonly property vector3d axis: canvas.axes[index]
            readonly property real span: Math.hypot(axis.x, axis.y) * cross.reach
            x: cross.width / 2
            y: cross.height / 2
            // The one that points to the eye lies over the others.
            z: axis.z
            Rectangle {
                y: -height / 2
                width: parent.span
                height: 2
                color: cross.tints[index]
                transformOrigin: Item.Left
                rotation: Math.atan2(parent.axis.y, parent.axis.x) * 180 / Math.PI
                antialiasing: true
            }
            Label {
                x: parent.axis.x * (cross.reach + 8) - width / 2
                y: parent.axis.y * (cross.reach + 8) - height / 2
                text: cross.names[index]
                color: cross.tints[index]
                font { pixelSize: 12; bold: true }
            }
        }
    }
}
