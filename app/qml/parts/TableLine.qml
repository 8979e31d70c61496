import QtQuick 2.15

// The place of one row in a table: when the table moves, it goes round to the next row that comes into sight.
Item {
    property Item owner
    readonly property int row: owner.first + (index - owner.first % owner.lines + owner.lines) % owner.lines
    y: row * owner.rowHeight - owner.contentY
    height: owner.rowHeight
    visible: row < owner.rowCount
}
