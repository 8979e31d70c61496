import QtQuick 2.15
import QtQuick.Controls 2.15

// A collapsible part of the dock, which remembers whether it is open. Its content is made when it is opened.
Column {
    id: section
    property string name: title
    property string title
    property bool shown: true
    property bool open: false
    property bool keeps: false  // the content holds what the user has set, and outlives its being closed
    property bool opened: false
    onOpenChanged: if (open) opened = true
    property Component content
    property string hint: ""
    readonly property Item item: loader.item
    visible: shown
    width: parent ? parent.width : 0

    function toggle() {
        open = !open
        prefs.setValue("panels/" + name, open)
    }
    Component.onCompleted: { open = prefs.value("panels/" + name, open); if (open) opened = true }

    ItemDelegate {
        id: head
        objectName: "section-" + section.name
        width: parent.width
        height: 30
        focusPolicy: Qt.TabFocus
        Accessible.name: section.title + (section.open ? ", open" : ", closed")
        onClicked: section.toggle()
        background: Rectangle {
            color: head.hovered || head.visualFocus ? theme.row : theme.bar
            Rectangle { width: parent.width; height: 1; color: theme.line }
        }
        FocusRing { anchors.margins: 1 }
        contentItem: Row {
            spacing: 6
            Label { text: section.open ? "\u25be" : "\u25b8"; color: theme.faint; anchors.verticalCenter: parent.verticalCenter; width: 12 }
            Label { text: section.title; font.bold: true; font.pixelSize: 13; anchors.verticalCenter: parent.verticalCenter }
            Label { text: section.hint; color: theme.faint; font.pixelSize: 12; anchors.verticalCenter: parent.verticalCenter }
        }
    }
    Loader {
        id: loader
        // Neither an unseen nor a closed panel costs anything.
        active: section.keeps ? section.opened : section.shown && section.open
        visible: section.open
        width: parent.width - 20
        height: item && section.open ? item.implicitHeight : 0
        x: 10
        sourceComponent: section.content
    }
    Item { width: 1; height: 8; visible: loader.active && section.open }
}
