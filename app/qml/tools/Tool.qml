import QtQuick 2.15
import QtQuick.Controls 2.15
import QtQuick.Layouts 1.15
import "../parts"

// One tool: its switch, and its numbers while it is on. One that refines another is there while that one is on.
Column {
    id: item
    property var tool
    readonly property var stand: lidarTools.state[tool.name] || { on: false, numbers: [] }
    readonly property bool on: stand.on || !tool.switched
    readonly property var whole: tool.part.length > 0 ? lidarTools.state[tool.part] : null
    readonly property int indent: whole ? 20 : 0
    visible: tool.part.length === 0 || Boolean(whole && whole.on)
    spacing: 2

    RowLayout {
        visible: item.tool.switched
        x: item.indent
        width: item.width - item.indent
        Check {
            objectName: "tool-" + item.tool.name
            text: item.tool.title
            tip: item.tool.tip
            Layout.fillWidth: true
            checked: item.stand.on
            // A switch that the lidar refuses goes back.
            onToggled: { lidarTools.switchTo(item.tool.name, checked); checked = Qt.binding(function () { return item.stand.on }) }
        }
        PushButton {
            objectName: "tool-" + item.tool.name + "-reset"
            visible: item.on && item.tool.numbers.length > 1
            text: "Reset"
            tip: "Back to the numbers at the opening"
            implicitHeight: 22
            Layout.preferredWidth: 52
            Accessible.name: item.tool.title + ", reset"
            onClicked: lidarTools.reset(item.tool.name)
        }
    }
    ToolNumbers {
        visible: item.on && item.tool.numbers.length > 0
        x: item.tool.switched ? 20 : 0
        width: item.width - x
        tool: item.tool
        values: item.stand.numbers
    }
}
