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
    property int made: 0  // cuts in force
    readonly property bool cutMade: made > 0 || reversed
    // While the memory of a stack is taken the buffer cuts nothing.
    readonly property bool held: window.stackEditor.busy
    property bool undoable: false  // one undo follows a cut
    property bool reversed: false
    visible: buffer !== null && (canvas.tool === CloudCanvas.Select || window.selecting || cutMade)
    width: row.width + 16
    height: row.height + 10
    radius: 4
    color: theme.veil
    border.color: theme.line
    onBufferChanged: forget()

    // What was selected when the last cut was made: that is what its undo takes back.
    property matrix4x4 cutMatrix
    function cut() {
        cutMatrix = window.selection
        bufferCalls.call(buffer, "singleFrameSelectedAreaFiltering")
        ++made
        undoable = true
    }
    function undo() {
        bufferCalls.call(buffer, "singleFrameSelectedAreaRevokedOnce", [cutMatrix])
        --made
        undoable = false
    }
    function forget() {
        made = 0
        undoable = reversed = false
    }
    function reverse() { bufferCalls.call(buffer, "singleFrameSelectedAreaReverse"); reversed = !reversed }
    function clear() { bufferCalls.call(buffer, "singleFrameSelectedAreaRevokedAll"); forget() }

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
        PushButton { objectName: "areaCut"; visible: bar.cuts && window.selecting; enabled: !bar.held; text: "Cut out"; tip: "Hide the selected points in every frame"; onClicked: bar.cut() }
        PushButton { objectName: "undoCut"; visible: bar.cutMade; enabled: bar.undoable && !bar.held; text: "Undo cut"; tip: "Show what the last cut hid"; onClicked: bar.undo() }
        PushButton { objectName: "reverseCut"; visible: bar.cutMade; enabled: !bar.held; text: bar.reversed ? "Show the rest" : "Show only the cut"; tip: "Turn the cut round"; onClicked: bar.reverse() }
        PushButton { objectName: "clearCuts"; visible: bar.cutMade; enabled: !bar.held; text: "Clear cuts"; tip: "Show every point again"; onClicked: bar.clear() }
        PushButton { objectName: "clearSelection"; visible: window.selecting; text: "Clear"; tip: "End the selection (Escape)"; onClicked: window.clearSelection() }
    }
}
