import QtQuick 2.15
import QtQuick.Controls 2.15

// A table of a model with the role "display"; only the rows in sight exist.
Item {
    id: table
    property var model: null
    property var heads: []
    property var widths: []
    property bool headsClickable: false
    property int selectedRow: -1
    property Component cell: null
    property alias contentY: view.contentY
    readonly property int rowHeight: 22
    signal headClicked(int column)
    signal rowClicked(int row, int modifiers)
    signal columnMoved(int from, int to)
    property var headMark: function (column) { return "" }

    function widthOf(column) { return column < widths.length ? widths[column] : 104 }
    function showRow(row) { view.contentY = Math.max(0, Math.min(row * rowHeight - view.height / 2, view.contentHeight - view.height)) }

    Item {
        id: headRow
        width: parent.width
        height: 24
        clip: true
        Rectangle { anchors.fill: parent; color: theme.bar }
        Row {
            x: -view.contentX
            Repeater {
                model: table.heads
                Item {
                    id: head
                    width: table.widthOf(index)
                    height: 24
                    Accessible.role: Accessible.ColumnHeader
                    Accessible.name: modelData
                    Label {
                        anchors { fill: parent; leftMargin: 6; rightMargin: 2 }
                        text: modelData + table.headMark(index)
                        elide: Text.ElideRight
                        verticalAlignment: Text.AlignVCenter
                        font.pixelSize: 12
                        font.bold: true
                        opacity: drag.drag.active ? 0.4 : 1
                    }
                    Rectangle { anchors.right: parent.right; width: 1; height: parent.height; color: theme.line }
                    MouseArea {
                        id: drag
                        property real pressedX
                        property bool moved: false
                        anchors.fill: parent
                        enabled: table.headsClickable
                        cursorShape: enabled ? Qt.PointingHandCursor : Qt.ArrowCursor
                        onPressed: { pressedX = mouse.x; moved = false }
                        onPositionChanged: if (Math.abs(mouse.x - pressedX) > 8) moved = true
                        onReleased: {
                            if (!moved) return table.headClicked(index)
                            var at = mapToItem(headRow, mouse.x, 0).x + view.contentX
                            var column = 0
                            for (var edge = 0; column < table.heads.length - 1 && edge + table.widthOf(column) < at; ++column) edge += table.widthOf(column)
                            if (column !== index) table.columnMoved(index, column)
                        }
                    }
                }
            }
        }
    }
    TableView {
        id: view
        anchors { fill: parent; topMargin: 24 }
        clip: true
        reuseItems: true
        boundsBehavior: Flickable.StopAtBounds
        model: table.model
        columnWidthProvider: function (column) { return table.widthOf(column) }
        rowHeightProvider: function () { return table.rowHeight }
        ScrollBar.vertical: ScrollBar { policy: ScrollBar.AsNeeded }
        ScrollBar.horizontal: ScrollBar { policy: ScrollBar.AsNeeded }
        delegate: table.cell !== null ? table.cell : textCell
    }
    Component {
        id: textCell
        Rectangle {
            implicitWidth: 60
            implicitHeight: 22
            color: row === table.selectedRow ? theme.accent : row % 2 ? theme.row : theme.field
            Label {
                anchors { fill: parent; leftMargin: 6; rightMargin: 4 }
                text: typeof display === "number" && display % 1 !== 0 ? display.toFixed(3) : display === undefined ? "" : display
                color: row === table.selectedRow ? "white" : theme.text
                font.pixelSize: 12
                elide: Text.ElideRight
                verticalAlignment: Text.AlignVCenter
            }
            MouseArea { anchors.fill: parent; onClicked: table.rowClicked(row, mouse.modifiers) }
        }
    }
}
