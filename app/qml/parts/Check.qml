import QtQuick 2.15
import QtQuick.Controls 2.15

CheckBox {
    id: check
    property string tip
    focusPolicy: Qt.TabFocus
    font.pixelSize: 12
    padding: 2
    spacing: 6
    opacity: enabled ? 1 : 0.45
    indicator: Rectangle {
        x: check.leftPadding
        y: (check.height - height) / 2
        implicitWidth: 15
        implicitHeight: 15
        radius: 3
        color: check.checked ? theme.accent : theme.field
        border.color: check.checked ? theme.accent : theme.edge
        Label { anchors.centerIn: parent; visible: check.checked; text: "\u2713"; font { pixelSize: 12; bold: true } color: "white" }
    }
    FocusRing {}
    Accessible.name: text.length > 0 ? text : tip
    ToolTip.visible: tip.length > 0 && hovered
    Component.onDestruction: ToolTip.hide()  // one that still waits would open without a window
    ToolTip.delay: 600
    ToolTip.text: tip
}
