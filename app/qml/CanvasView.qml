import QtQuick 2.15
import QtQuick.Controls 2.15
import Skarnvisor 1.0
import "parts"

// The canvas with what lies on it: ring labels, legends, the band, the ruler, a picked point, the camera picture.
Item {
    id: view
    property alias canvas: canvas
    property alias ruler: ruler
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
        visible: viewer.splitView
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

    Legend {
        scale: viewer.colors
        anchors { bottom: parent.bottom; bottomMargin: 18; right: parent.right; rightMargin: 18 + (viewer.splitView ? parent.width / 2 : 0) }
    }
    Legend {
        scale: viewer.sideColors
        visible: viewer.splitView && shown
        anchors { bottom: parent.bottom; bottomMargin: 18; right: parent.right; rightMargin: 18 }
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
    Image {
        id: overlay
        objectName: "overlay"
        visible: viewer.overlaySerial > 0
        anchors { left: parent.left; bottom: parent.bottom; margins: 14 }
        width: Math.min(parent.width * 0.3, 480)
        height: implicitWidth > 0 ? width * implicitHeight / implicitWidth : 0
        cache: false
        source: viewer.overlaySerial > 0 ? "image://overlay/" + viewer.overlaySerial : ""
        Rectangle { anchors.fill: parent; color: "transparent"; border.color: theme.line }
    }
}
