import QtQuick 2.15
import QtQuick.Controls 2.15
import QtQml 2.15

// A table of a model with the role "display". There are only as many rows as are in sight, and each shows another one
// when the table moves: its length costs nothing. The arrows go through rows and heads, Enter sorts by the head that
// is marked, Ctrl with Left or Right moves its column.
Item {
    id: table
    property var model: null
    property var order: null  // model row of each row; null: as the model has them
    property var heads: []
    property var widths: []   // pixels; 0 hides a column, none given: as wide as its head
    property string label
    property bool headsClickable: false
    property bool headsMovable: headsClickable
    property bool numeric: false
    property bool rowNumbers: false
    property Component cell: textCell
    property var headMark: function (column) { return "" }
    property int currentRow: -1
    property int currentHead: 0
    property real contentY: 0
    readonly property int rowHeight: 22
    property int rowCount: 0
    readonly property int first: Math.floor(contentY / rowHeight)
    readonly property int lines: Math.min(rowCount, Math.ceil(body.height / rowHeight) + 1)
    property int serial: 0    // counts the states of the model
    property var sized: ({})  // widths that the user gave, by head
    property int focusPolicy: Qt.StrongFocus
    signal headClicked(int column)
    signal rowClicked(int row, int modifiers)
    signal rowToggled(int row)
    signal columnMoved(int from, int to)
    activeFocusOnTab: true
    clip: true
    Accessible.role: Accessible.Table
    Accessible.name: label + (currentRow >= 0 && currentRow < rowCount ? ", row " + (currentRow + 1) + " of " + rowCount : "")

    FontMetrics { id: metrics; font.pixelSize: 12; font.bold: true }
    function widthOf(column) {
        var title = heads[column]
        if (sized[title] !== undefined) return sized[title]
        return column < widths.length ? widths[column] : Math.max(84, Math.ceil(metrics.advanceWidth(title)) + 30)
    }
    function startOf(column) {
        var x = 0
        for (var i = 0; i < column; ++i) x += widthOf(i)
        return x
    }
    function setWidth(column, width) {
        sized[heads[column]] = Math.max(30, width)
        sizedChanged()
    }
    function scrollTo(y) { contentY = Math.max(0, Math.min(y, rowCount * rowHeight - body.height)) }
    function showRow(row) {
        if (row * rowHeight < contentY) scrollTo(row * rowHeight)
        else if ((row + 1) * rowHeight > contentY + body.height) scrollTo((row + 1) * rowHeight - body.height)
    }
    function centerRow(row) { currentRow = row; scrollTo((row + 0.5) * rowHeight - body.height / 2) }
    function goTo(row, modifiers) {
        if (rowCount === 0) return
        currentRow = Math.max(0, Math.min(row, rowCount - 1))
        showRow(currentRow)
        rowClicked(currentRow, modifiers)
    }
    function goToHead(step, move) {
        var to = currentHead + step
        if (!headsClickable) return flick.contentX = Math.max(0, Math.min(flick.contentX + 60 * step, flick.contentWidth - flick.width))
        if (to < 0 || to >= heads.length) return
        if (move && headsMovable) columnMoved(currentHead, to)
        currentHead = to
        flick.contentX = Math.max(Math.min(flick.contentX, startOf(to)), startOf(to + 1) - flick.width)
    }
    function reload() { rowCount = model ? model.rowCount() : 0; ++serial }
    onModelChanged: reload()
    onRowCountChanged: { scrollTo(contentY); if (currentRow >= rowCount) currentRow = -1 }
    onHeightChanged: scrollTo(contentY)
    Connections {
        target: table.model
        ignoreUnknownSignals: true
        function onModelReset() { table.reload() }
        function onDataChanged() { table.reload() }
        function onRowsInserted() { table.reload() }
        function onRowsRemoved() { table.reload() }
    }
    Keys.onPressed: {
        var page = Math.max(1, Math.floor(body.height / rowHeight) - 1)
        var rows = [[Qt.Key_Up, currentRow - 1], [Qt.Key_Down, currentRow + 1], [Qt.Key_PageUp, currentRow - page],
                    [Qt.Key_PageDown, currentRow + page], [Qt.Key_Home, 0], [Qt.Key_End, rowCount - 1]]
        for (var i = 0; i < rows.length; ++i)
            if (event.key === rows[i][0]) { goTo(rows[i][1], event.modifiers); return event.accepted = true }
        var moves = event.modifiers & Qt.ControlModifier
        event.accepted = true
        if (event.key === Qt.Key_Left || event.key === Qt.Key_Right) goToHead(event.key === Qt.Key_Left ? -1 : 1, moves)
        else if ((event.key === Qt.Key_Return || event.key === Qt.Key_Enter) && headsClickable) headClicked(currentHead)
        else if (event.key === Qt.Key_Space && currentRow >= 0) rowToggled(currentRow)
        else event.accepted = false
    }

    Rectangle { width: parent.width; height: 24; color: theme.bar }
    Label { visible: table.rowNumbers; width: numbers.width; height: 24; text: "#"; rightPadding: 6; font { pixelSize: 12; bold: true } color: theme.faint; horizontalAlignment: Text.AlignRight; verticalAlignment: Text.AlignVCenter }
    Item {
        id: numbers
        y: 24
        width: table.rowNumbers ? Math.max(40, Math.ceil(metrics.advanceWidth(table.rowCount)) + 14) : 0
        height: body.height
        clip: true
        Repeater {
            model: table.rowNumbers ? table.lines : 0
            TableLine {
                owner: table
                width: numbers.width
                Label { anchors.fill: parent; text: row + 1; rightPadding: 6; font.pixelSize: 12; color: row === table.currentRow ? theme.accent : theme.faint; horizontalAlignment: Text.AlignRight; verticalAlignment: Text.AlignVCenter }
            }
        }
    }
    Flickable {
        id: flick
        anchors { fill: parent; leftMargin: numbers.width; rightMargin: bar.visible ? bar.width : 0 }
        contentWidth: Math.max(width, table.startOf(table.heads.length))
        contentHeight: height
        flickableDirection: Flickable.HorizontalFlick
        boundsBehavior: Flickable.StopAtBounds
        clip: true
        ScrollBar.horizontal: ScrollBar { policy: ScrollBar.AsNeeded }
        Row { Repeater { model: table.heads.length; TableHead { owner: table; column: index; title: table.heads[index] || "" } } }
        TableRows { id: body; owner: table; y: 24; width: flick.contentWidth; height: flick.height - 24 }
    }
    ScrollBar {
        id: bar
        anchors { right: parent.right; top: parent.top; topMargin: 24; bottom: parent.bottom }
        orientation: Qt.Vertical
        visible: size < 1
        size: table.rowCount > 0 ? Math.min(1, body.height / (table.rowCount * table.rowHeight)) : 1
        minimumSize: 0.08
        policy: ScrollBar.AlwaysOn
        onPositionChanged: if (pressed) table.scrollTo(position * table.rowCount * table.rowHeight)
        Binding on position { value: table.contentY / Math.max(1, table.rowCount * table.rowHeight); when: !bar.pressed; restoreMode: Binding.RestoreNone }
    }
    Rectangle { anchors.fill: parent; visible: table.activeFocus; color: "transparent"; border.color: theme.accent }
    Component { id: textCell; TableCell { numeric: table.numeric } }
}
