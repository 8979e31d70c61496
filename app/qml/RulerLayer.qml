import QtQuick 2.15
import QtQuick.Controls 2.15

// The distance between two points that the user clicked.
Item {
    id: ruler
    objectName: "ruler"
    property var places: []
    readonly property real metres: places.length === 2 ? places[0].minus(places[1]).length() : 0
    // Depends on the camera: the canvas tells when it moves.
    property var spots: []
    visible: places.length > 0

    function addPlace(place) { places = places.length === 1 ? [places[0], place] : [place]; place2d() }
    function clear() { places = [] }
    function place2d() { spots = places.map(function (place) { return canvas.project(place) }) }
    Connections { target: canvas; function onCameraChanged() { ruler.place2d() } }

    Rectangle {
        readonly property var from: ruler.spots.length === 2 ? ruler.spots[0] : Qt.point(0, 0)
        readonly property var to: ruler.spots.length === 2 ? ruler.spots[1] : Qt.point(0, 0)
        visible: ruler.spots.length === 2 && !isNaN(from.x) && !isNaN(to.x)
        x: from.x; y: from.y - 1
        width: Math.hypot(to.x - from.x, to.y - from.y)
        height: 2
        color: theme.mark
        transformOrigin: Item.Left
        rotation: Math.atan2(to.y - from.y, to.x - from.x) * 180 / Math.PI
    }
    Repeater {
        model: ruler.spots
        Rectangle { visible: !isNaN(modelData.x); x: modelData.x - 5; y: modelData.y - 5; width: 10; height: 10; radius: 5; color: "transparent"; border { color: theme.mark; width: 2 } }
    }
    Label {
        objectName: "rulerText"
        readonly property var from: ruler.spots.length === 2 ? ruler.spots[0] : Qt.point(0, 0)
        readonly property var to: ruler.spots.length === 2 ? ruler.spots[1] : Qt.point(0, 0)
        readonly property var span: ruler.places.length === 2 ? ruler.places[1].minus(ruler.places[0]) : Qt.vector3d(0, 0, 0)
        visible: ruler.places.length === 2 && !isNaN(from.x) && !isNaN(to.x)
        x: (from.x + to.x) / 2 + 10
        y: (from.y + to.y) / 2 - height - 6
        text: ruler.metres.toFixed(3) + " m\n\u0394x " + span.x.toFixed(3) + "  \u0394y " + span.y.toFixed(3) + "  \u0394z " + span.z.toFixed(3)
        font.pixelSize: 12
        padding: 6
        background: Rectangle { color: theme.veil; radius: 4 }
    }
}
