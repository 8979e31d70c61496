import QtQuick 2.15
import QtQuick.Controls 2.15
import QtQuick.Layouts 1.15
import "../parts"

// One range of the point filter: bold once it is narrower than all, with a turn sign while it goes round.
RowLayout {
    id: rangeRow
    property var row
    property bool whole
    property var limits: [row.low, row.high]
    readonly property bool changed: limits[0] !== row.low || limits[1] !== row.high
    readonly property bool round: limits[0] > limits[1]
    signal entered(int end, double value)

    Label {
        text: rangeRow.row.title
        font.pixelSize: 12
        font.bold: rangeRow.changed
        color: rangeRow.changed ? theme.text : theme.faint
        Layout.preferredWidth: 120
        Layout.fillWidth: true
        elide: Text.ElideRight
        HoverHandler { id: hover }
        ToolTip.visible: hover.hovered && truncated
        ToolTip.text: text
    }
    NumberField { objectName: rangeRow.row.flag + "-low"; label: rangeRow.row.title + ", from"; decimals: rangeRow.whole ? 0 : 3; Layout.fillWidth: true; Layout.preferredWidth: 60; Layout.maximumWidth: 90; number: rangeRow.limits[0]; onEntered: rangeRow.entered(0, value) }
    Label { text: rangeRow.round ? "\u21bb" : "\u2013"; font.pixelSize: 12; horizontalAlignment: Text.AlignHCenter; Layout.preferredWidth: 12; Accessible.name: rangeRow.round ? "goes round" : "to" }
    NumberField { objectName: rangeRow.row.flag + "-high"; label: rangeRow.row.title + ", to"; decimals: rangeRow.whole ? 0 : 3; Layout.fillWidth: true; Layout.preferredWidth: 60; Layout.maximumWidth: 90; number: rangeRow.limits[1]; onEntered: rangeRow.entered(1, value) }
}
