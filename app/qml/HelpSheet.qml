import QtQuick 2.15
import QtQuick.Controls 2.15
import "parts"

Popup {
    id: sheet
    objectName: "help"
    anchors.centerIn: Overlay.overlay
    modal: true
    focus: true
    padding: 20
    contentWidth: keys.width + 10
    contentHeight: Math.min(head.height + 12 + keys.height, window.height - 80)
    background: Rectangle { color: theme.panel; border.color: theme.line; radius: 6 }
    readonly property var left: [
        ["Mouse", ""],
        ["Left drag", "turn around the pivot"],
        ["Right, middle or Shift+left drag", "move"],
        ["Wheel", "zoom to the cursor"],
        ["Click", "tell a point's place"],
        ["Double click", "turn around this point from now on"],
        ["", ""],
        ["View", ""],
        ["F", "fit what is shown"],
        ["Home", "back to the first view"],
        ["1 2 3 4 5 6", "front, back, left, right, top, bottom"],
        ["P", "perspective or orthographic"],
        ["Alt+arrows, + and -", "turn and zoom"],
        ["F11", "full screen"],
        ["", ""],
        ["Tables", ""],
        ["Arrows, Page Up/Down, Home, End", "through rows and heads"],
        ["Enter", "sort by the head"],
        ["Ctrl+Left, Ctrl+Right", "move the column"],
        ["Ctrl+C", "copy the row of a point"],
        ["Space", "switch the marked channels"]]
    readonly property var right: [
        ["Time", ""],
        ["Space", "play or pause"],
        ["Left, Right", "frame back, frame on"],
        ["Ctrl+Home, Ctrl+End", "first frame, last frame"],
        ["", ""],
        ["Tools", ""],
        ["S", "select points with a band"],
        ["R", "measure between two points"],
        ["Escape", "put the tool away, clear"],
        ["F9, F10", "side panels, table of points"],
        ["Tab, Alt+F", "to the next control, the menus"],
        ["?, F1", "these keys"],
        ["", ""],
        ["Files", ""],
        ["Ctrl+O, Ctrl+Shift+O", "open a file, a folder"],
        ["Ctrl+L", "live source"],
        ["Ctrl+P", "picture of the window"],
        ["Ctrl+W, Ctrl+Q", "close the source, the window"]]

    // The keys that opened it; a modal sheet keeps them from the window.
    Shortcut { sequences: ["?", "F1"]; enabled: sheet.opened; onActivated: sheet.close() }

    component KeyRows: Grid {
        property var rows
        columns: 2
        columnSpacing: 16
        rowSpacing: 3
        Repeater {
            model: rows.length * 2
            Label {
                readonly property var row: rows[Math.floor(index / 2)]
                // An empty label would have no place in the grid.
                text: row[index % 2] === "" ? " " : row[index % 2]
                font.pixelSize: 13
                font.bold: row[1] === "" && index % 2 === 0
                color: index % 2 ? theme.text : row[1] === "" ? theme.text : theme.accent
            }
        }
    }
    Item {
        id: head
        width: parent.width
        height: close.height
        Label { anchors.verticalCenter: parent.verticalCenter; text: "Keys and mouse"; font { pixelSize: 15; bold: true } }
        PushButton { id: close; anchors.right: parent.right; text: "Close"; tip: "Close (Escape)"; onClicked: sheet.close() }
    }
    // Beside each other where there is room, else one above the other.
    ScrollView {
        id: scroll
        focus: true
        Keys.onUpPressed: ScrollBar.vertical.decrease()
        Keys.onDownPressed: ScrollBar.vertical.increase()
        anchors { fill: parent; topMargin: head.height + 12 }
        clip: true
        contentWidth: keys.width
        contentHeight: keys.height
        Grid {
            id: keys
            columnSpacing: 40
            rowSpacing: 12
            columns: window.width > 860 ? 2 : 1
            KeyRows { rows: sheet.left }
            KeyRows { rows: sheet.right }
        }
    }
}
