import QtQuick 2.15
import QtQuick.Controls 2.15
import "../parts"

// What the lidar's motion sensor says: the direction of its acceleration here, all of it in the status line.
Column {
    id: panel
    readonly property var buffer: viewer.buffer
    readonly property var axes: buffer && buffer.imuData ? buffer.imuData : []
    spacing: 6
    topPadding: 6

    Check {
        objectName: "imuOn"
        text: "Read the motion sensor"
        checked: panel.buffer !== null && panel.buffer.imuConfig > 0
        onToggled: panel.buffer.imuConfig = checked ? 1 : 0
    }
    Note {
        visible: panel.buffer !== null && panel.buffer.imuConfig > 0
        text: panel.axes.length === 3 ? "Acceleration points to x " + panel.axes[0].toFixed(3) + ", y " + panel.axes[1].toFixed(3) + ", z " + panel.axes[2].toFixed(3) + ". The values are in the status line." : ""
    }
}
