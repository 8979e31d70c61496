import QtQuick 2.15
import QtQuick.Controls 2.15

// A button that a mouse click does not take the keyboard to.
Button {
    id: button
    property string tip
    property bool menuOpen: false
    focusPolicy: Qt.TabFocus
    implicitHeight: 28
    implicitWidth: Math.max(implicitHeight, label.implicitWidth + 24)
    font.pixelSize: 12
    opacity: enabled ? 1 : 0.45
    contentItem: Label {
        id: label
        text: button.text
        font: button.font
        color: button.checked ? "white" : theme.text
        horizontalAlignment: Text.AlignHCenter
        verticalAlignment: Text.AlignVCenter
        elide: Text.ElideRight
    }
    background: Rectangle {
        radius: 3
        color: button.checked ? theme.fill : button.down || button.menuOpen ? theme.field : button.hovered ? theme.hover : theme.button
        border { color: button.visualFocus ? theme.text : theme.edge; width: button.visualFocus ? 2 : 1 }
    }
    leftPadding: 6
    rightPadding: 6
    Accessible.name: tip.length > 0 ? tip : text
    ToolTip.visible: tip.length > 0 && hovered && !down && !menuOpen
    Component.onDestruction: ToolTip.hide()  // one that still waits would open without a window
    ToolTip.delay: 600
    ToolTip.text: tip
    Keys.onEscapePressed: focusHome.forceActiveFocus()
    Keys.onReturnPressed: clicked()
    Keys.onEnterPressed: clicked()
}
