import QtQuick 2.15
import QtQuick.Controls 2.15
import "../parts"

// A table that the lidar fills, which is decoded only while it is looked at.
Column {
    id: panel
    readonly property var buffer: viewer.buffer
    property string modelName
    property string enabledName
    property string title
    property string emptyText
    property var widths: []  // 0: what the others leave
    readonly property var rows: buffer && buffer[modelName] || null
    property int rowCount: 0
    spacing: 4
    topPadding: 6

    property bool asked: false  // each buffer begins without
    function enable(on) {
        if (!buffer || buffer[enabledName] === undefined || on === asked) return
        asked = on
        bufferCalls.set(buffer, enabledName, on)
    }
    function save(url) {
        files.call(rows, "exportMonitorInfo", url, function (result) {
            if (result.done) viewer.tell("Saved " + files.path(url))
            else viewer.fail(files.path(url) + " was not written: " + (files.writeFault(url) || "choose another folder") + ".")
        })
    }
    onBufferChanged: { asked = false; enable(visible) }
    onVisibleChanged: enable(visible)
    Component.onCompleted: enable(visible)
    Component.onDestruction: enable(false)

    // The buffer resets its table with each reading of it.
    onRowsChanged: rowCount = rows ? rows.rowCount() : 0
    Connections {
        target: panel.rows
        function onModelReset() { panel.rowCount = panel.rows.rowCount() }
    }

    FontMetrics { id: metrics; font.pixelSize: 12 }
    Table {
        id: table
        readonly property real rest: width - panel.widths.reduce(function (sum, width) { return sum + width }, 0)
        objectName: panel.modelName
        width: parent.width
        height: panel.rowCount > 0 ? 240 : 90
        model: panel.rows
        heads: panel.rows ? panel.rows.columnNames : []
        widths: panel.widths.map(function (width) { return width > 0 ? width : Math.max(100, table.rest) })
        label: panel.title
        cell: TableCell {
            HoverHandler { id: hover }
            ToolTip.visible: hover.hovered && metrics.advanceWidth(text) > width - 12
            ToolTip.text: text
        }
        Note {
            anchors { centerIn: parent; verticalCenterOffset: 12 }
            width: parent.width - 20
            visible: panel.rowCount === 0
            text: panel.emptyText
            horizontalAlignment: Text.AlignHCenter
        }
    }
    PushButton {
        objectName: panel.modelName + "-export"
        text: "Export\u2026"
        tip: "Save the table of " + panel.title + " as CSV"
        enabled: panel.rowCount > 0
        onClicked: chooser.ask(tip, ["CSV files (*.csv)"], true, panel.save)
    }
}
