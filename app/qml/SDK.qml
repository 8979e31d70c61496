import QtQuick 2.15
import "parts"

// What lies over the points of a lidar: the legends, and the picture of its camera.
CloudLegends {
    cornerHeight: overlay.visible ? overlay.height + 8 : 0
    Image {
        id: overlay
        objectName: "overlay"
        visible: viewer.overlaySerial > 0 && window.cameraShown
        anchors { left: parent.left; bottom: parent.bottom; margins: 14 }
        // Beside the legend.
        width: Math.min(parent.width * 0.3, 480, place.width > 0 ? place.x - 20 : parent.width)
        height: implicitWidth > 0 ? width * implicitHeight / implicitWidth : 0
        cache: false
        source: visible ? "image://overlay/" + viewer.overlaySerial : ""
        Rectangle { anchors.fill: parent; color: "transparent"; border.color: theme.line }
    }
}
