import QtQuick 2.15
import QtQuick.Controls 2.15
import "../parts"

// Which of the returns of a shot is shown. The model does not tell the choice, so the panel keeps it; it begins with
// "Any" in each buffer, and again where a return mode has no such echo.
Flow {
    id: panel
    readonly property var buffer: viewer.buffer
    readonly property var titles: buffer && buffer.echoModel ? buffer.echoModel.echoTitles : []
    property int chosen: 0
    onBufferChanged: chosen = 0
    onTitlesChanged: if (chosen > 0 && chosen >= titles.length) choose(0)
    spacing: 10
    topPadding: 6
    Accessible.role: Accessible.Grouping
    Accessible.name: "Echoes"

    function choose(echo) {
        chosen = echo
        if (buffer && typeof buffer.setEchoModelReturnMode === "function") bufferCalls.call(buffer, "setEchoModelReturnMode", [echo])
    }
    Repeater {
        model: panel.titles
        RadioButton {
            id: radio
            objectName: "echo-" + modelData
            text: modelData
            font.pixelSize: 12
            padding: 2
            spacing: 6
            focusPolicy: Qt.TabFocus
            checked: index === panel.chosen
            onClicked: { panel.choose(index); checked = Qt.binding(function () { return index === panel.chosen }) }
            Accessible.name: modelData
            ToolTip.visible: hovered
            ToolTip.delay: 600
            ToolTip.text: index === 0 ? "Show all echoes" : "Show this echo only"
            indicator: Rectangle {
                x: radio.leftPadding
                y: (radio.height - height) / 2
                implicitWidth: 15
                implicitHeight: 15
                radius: 8
                color: theme.field
                border { color: radio.visualFocus ? theme.text : radio.checked ? theme.accent : theme.edge; width: radio.visualFocus ? 2 : 1 }
                Rectangle { anchors.centerIn: parent; visible: radio.checked; width: 9; height: 9; radius: 5; color: theme.accent }
            }
        }
    }
}
