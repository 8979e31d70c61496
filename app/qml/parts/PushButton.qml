import QtQuick 2.15
import QtQuick.Controls 2.15

// A button that a mouse click does not take the keyboard to.
Button {
    property string tip
    property bool menuOpen: false
    focusPolicy: Qt.TabFocus
    implicitHeight: 28
    font.pixelSize: 12
    Accessible.name: tip.length > 0 ? tip : text
    ToolTip.visible: tip.length > 0 && hovered && !down && !menuOpen
    ToolTip.delay: 600
    ToolTip.text: tip
    Keys.onEscapePressed: focusHome.forceActiveFocus()
    Keys.onReturnPressed: clicked()
}
