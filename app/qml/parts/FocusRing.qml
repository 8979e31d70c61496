import QtQuick 2.15

// Marks the control that has the keyboard, once keys are used.
Rectangle {
    anchors { fill: parent; margins: -1 }
    visible: parent.visualFocus
    color: "transparent"
    border { color: theme.text; width: 2 }
    radius: 4
}
