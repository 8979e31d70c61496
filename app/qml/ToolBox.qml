import QtQuick 2.15
import "tools"

// What the open lidar can be told to do, in the order in which its decoder works.
Column {
    id: box
    spacing: 4
    topPadding: 6

    Repeater { model: lidarTools.rows; Tool { tool: modelData; width: box.width } }
}
