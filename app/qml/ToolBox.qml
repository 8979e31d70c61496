import QtQuick 2.15
import "tools"

// What the open lidar can be told to do, in the order in which its decoder works.
Column {
    id: box
    property bool eyeOwed: false
    spacing: 4
    topPadding: 6

    Repeater { model: lidarTools.rows; Tool { tool: modelData; width: box.width } }

    // The angle grid stands upright to the right of the lidar's axis, where the usual view sees its edge.
    Connections {
        target: viewer.buffer
        ignoreUnknownSignals: true
        function onRemakeConfigChanged() { box.eyeOwed = true }
    }
    Connections {
        target: viewer
        function onPictureChanged() {
            if (!box.eyeOwed || !viewer.buffer) return
            box.eyeOwed = false
            viewer.measureScene()
            canvas.setView(viewer.buffer.remakeConfig ? "right" : viewer.viewNames[0])
        }
    }
}
