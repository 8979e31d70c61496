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
    readonly property real viewWidth: width / (viewer.splitView ? 2 : 1)
    readonly property string gap: viewWidth < 240 ? "\n" : "  "  // between the numbers of a label
    readonly property real barHeight: selection.visible ? selection.y + selection.height : 0
    clip: true

    // Where a label of that size is put beside a spot of the first view, and hides nothing that is read.
    function labelPlace(spot, width, height) {
        var taken = [selection, stats].filter(function (item) { return item.visible }).map(function (item) { return Qt.rect(item.x, item.y, item.width, item.height) })
        if (drawn.item && drawn.item.place) taken.push(drawn.item.place)
        var right = spot.x + 12, left = spot.x - width - 12, above = spot.y - height - 6, below = spot.y + 12
        var places = [[right, above], [left, above], [right, below], [left, below]]
        for (var i = 0; i < taken.length; ++i) places.push([left, taken[i].y - height - 4], [left, taken[i].y + taken[i].height + 4])
        places = places.map(function (place) {
            return Qt.point(Math.max(4, Math.min(place[0], viewWidth - width - 4)), Math.max(4, Math.min(place[1], view.height - height - 4)))
        })
        function freeOf(rects) {
            return places.find(function (place) {
                return rects.every(function (rect) { return place.x >= rect.x + rect.width || place.x + width <= rect.x || place.y >= rect.y + rect.height || place.y + height <= rect.y })
            })
        }
        // Where there is no room at all, the buttons stay free.
        return freeOf(taken) || freeOf(taken.slice(0, 1)) || places[0]
    }

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
        Label {
            // Not where it would look out from under a legend.
            visible: !drawn.item || !drawn.item.place || drawn.item.place.width === 0 || x % view.viewWidth + width <= drawn.item.place.x || y + height <= drawn.item.place.y
            x: modelData.x + 4
            y: modelData.y - height
            text: modelData.text
            font.pixelSize: 11
            color: theme.label
            style: Text.Outline
            styleColor: theme.canvas
        }
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
    RulerLayer { id: ruler; anchors.fill: parent; z: 1 }
    PickedPoint { id: picked; z: 1 }
    SelectionBar { id: selection; anchors { horizontalCenter: parent.horizontalCenter; top: parent.top; topMargin: 10 } }

    Welcome { anchors.centerIn: parent; visible: !viewer.ready }

    // What the source has drawn over its points.
    Loader { id: drawn; anchors.fill: parent; source: viewer.renderFile }
    AxesCross {
        objectName: "axes"
        visible: viewer.ready && viewer.gridVisible
        narrow: view.viewWidth < 260 || view.height < 260
        anchors { left: parent.left; leftMargin: 6; bottom: parent.bottom; bottomMargin: 6 + (drawn.item ? drawn.item.cornerHeight : 0) }
    }

    Label {
        id: stats
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
