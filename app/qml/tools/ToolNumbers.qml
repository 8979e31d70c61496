import QtQuick 2.15
import QtQuick.Controls 2.15
import QtQuick.Layouts 1.15
import "../parts"

// The numbers of a tool, one a line; the two ends of a range share one.
Column {
    id: list
    property var tool
    property var values: []
    spacing: 3

    component Field: NumberField {
        property var entry
        property bool narrow: false
        objectName: "tool-" + list.tool.name + "-" + entry.at
        decimals: entry.decimals
        number: list.values[entry.at] || 0
        Layout.preferredWidth: narrow ? 54 : 64
        // What lies outside the limits comes back as the limit.
        onEntered: lidarTools.setNumber(list.tool.name, entry.at, value)
    }
    Repeater {
        model: list.tool.numbers
        RowLayout {
            id: line
            readonly property var next: list.tool.numbers[index + 1]
            readonly property bool range: next !== undefined && next.title.length === 0
            readonly property string name: (list.tool.switched ? list.tool.title + ", " : "") + modelData.title
            visible: modelData.title.length > 0
            width: list.width
            Label { text: modelData.title; font.pixelSize: 12; Layout.fillWidth: true; elide: Text.ElideRight }
            Field { entry: modelData; narrow: line.range; label: line.name + (line.range ? ", from" : "") }
            Label { visible: line.range; text: "to"; font.pixelSize: 12 }
            Field { visible: line.range; narrow: true; entry: line.range ? line.next : modelData; label: line.name + ", to" }
        }
    }
}
