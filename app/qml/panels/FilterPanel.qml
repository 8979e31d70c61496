import QtQuick 2.15
import QtQuick.Controls 2.15
import QtQuick.Layouts 1.15
import "../parts"

// The range filter over point attributes. The model does not tell its limits, so the panel keeps them; they begin anew
// with each buffer, as the model's do.
Column {
    id: panel
    readonly property var buffer: viewer.buffer
    readonly property var filter: buffer ? buffer.filterModel : null
    property var floatLimits: rows.atStart(rows.floats)
    property var intLimits: rows.atStart(rows.ints)
    property bool on: false
    spacing: 6
    topPadding: 6

    FilterRows { id: rows }
    onFilterChanged: reset()

    function apply() {
        if (!filter) return
        filter.setFilter(on, rows.flat(floatLimits), rows.flat(intLimits))
        window.refilter()
    }
    function reset() {
        floatLimits = rows.atStart(rows.floats)
        intLimits = rows.atStart(rows.ints)
        on = false
        mode.currentIndex = 0
        highlight.checked = false
        if (!filter) return
        filter.filterMode = 0
        filter.highlight = 0
        apply()
    }
    function setLimit(whole, index, end, value) {
        var limits = whole ? intLimits.slice() : floatLimits.slice()
        limits[index] = limits[index].slice()
        limits[index][end] = value
        if (whole) intLimits = limits; else floatLimits = limits
        on = true
        apply()
    }

    RowLayout {
        width: parent.width
        Check { objectName: "filterOn"; text: "Filter"; checked: panel.on; onToggled: { panel.on = checked; panel.apply() } }
        Choice {
            id: mode
            label: "How the ranges go together"
            Layout.fillWidth: true
            model: ["all must match", "any may match"]
            onActivated: { panel.filter.filterMode = index; panel.apply() }
        }
    }
    RowLayout {
        width: parent.width
        Check { id: highlight; text: "Highlight instead of hiding"; onToggled: { panel.filter.highlight = checked ? 1 : 0; panel.apply() } }
        Item { Layout.fillWidth: true }
        PushButton { text: "Reset"; tip: "All ranges open, the filter off"; onClicked: panel.reset() }
    }

    component RangeRow: RowLayout {
        id: rangeRow
        property var row
        property bool whole
        property int slot
        readonly property var limits: whole ? panel.intLimits[slot] : panel.floatLimits[slot]
        readonly property bool changed: limits[0] !== row.low || limits[1] !== row.high
        visible: panel.filter ? Boolean(panel.filter[row.flag]) : false
        width: panel.width
        Label { text: row.title; font.pixelSize: 12; font.bold: rangeRow.changed; Layout.preferredWidth: 120; elide: Text.ElideRight }
        NumberField { objectName: row.flag + "-low"; label: row.title + ", from"; decimals: whole ? 0 : 3; Layout.fillWidth: true; Layout.preferredWidth: 60; number: rangeRow.limits[0]; onEntered: panel.setLimit(whole, slot, 0, value) }
        NumberField { objectName: row.flag + "-high"; label: row.title + ", to"; decimals: whole ? 0 : 3; Layout.fillWidth: true; Layout.preferredWidth: 60; number: rangeRow.limits[1]; onEntered: panel.setLimit(whole, slot, 1, value) }
    }
    Repeater { model: rows.floats; RangeRow { row: modelData; whole: false; slot: index } }
    Repeater { model: rows.ints; RangeRow { row: modelData; whole: true; slot: index } }
    Note { text: "From above to: the range goes round, as azimuth 350 to 10 does. Where any may match, equal ends match nothing." }
}
