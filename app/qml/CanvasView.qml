import QtQuick 2.15
import QtQuick.Controls 2.15
import Skarnvisor 1.0
import "parts"

// The canvas with what lies on it: ring labels, the band, the ruler, a picked point, what the source names.
Item {
    id: view
    property alias canvas: canvas
    property alias ruler: ruler
    property alias picked: picked
    clip: true

    CloudCanvas {
        id: canvas
        objectName: "canvas"
        anchors.fill: parent
        viewer: window.viewerObject
        Accessible.role: Accessible.Graphic
        Accessible.name: viewer.ready ? "Point cloud, " + viewer.countText : "Point cloud, nothing open"
        onBandDrawn: window.select(matrix)
        onPointClicked: tool === CloudCanvas.Ruler ? ruler.addPlace(place) : picked.show(place)
        onNothingClicked: picked.hide()
    }

    Repeater {
        model: canvas.labels
        Label { x: modelData.x + 4; y: modelData.y - height; text: modelData.text; font.pixelSize: 11; color: theme.label }
    }
    Rectangle {
        visible: viewer.splitView && viewer.ready
        x: parent.width / 2
        width: 1
        height: parent.height
        color: theme.line
    }

    Rectangle {
        readonly property rect band: canvas.band
        x: band.x; y: band.y; width: band.width; height: band.height
        visible: width > 0
        color: "#303d8bd9"
        border.color: theme.accent
    }
    RulerLayer { id: ruler; anchors.fill: parent }
    PickedPoint { id: picked }
    SelectionBar { id: selection; anchors { horizontalCenter: parent.horizontalCenter; top: parent.top; topMargin: 10 } }

    Welcome { anchors.centerIn: parent; visible: !viewer.ready }

    // What the source has drawn over its points.
    Loader { id: drawn; anchors.fill: parent; source: viewer.renderFile }
    AxesCross {
        objectName: "axes"
        visible: viewer.ready && viewer.gridVisible
        anchors { left: parent.left; leftMargin: 6; bottom: parent.bottom; bottomMargin: 6 + (drawn.item ? drawn.item.cornerHeight : 0) }
    }

    Label {
        objectName: "stats"
        anchors { left: parent.left; top: parent.top; margins: 12 }
        visible: window.statsShown && viewer.ready
        text: viewer.pictureRate.toFixed(1) + " pictures/s\n" + viewer.countText
        font.family: "DejaVu Sans Mono"
        font.pixelSize: 12
        padding: 6
        background: Rectangle { color: theme.veil; radius: 4 }
    }
}
