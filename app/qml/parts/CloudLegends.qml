import QtQuick 2.15
import ".."

// The legends of the points: one, or with two views one for each.
Item {
    id: legends
    // How much of the lower left corner is taken.
    property real cornerHeight: 0
    // Where the legend of the first view is.
    readonly property rect place: main.visible ? Qt.rect(main.x, main.y, main.width, main.height) : Qt.rect(0, 0, 0, 0)
    readonly property real margin: width / (viewer.splitView ? 2 : 1) < 260 || height < 260 ? 6 : 18
    component Corner: Legend {
        room: legends.height - 2 * legends.margin - canvasView.barHeight
        anchors { bottom: parent.bottom; right: parent.right; margins: legends.margin }
    }
    Corner { id: main; objectName: "legend"; scale: viewer.colors; anchors.rightMargin: legends.margin + (viewer.splitView ? parent.width / 2 : 0) }
    Corner { objectName: "sideLegend"; scale: viewer.sideColors; visible: viewer.splitView && shown }
}
