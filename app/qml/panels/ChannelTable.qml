import QtQuick 2.15
import QtQuick.Controls 2.15
import "../parts"

// One row a channel: a check to show it, its number and angles. A click marks a row, Shift marks up to it, Ctrl adds
// one; the checks of marked rows go together, and so does the space bar. A head sorts, three ways.
Table {
    id: table
    property int anchor: -1
    property int sortColumn: 1
    property int sortOrder: 0
    signal showAsked(var rows, bool shown)

    label: "Channels"
    heads: model ? model.headerData : []
    // Columns without a name of their own hold nothing; what a narrow panel lacks, the angles give.
    readonly property real spare: Math.min(12, Math.max(0, (width - 239) / 3))
    widths: heads.map(function (head, column) { return head === "N/A" ? 0 : [30, 48 + spare, 76 + spare, 71 + spare][column] })
    headsClickable: true
    headsMovable: false
    headMark: function (column) { return column !== sortColumn || sortOrder === 0 ? "" : sortOrder > 0 ? " \u25b4" : " \u25be" }
    order: (serial, sortOrder === 0 ? null : sorted())
    onHeadClicked: {
        sortOrder = column !== sortColumn ? 1 : sortOrder === 1 ? -1 : sortOrder === -1 ? 0 : 1
        sortColumn = column
    }
    onRowClicked: mark(row, modifiers)
    onRowToggled: showAsked(marked(rowOf(row)), !isShown(rowOf(row)))

    function rowOf(row) { return order ? order[row] : row }
    function value(row, column) { return model.data(model.index(row, column)) }
    function isMarked(row) { return Boolean(model.data(model.index(row, 0), 8)) }
    function isShown(row) { return Boolean(value(row, 0)) }
    function all() {
        var rows = []
        for (var row = 0; row < rowCount; ++row) rows.push(row)
        return rows
    }
    function sorted() {
        var keys = all().map(function (row) { return Number(value(row, sortColumn)) })
        return all().sort(function (a, b) { return sortOrder * (keys[a] - keys[b]) || a - b })
    }
    /// The marked rows, if this is one of them, else this alone.
    function marked(row) { return isMarked(row) ? all().filter(isMarked) : [row] }
    function mark(row, modifiers) {
        if (modifiers & Qt.ControlModifier) model.setSelectRange(rowOf(row))
        else if ((modifiers & Qt.ShiftModifier) && anchor >= 0) {
            model.setSelectRange(-1)
            for (var i = Math.min(anchor, row); i <= Math.max(anchor, row); ++i) model.setSelectRange(rowOf(i))
        } else model.setSelectRange(-1, rowOf(row))
        if (!(modifiers & Qt.ShiftModifier)) anchor = row
        model.refresh()
    }

    cell: TableCell {
        id: cell
        readonly property var value: display
        marked: (table.serial, value !== undefined && table.isMarked(row))
        text: column === 0 || value === undefined ? "" : column === 1 ? value : Number(value).toFixed(3) + "\u00b0"
        numeric: true
        Check {
            objectName: column === 0 ? "channel-" + (row + 1) : ""
            visible: column === 0
            anchors.centerIn: parent
            focusPolicy: Qt.NoFocus
            Accessible.name: "Channel " + (row + 1)
            checked: column === 0 && Boolean(cell.value)
            onClicked: {
                table.showAsked(table.marked(row), checked)
                checked = Qt.binding(function () { return column === 0 && Boolean(cell.value) })
            }
        }
    }
}
