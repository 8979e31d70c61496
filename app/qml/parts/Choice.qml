import QtQuick 2.15
import QtQuick.Controls 2.15

// A combo box. A mouse click lends it the keyboard for as long as its list is open.
ComboBox {
    id: choice
    property string label
    property bool borrowed: false
    focusPolicy: Qt.TabFocus
    implicitHeight: 28
    font.pixelSize: 12
    opacity: enabled ? 1 : 0.45
    Accessible.name: label
    ToolTip.visible: label.length > 0 && hovered && !popup.visible
    ToolTip.delay: 600
    ToolTip.text: label
    Keys.onEscapePressed: focusHome.forceActiveFocus()

    contentItem: Label {
        leftPadding: 8
        text: choice.displayText
        font: choice.font
        elide: Text.ElideRight
        verticalAlignment: Text.AlignVCenter
    }
    background: Rectangle {
        radius: 3
        color: choice.down ? theme.field : choice.hovered ? theme.hover : theme.button
        border { color: choice.visualFocus ? theme.text : theme.edge; width: choice.visualFocus ? 2 : 1 }
    }
    delegate: ItemDelegate {
        id: entry
        width: choice.width - 2
        height: 26
        text: modelData
        font.pixelSize: 12
        font.bold: index === choice.currentIndex
        highlighted: index === choice.highlightedIndex
        contentItem: Label { text: entry.text; font: entry.font; color: entry.highlighted ? "white" : theme.text; elide: Text.ElideRight; verticalAlignment: Text.AlignVCenter }
        background: Rectangle { color: entry.highlighted ? theme.fill : "transparent" }
        leftPadding: 8
        rightPadding: 8
    }
    popup: Popup {
        y: choice.height
        width: choice.width
        height: Math.min(contentItem.implicitHeight + 2, window.height - topMargin - bottomMargin)
        topMargin: 6
        bottomMargin: 6
        padding: 1
        background: Rectangle { color: theme.panel; border.color: theme.edge }
        contentItem: ListView {
            clip: true
            implicitHeight: contentHeight
            model: choice.delegateModel
            currentIndex: choice.highlightedIndex
            boundsBehavior: Flickable.StopAtBounds
            ScrollBar.vertical: ScrollBar {}
        }
        onAboutToShow: {
            choice.borrowed = !choice.activeFocus
            if (choice.borrowed) choice.forceActiveFocus(Qt.MouseFocusReason)
        }
        onClosed: {
            if (choice.borrowed && choice.activeFocus) focusHome.forceActiveFocus()
            choice.borrowed = false
        }
    }
}
