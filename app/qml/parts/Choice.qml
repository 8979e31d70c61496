import QtQuick 2.15
import QtQuick.Controls 2.15

// A combo box that a mouse click does not take the keyboard to.
ComboBox {
    property string label
    focusPolicy: Qt.TabFocus
    implicitHeight: 28
    font.pixelSize: 12
    opacity: enabled ? 1 : 0.45
    Accessible.name: label
    ToolTip.visible: label.length > 0 && hovered && !popup.visible
    ToolTip.delay: 600
    ToolTip.text: label
}
