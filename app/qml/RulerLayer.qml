import QtQuick 2.15
import QtQuick.Controls 2.15

// The distance between two points that the user clicked, in each view.
Item {
    id: ruler
    objectName: "ruler"
    property var places: []
    // Depends on the camera: the canvas tells when it moves.
    property var spots: []
    readonly property int views: viewer.splitView ? 2 : 1
    readonly property var span: places.length === 2 ? places[1].minus(places[0]) : Qt.vector3d(0, 0, 0)
    readonly property bool drawn: spots.length === 2 && !isNaN(spots[0].x) && !isNaN(spots[1].x)
    readonly property point from: drawn ? spots[0] : Qt.point(0, 0)
    readonly property point to: drawn ? spots[1] : Qt.point(0, 0)
    visible: places.length > 0

    function addPlace(place) { places = places.length === 1 ? [places[0], place] : [place]; place2d() }
    function clear() { places = []; spots = [] }
    function place2d() { spots = places.map(function (place) { return canvas.project(place) }) }
    Connections { target: canvas; function onCameraChanged() { ruler.place2d() } }
    Connections { target: viewer; function onCaptureChanged() { ruler.clear() } }

    Repeater {
        model: ruler.views
        Item {
            x: index * width
            width: ruler.width / ruler.views
            height: ruler.height
            clip: true
            Rectangle {
                visible: ruler.drawn
                x: ruler.from.x; y: ruler.from.y - 1
                width: Math.hypot(ruler.to.x - ruler.from.x, ruler.to.y - ruler.from.y)
                height: 2
                color: theme.mark
                transformOrigin: Item.Left
                rotation: Math.atan2(ruler.to.y - ruler.from.y, ruler.to.x - ruler.from.x) * 180 / Math.PI
            }
            Repeater {
                model: ruler.spots
                Rectangle { visible: !isNaN(modelData.x); x: modelData.x - 5; y: modelData.y - 5; width: 10; height: 10; radius: 5; color: "transparent"; border { color: theme.mark; width: 2 } }
            }
        }
    }
    Label {
        objectName: "rulerText"
        visible: ruler.places.length === 2 && ruler.drawn
        readonly property point free: canvasView.labelPlace(Qt.point((ruler.from.x + ruler.to.x) / 2, (ruler.from.y + ruler.to.y) / 2), width, height)
        x: free.x
        y: free.y
        text: ruler.span.length().toFixed(3) + " m" + (canvasView.gap === "\n" ? "\n" : ", ") + "horizontal " + Math.hypot(ruler.span.x, ruler.span.y).toFixed(3)
            + " m\n\u0394x " + ruler.span.x.toFixed(3) + canvasView.gap + "\u0394y " + ruler.span.y.toFixed(3) + canvasView.gap + "\u0394z " + ruler.span.z.toFixed(3) + " m"
        font.pixelSize: 12
        padding: 6
        background: Rectangle { color: theme.veil; radius: 4 }
        Accessible.role: Accessible.StaticText
        Accessible.name: "Distance " + text
    }
}
