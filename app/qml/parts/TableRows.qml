import QtQuick 2.15
import QtQuick.Controls 2.15

// The rows of a table that are in sight.
Item {
    id: body
    property Item owner
    clip: true
    MouseArea {
        anchors.fill: parent
        onClicked: {
            owner.forceActiveFocus(Qt.MouseFocusReason)
            var row = Math.floor((mouse.y + owner.contentY) / owner.rowHeight)
            if (row < owner.rowCount) owner.goTo(row, mouse.modifiers)
        }
        onWheel: {
            var before = owner.contentY
            owner.scrollTo(before - wheel.angleDelta.y / 120 * 3 * owner.rowHeight)
            wheel.accepted = wheel.angleDelta.y !== 0 && owner.contentY !== before
        }
    }
    Repeater {
        model: owner.lines
        TableLine {
            id: line
            owner: body.owner
            readonly property int modelRow: owner.order && row < owner.order.length ? owner.order[row] : row
            Row {
                Repeater {
                    model: owner.heads.length
                    Loader {
                        readonly property int row: line.modelRow
                        readonly property int column: index
                        readonly property bool odd: line.row % 2 === 1
                        readonly property bool current: line.row === owner.currentRow
                        readonly property var display: owner.serial, line.visible ? owner.model.data(owner.model.index(row, column)) : undefined
                        width: owner.widthOf(index)
                        height: owner.rowHeight
                        visible: width > 0
                        sourceComponent: owner.cell
                    }
                }
            }
        }
    }
    Rectangle {
        visible: owner.activeFocus && owner.currentRow >= 0
        y: owner.currentRow * owner.rowHeight - owner.contentY
        width: owner.startOf(owner.heads.length)
        height: owner.rowHeight
        color: "transparent"
        border.color: theme.text
    }
}
