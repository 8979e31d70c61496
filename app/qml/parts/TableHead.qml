import QtQuick 2.15
import QtQuick.Controls 2.15

// The head of one column of a table: a click sorts, a drag moves the column, a drag of its right edge sizes it.
Item {
    id: head
    property Item owner
    property int column
    property string title
    readonly property bool current: owner.activeFocus && owner.headsClickable && owner.currentHead === column
    objectName: "head-" + title
    width: owner.widthOf(column)
    height: 24
    z: mover.moved ? 1 : 0
    Accessible.role: Accessible.ColumnHeader
    Accessible.name: title
    Accessible.onPressAction: if (owner.headsClickable) owner.headClicked(column)

    // The column that a place of the head row belongs to.
    function columnAt(x) {
        var column = 0
        for (var edge = owner.widthOf(0); column < owner.heads.length - 1 && edge < x; edge += owner.widthOf(column)) ++column
        return column
    }

    Label {
        x: 6 + (mover.moved ? mover.shift : 0)
        width: parent.width - 10
        height: parent.height
        text: head.title + head.owner.headMark(head.column)
        horizontalAlignment: head.owner.numeric ? Text.AlignRight : Text.AlignLeft
        elide: Text.ElideRight
        verticalAlignment: Text.AlignVCenter
        font.pixelSize: 12
        font.bold: true
        color: mover.moved || head.current ? theme.accent : theme.text
    }
    Rectangle { anchors.bottom: parent.bottom; width: parent.width; height: 2; color: theme.accent; visible: head.current }
    // Where the column goes when it is let go.
    Rectangle {
        visible: mover.moved && mover.target !== head.column
        x: head.owner.startOf(mover.target + (mover.target > head.column ? 1 : 0)) - head.owner.startOf(head.column) - 1
        width: 3
        height: parent.height
        color: theme.accent
    }
    Rectangle { anchors.right: parent.right; width: 1; height: parent.height; color: theme.line }
    MouseArea {
        id: mover
        property real pressedX
        property real shift: 0
        property bool moved: false
        property int target: 0
        anchors.fill: parent
        enabled: head.owner.headsClickable
        cursorShape: moved ? Qt.ClosedHandCursor : enabled ? Qt.PointingHandCursor : Qt.ArrowCursor
        hoverEnabled: true
        preventStealing: true
        onPressed: { pressedX = mouse.x; shift = 0; moved = false }
        onPositionChanged: {
            if (!pressed || !head.owner.headsMovable) return
            shift = mouse.x - pressedX
            if (Math.abs(shift) > 8) moved = true
            target = head.columnAt(head.owner.startOf(head.column) + mouse.x)
        }
        onReleased: {
            var to = moved ? target : head.column
            var click = !moved
            moved = false
            if (click) head.owner.headClicked(head.column)
            else if (to !== head.column) head.owner.columnMoved(head.column, to)
        }
        onCanceled: moved = false
        ToolTip.visible: enabled && containsMouse && !pressed
        // A tip that still waits would open without a window.
        Component.onDestruction: ToolTip.hide()
        ToolTip.delay: 800
        ToolTip.text: head.owner.headsMovable ? "Click: sort, three ways. Drag: move the column" : "Click: sort, three ways"
    }
    MouseArea {
        anchors { right: parent.right; rightMargin: -3; top: parent.top; bottom: parent.bottom }
        width: 7
        cursorShape: Qt.SplitHCursor
        preventStealing: true
        onPositionChanged: if (pressed) head.owner.setWidth(head.column, mapToItem(head, mouse.x, 0).x)
    }
}
