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
    visible: buffer !== null && (canvas.tool === CloudCanvas.Select || window.selecting || cutMade)
    width: row.width + 16
    height: row.height + 10
    radius: 4
    color: theme.veil
    border.color: theme.line
    onBufferChanged: cutMade = false

    Row {
        id: row
        anchors.centerIn: parent
        spacing: 6
        Label {
            objectName: "selectionText"
            anchors.verticalCenter: parent.verticalCenter
            font.pixelSize: 12
            text: window.selecting ? viewer.pointsSelected.toLocaleString(Qt.locale("en"), "f", 0) + " points selected" : "Draw a band over points"
        }
        PushButton { objectName: "listSelected"; visible: window.selecting && !window.tableShown; text: "List"; tip: "Show the selected points in the table"; onClicked: window.showTable(true) }
        PushButton { objectName: "areaCut"; visible: bar.cuts && window.selecting; text: "Cut out"; tip: "Hide the selected points in every frame"; onClicked: { bar.buffer.singleFrameSelectedAreaFiltering(); bar.cutMade = true } }
        PushButton { visible: bar.cuts && bar.cutMade; text: "Undo cut"; tip: "Takes the last cut back"; onClicked: bar.buffer.singleFrameSelectedAreaRevokedOnce() }
        PushButton { visible: bar.cuts && bar.cutMade; text: "Reverse"; tip: "Shows only what was cut out, or the rest again"; onClicked: bar.buffer.singleFrameSelectedAreaReverse() }
        PushButton { visible: bar.cuts && bar.cutMade; text: "Clear cuts"; onClicked: { bar.buffer.singleFrameSelectedAreaRevokedAll(); bar.cutMade = false } }
        PushButton { objectName: "clearSelection"; visible: window.selecting; text: "Clear"; tip: "End the selection (Escape)"; onClicked: window.clearSelection() }
    }
}
