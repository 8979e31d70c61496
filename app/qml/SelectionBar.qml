import QtQuick 2.15
import QtQuick.Controls 2.15
import Skarnvisor 1.0
import "parts"

// What can be done with the points in the band: list them, cut them out, take a cut back, or turn the cut round.
Rectangle {
    id: bar
    objectName: "selectionBar"
    readonly property var buffer: viewer.buffer
    readonly property bool cuts: buffer !== null && typeof buffer.singleFrameSelectedAreaFiltering === "function"
    property bool cutMade: false
    property bool undoable: false  // one undo follows a cut
    property bool reversed: false
    visible: buffer !== null && (canvas.tool === CloudCanvas.Select || window.selecting || cutMade)
    width: row.width + 16
    height: row.height + 10
    radius: 4
    color: theme.veil
    border.color: theme.line
    onBufferChanged: cutMade = undoable = reversed = false

    // The buffer takes back what the matrix holds that stands at that moment: the cut's own must stand then.
    property matrix4x4 cutMatrix
    property matrix4x4 nowMatrix
    function cut() {
        cutMatrix = buffer.selectionMatrix
        buffer.singleFrameSelectedAreaFiltering()
        cutMade = undoable = true
    }
    function undo() {
        nowMatrix = buffer.selectionMatrix
        buffer.selectionMatrix = cutMatrix
        buffer.singleFrameSelectedAreaRevokedOnce()
        buffer.selectionMatrix = nowMatrix
        undoable = false
    }
    function reverse() { buffer.singleFrameSelectedAreaReverse(); reversed = !reversed }
    function clear() { buffer.singleFrameSelectedAreaRevokedAll(); cutMade = undoable = reversed = false }

    Flow {
        id: row
        anchors.centerIn: parent
        spacing: 6
        // As wide as what is in it, in as many rows as the canvas needs.
        width: {
            var all = 0
            for (var i = 0; i < children.length; ++i) if (children[i].visible) all += children[i].width + spacing
            return Math.min(all, canvas.width - 40)
        }
        Label {
            objectName: "selectionText"
            height: 28
            verticalAlignment: Text.AlignVCenter
            font.pixelSize: 12
            text: window.selecting ? viewer.pointsSelected.toLocaleString(Qt.locale("en"), "f", 0) + (viewer.pointsSelected === 1 ? " point selected" : " points selected")
                : bar.cutMade && canvas.tool !== CloudCanvas.Select ? (bar.reversed ? "Only the cut is shown" : "A part is cut out") : "Draw a band over points"
        }
        PushButton { objectName: "listSelected"; visible: window.selecting && !window.tableShown; text: "List"; tip: "Show the selected points in the table"; onClicked: window.showTable(true) }
        PushButton { objectName: "areaCut"; visible: bar.cuts && window.selecting; text: "Cut out"; tip: "Hide the selected points in every frame"; onClicked: bar.cut() }
        PushButton { objectName: "undoCut"; visible: bar.cutMade; enabled: bar.undoable; text: "Undo cut"; tip: "Show what the last cut hid"; onClicked: bar.undo() }
        PushButton { objectName: "reverseCut"; visible: bar.cutMade; text: bar.reversed ? "Show the rest" : "Show only the cut"; tip: "Turn the cut round"; onClicked: bar.reverse() }
        PushButton { objectName: "clearCuts"; visible: bar.cutMade; text: "Clear cuts"; tip: "Show every point again"; onClicked: bar.clear() }
        PushButton { objectName: "clearSelection"; visible: window.selecting; text: "Clear"; tip: "End the selection (Escape)"; onClicked: window.clearSelection() }
    }
}
