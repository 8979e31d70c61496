import QtQuick 2.15
import QtQuick.Controls 2.15
import QtQuick.Layouts 1.15
import "../parts"

// The table of points: the selected ones, or all that are shown. A click on a head sorts, a drag moves the column.
Rectangle {
    id: panel
    objectName: "spreadsheet"
    readonly property var buffer: viewer.buffer
    readonly property var points: buffer ? buffer.spreadSheetModel : null
    readonly property bool sortable: points !== null && typeof points.setSort === "function"
    property var names: []
    property int rowCount: 0
    property int sortSerial: 0
    color: theme.panel

    // Reading the property loads the table anew; the counts follow it. A refresh leaves the heads standing, since the
    // user may be moving one.
    property var headsOf: null
    onPointsChanged: {
        if (points !== null && points === headsOf) return
        headsOf = points
        sought = null
        table.currentRow = -1
        readHeads()
    }
    Connections {
        target: panel.points
        ignoreUnknownSignals: true
        function onModelReset() { panel.rowCount = panel.points.rowCount() }
        function onColumnNamesChanged() { panel.readHeads() }
    }
    // A picked point is the row in hand, once the selection of it is listed.
    property var sought: null
    function seek() {
        if (!sought || bufferCalls.running) return
        tableRows.find(points, sought)
        sought = null
    }
    Connections {
        target: window.canvas
        function onPointClicked(place) {
            if (!panel.visible || !window.selecting) return
            panel.sought = place
            panel.seek()
        }
    }
    Connections { target: bufferCalls; function onRunningChanged() { panel.seek() } }
    Connections { target: tableRows; function onFound(row) { table.centerRow(row) } }

    function readHeads() {
        names = points ? points.columnNames : []
        rowCount = points ? points.rowCount() : 0
    }
    function refresh() { tableRows.list(buffer) }
    function sortBy(column) {
        var order = points.getSort(column)
        points.setSort(column, order === 1 ? -1 : order === -1 ? 0 : 1)
        table.currentRow = -1
        ++sortSerial
        refresh()
    }
    // The rows stay sorted by the column that they were sorted by, wherever it goes.
    function move(from, to) {
        var sorted = 0
        while (sorted < names.length && points.getSort(sorted) === 0) ++sorted
        var order = sorted < names.length ? points.getSort(sorted) : 0
        var step = from < to ? 1 : -1
        for (var at = from; at !== to; at += step) {
            points.swap(at, at + step)
            if (sorted === at) sorted += step
            else if (sorted === at + step) sorted -= step
        }
        if (order !== 0) points.setSort(sorted, order)
        refresh()
        readHeads()
    }
    function copyRow(row) {
        app.copyText(names.map(function (name, column) { return points.data(points.index(row, column)) }).join("\t"))
        viewer.tell("Row " + (row + 1) + " copied")
    }

    ColumnLayout {
        anchors { fill: parent; margins: 6 }
        spacing: 4
        RowLayout {
            Flow {
                Layout.fillWidth: true
                spacing: 6
                Label { objectName: "rowCountText"; height: 28; text: panel.rowCount.toLocaleString(Qt.locale("en"), "f", 0) + (panel.rowCount === 1 ? " row" : " rows"); font.pixelSize: 12; verticalAlignment: Text.AlignVCenter; width: Math.max(74, implicitWidth) }
                Check {
                    id: all
                    objectName: "allPoints"
                    height: 28
                    text: "All shown points"
                    tip: "List every point that is shown, not the selected ones alone"
                    enabled: panel.points !== null
                    checked: panel.points !== null && Boolean(panel.points.allDisplayed)
                    onToggled: { panel.points.allDisplayed = checked; panel.refresh() }
                }
                PushButton { objectName: "decimals"; text: "Decimals"; tip: "3 or 6 decimals"; visible: panel.buffer !== null && typeof panel.buffer.detailDataUpdata === "function"; onClicked: bufferCalls.call(panel.buffer, "detailDataUpdata") }
                PushButton { objectName: "saveOrder"; text: "Save order"; tip: "Keep this order of the columns"; visible: panel.sortable; onClicked: { panel.points.saveCurrentColumnNames(); viewer.tell("The order of the columns is kept") } }
                PushButton {
                    objectName: "exportTable"
                    text: "Export\u2026"
                    tip: "Save the table as CSV"
                    visible: panel.points !== null && typeof panel.points.exportPointsInformation === "function"
                    enabled: panel.rowCount > 0 && !jobs.running
                    onClicked: chooser.ask("Export the points", ["CSV files (*.csv)"], true, function (url) { window.startExport(url, panel.names) })
                }
                Note { width: Math.min(implicitWidth, parent.width); height: Math.max(28, implicitHeight); verticalAlignment: Text.AlignVCenter; visible: text.length > 0; text: tableRows.listing ? "Listing\u2026" : panel.points !== null && panel.rowCount === 0 ? "Select points with S, or list all that are shown" : "" }
            }
            PushButton { Layout.alignment: Qt.AlignTop; text: "\u2715"; tip: "Close the table (F10)"; implicitWidth: 28; onClicked: window.showTable(false) }
        }
        Table {
            id: table
            objectName: "pointTable"
            Layout.fillWidth: true
            Layout.fillHeight: true
            label: "Points"
            model: panel.points
            heads: panel.names
            numeric: true
            rowNumbers: true
            headsClickable: panel.sortable
            headMark: function (column) {
                if (!panel.sortable) return ""
                var order = (panel.sortSerial, panel.points.getSort(column))
                return order === 1 ? " \u25b4" : order === -1 ? " \u25be" : ""
            }
            onHeadClicked: panel.sortBy(column)
            onColumnMoved: panel.move(from, to)
            Keys.onPressed: if (event.matches(StandardKey.Copy) && currentRow >= 0) panel.copyRow(currentRow)
        }
    }
}
