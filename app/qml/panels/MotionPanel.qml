import QtQuick 2.15
import QtQuick.Controls 2.15
import "../parts"

// What the lidar's motion sensor says: the direction of its acceleration, and the values that its status text lists.
Column {
    id: panel
    readonly property var buffer: viewer.buffer
    readonly property bool on: buffer !== null && buffer.imuConfig > 0
    readonly property var axes: on && buffer.imuData ? buffer.imuData : []
    // Behind the first line: "name: value", parted by tabs.
    readonly property var values: on ? buffer.status.split("\n").slice(1).join("\t").split("\t").filter(function (text) { return text.indexOf(": ") > 0 }) : []
    spacing: 6
    topPadding: 6

    component Value: Row {
        property string name
        property string value
        width: panel.width
        Label { width: parent.width / 2; text: parent.name; font.pixelSize: 12; elide: Text.ElideRight }
        Label { width: parent.width / 2; text: parent.value; font { pixelSize: 12; family: "DejaVu Sans Mono" } horizontalAlignment: Text.AlignRight }
    }

    Check {
        objectName: "imuOn"
        text: "Read the motion sensor"
        checked: panel.on
        onToggled: panel.buffer.imuConfig = checked ? 1 : 0
    }
    Repeater {
        model: panel.values.length
        Value {
            readonly property var parts: (panel.values[index] || "").split(": ")
            name: parts[0]
            value: parts.length > 1 ? parts[1] : ""
        }
    }
    Note { visible: panel.on; text: panel.values.length > 0 ? "Acceleration in g, angular velocity in degrees a second. The acceleration points to:" : "No value has come yet: play, or step on." }
    Repeater {
        model: panel.axes.length === 3 ? ["x", "y", "z"] : []
        Value { name: modelData; visible: panel.values.length > 0; value: panel.axes.length === 3 ? panel.axes[index].toFixed(3) : "" }
    }
}
