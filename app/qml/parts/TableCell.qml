import QtQuick 2.15
import QtQuick.Controls 2.15

// A value in a table, or a text given instead of it.
Rectangle {
    id: cell
    property bool numeric: false
    property bool marked: current
    property string text: typeof display === "number" && display % 1 !== 0 ? display.toFixed(3) : display === undefined ? "" : display
    color: marked ? theme.accent : odd ? theme.row : theme.field
    Label {
        anchors { fill: parent; leftMargin: 6; rightMargin: 6 }
        text: cell.text
        color: cell.marked ? "white" : theme.text
        font.pixelSize: 12
        elide: Text.ElideRight
        horizontalAlignment: cell.numeric ? Text.AlignRight : Text.AlignLeft
        verticalAlignment: Text.AlignVCenter
        Accessible.role: Accessible.Cell
    }
}
