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
    property bool any: false
    property bool highlight: false
    readonly property var titled: floatLimits.concat(intLimits)
    spacing: 6
    topPadding: 6

    FilterRows { id: rows }
    readonly property var hiddenLevels: buffer && buffer.toolSettings && buffer.toolSettings.toggleDirtry || []
    onFilterChanged: begin()
    Component.onCompleted: begin()
    Connections { target: panel.filter; ignoreUnknownSignals: true; function onHighlightChanged() { panel.highlight = panel.filter.highlight !== 0 } }

    function begin() {
        floatLimits = rows.atStart(rows.floats)
        intLimits = rows.atStart(rows.ints)
        on = filter !== null && filter.filterEnabled
        any = filter !== null && filter.filterMode === 1
        highlight = filter !== null && filter.highlight !== 0
    }
    function apply() {
        if (!filter) return
        filter.filterMode = any ? 1 : 0
        filter.setFilter(on, rows.flat(floatLimits), rows.flat(intLimits))
        window.refilter()
    }
    function reset() {
        if (!filter) return
        filter.reset()
        filter.filterMode = 0
        filter.highlight = 0
        begin()
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
        Check { objectName: "filterOn"; text: "Filter"; tip: "Test the points against the ranges"; checked: panel.on; onToggled: { panel.on = checked; panel.apply() } }
        Choice {
            objectName: "filterMode"
            label: "How the ranges go together"
            Layout.fillWidth: true
            model: ["all must match", "any may match"]
            currentIndex: panel.any ? 1 : 0
            onActivated: { panel.any = index === 1; panel.apply() }
        }
    }
    Flow {
        width: parent.width
        spacing: 6
        Check { objectName: "filterHighlight"; height: 28; text: "Highlight instead of hiding"; tip: "Mark the points outside and leave them in the picture"; checked: panel.highlight; onToggled: { panel.filter.highlight = checked ? 1 : 0; panel.apply() } }
        PushButton { objectName: "filterReset"; text: "Reset"; tip: "All ranges open, the filter off"; onClicked: panel.reset() }
    }
    Repeater { model: rows.floats; FilterRow { width: panel.width; visible: panel.filter ? Boolean(panel.filter[row.flag]) : false; row: modelData; whole: false; limits: panel.floatLimits[index]; onEntered: panel.setLimit(false, index, end, value) } }
    Repeater { model: rows.ints; FilterRow { width: panel.width; visible: panel.filter ? Boolean(panel.filter[row.flag]) : false; row: modelData; whole: true; limits: panel.intLimits[index]; onEntered: panel.setLimit(true, index, end, Math.round(value)) } }
    Note { visible: panel.titled.some(function (ends) { return ends[0] > ends[1] }); text: "\u21bb goes round: from the first value up, and up to the second." }
    Note { visible: panel.any && panel.titled.some(function (ends) { return ends[0] === ends[1] }); text: "Equal ends match nothing where any may match." }

    // Lidars that grade how dirty their window is.
    RowLayout {
        width: parent.width
        visible: panel.buffer !== null && Boolean(panel.buffer.dirtyMappingReflectanceUsefulFlag)
        Label { text: "Dirt level"; font.pixelSize: 12; Layout.fillWidth: true }
        Repeater {
            model: 4
            Check {
                objectName: "dirt-" + index
                text: index
                tip: "Show points of dirt level " + index
                checked: panel.hiddenLevels.indexOf(index) < 0
                onToggled: panel.buffer.toggleDirtry(index, checked)
            }
        }
    }
}
