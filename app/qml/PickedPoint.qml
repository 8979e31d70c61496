import QtQuick 2.15
import QtQuick.Controls 2.15

// A clicked point, in each view: where it is, and its row while the table of points is open.
Item {
    id: picked
    property var place: null
    property point spot
    readonly property real viewWidth: canvasView.viewWidth
    visible: place !== null && !isNaN(spot.x)

    function show(at) {
        place = at
        spot = canvas.project(at)
        if (window.tableShown) window.select(canvas.pointMatrix(at))
    }
    function hide() { place = null }
    Connections { target: canvas; function onCameraChanged() { if (picked.place) picked.spot = canvas.project(picked.place) } }
    Connections { target: viewer; function onCaptureChanged() { picked.hide() } }
    Connections { target: window; function onTableShownChanged() { if (window.tableShown && picked.place && !window.selecting) window.select(canvas.pointMatrix(picked.place)) } }

    Repeater {
        model: viewer.splitView ? 2 : 1
        Item {
            x: index * picked.viewWidth
            width: picked.viewWidth
            height: canvas.height
            clip: true
            Rectangle { x: picked.spot.x - 6; y: picked.spot.y - 6; width: 12; height: 12; radius: 6; color: "transparent"; border { color: theme.accent; width: 2 } }
        }
    }
    Label {
        objectName: "pickedText"
        visible: picked.spot.x > -6 && picked.spot.x < picked.viewWidth + 6 && picked.spot.y > -6 && picked.spot.y < canvas.height + 6
        readonly property point free: canvasView.labelPlace(picked.spot, width, height)
        x: free.x
        y: free.y
        text: picked.place ? "x " + picked.place.x.toFixed(3) + canvasView.gap + "y " + picked.place.y.toFixed(3) + canvasView.gap + "z "
            + picked.place.z.toFixed(3) + " m\ndistance " + picked.place.length().toFixed(3) + " m" : ""
        font.pixelSize: 12
        padding: 6
        background: Rectangle { color: theme.veil; radius: 4 }
        Accessible.role: Accessible.StaticText
        Accessible.name: "Point at " + text
    }
}
