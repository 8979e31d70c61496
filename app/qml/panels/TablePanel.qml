import QtQuick 2.15
import QtQuick.Controls 2.15
import "../parts"

// A table that the lidar fills, which is decoded only while it is looked at.
Column {
    id: panel
    readonly property var buffer: viewer.buffer
    property string modelName
    property string enabledName
    property string emptyText
    property string exportName
    property var widths: []
    readonly property var rows: buffer && buffer[modelName] || null
    spacing: 4
    topPadding: 6

    function enable(on) { if (buffer && buffer[enabledName] !== undefined && buffer[enabledName] !== on) buffer[enabledName] = on }
    onBufferChanged: enable(true)
    Component.onCompleted: enable(true)
    Component.onDestruction: enable(false)

    Table {
        id: table
        objectName: panel.modelName
        width: parent.width
        height: 240
        model: panel.rows
        heads: panel.rows ? panel.rows.columnNames : []
        widths: panel.widths
        Note { anchors.centerIn: parent; width: parent.width - 20; visible: !panel.rows || panel.rows.rowCount() === 0; text: panel.emptyText; horizontalAlignment: Text.AlignHCenter }
    }
    PushButton {
        text: "Export\u2026"
        enabled: panel.rows !== null
        onClicked: chooser.ask("Export the table", ["CSV files (*.csv)"], true, function (url) { jobs.exportTo(panel.rows, "exportMonitorInfo", url, "the table") })
    }
}
