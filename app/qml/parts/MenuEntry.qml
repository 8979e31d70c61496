import QtQuick 2.15
import QtQuick.Controls 2.15

// An entry of a menu with the key that does the same.
MenuItem {
    id: entry
    property string key
    property bool ticked: false  // follows what it stands for; the entry itself does not toggle
    implicitWidth: 24 + label.implicitWidth + (key.length > 0 ? keyLabel.implicitWidth + 40 : 24)
    implicitHeight: 26
    font.pixelSize: 12
    opacity: enabled ? 1 : 0.45
    readonly property color ink: highlighted ? "white" : theme.text
    indicator: Label {
        x: 8
        height: entry.height
        verticalAlignment: Text.AlignVCenter
        visible: entry.ticked
        text: "\u2713"
        color: entry.ink
    }
    arrow: Label {
        x: entry.width - width - 8
        height: entry.height
        verticalAlignment: Text.AlignVCenter
        visible: entry.subMenu !== null
        text: "\u25b8"
        color: entry.ink
    }
    contentItem: Item {
        Label {
            id: label
            anchors { left: parent.left; leftMargin: 20; right: keyLabel.left; rightMargin: 12; verticalCenter: parent.verticalCenter }
            text: entry.text
            font: entry.font
            color: entry.ink
            elide: Text.ElideMiddle
        }
        Label {
            id: keyLabel
            anchors { right: parent.right; verticalCenter: parent.verticalCenter }
            text: entry.key
            font: entry.font
            color: entry.highlighted ? "white" : theme.faint
        }
    }
    background: Rectangle { color: entry.highlighted ? theme.fill : "transparent" }
    Accessible.checked: ticked
    Accessible.name: key.length > 0 ? text + ", " + key : text
}
