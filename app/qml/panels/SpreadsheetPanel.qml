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
    property var names: []
    property int rowCount: 0
    color: theme.panel

    // Reading the property loads the table anew; the counts follow it. A refresh leaves the heads standing, since the
    // user may be moving one.
    property var headsOf: null
    onPointsChanged: {
        if (points !== null && points === headsOf) return
        headsOf = points
        readHeads()
    }
    Connections {
        target: panel.points
        ignoreUnknownSignals: true
        function onModelReset() { panel.rowCount = panel.points.rowCount() }
        function onColumnNamesChanged() { panel.readHeads() }
    }
    function readHeads() {
        names = points ? points.columnNames : []
        rowCount = points ? points.rowCount() : 0
    }
    function refresh() {
        if (typeof buffer.refreshSelectionDisplay === "function") buffer.refreshSelectionDisplay()
        else buffer.selectionMatrix = buffer.selectionMatrix  // runs the selection again
    }
    function sortBy(column) {
        var order = points.getSort(column)
        points.setSort(column, order === 1 ? -1 : order === -1 ? 0 : 1)
        refresh()
        readHeads()
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
    readonly property bool sortable: points !== null && typeof points.setSort === "function"

    ColumnLayout {
        anchors { fill: parent; margins: 6 }
        spacing: 4
        RowLayout {
            Label { objectName: "rowCountText"; text: panel.rowCount.toLocaleString(Qt.locale("en"), "f", 0) + " rows"; font.pixelSize: 12 }
            Check {
                id: all
                objectName: "allPoints"
                text: "All shown points"
                checked: panel.points !== null && Boolean(panel.points.allDisplayed)
                onToggled: { panel.points.allDisplayed = checked; panel.refresh() }
            }
            PushButton { text: "Decimals"; tip: "3 or 6 decimals"; visible: panel.buffer !== null && typeof panel.buffer.detailDataUpdata === "function"; onClicked: panel.buffer.detailDataUpdata() }
            Item { Layout.fillWidth: true }
            Note { Layout.fillWidth: false; text: panel.rowCount === 0 ? "Select points with S, or list all that are shown" : "" ; wrapMode: Text.NoWrap; width: implicitWidth }
            Item { Layout.fillWidth: true }
            PushButton { objectName: "saveOrder"; text: "Save order"; tip: "Keep this order of the columns"; visible: panel.sortable; onClicked: { panel.points.saveCurrentColumnNames(); viewer.tell("The order of the columns is kept") } }
            PushButton {
                objectName: "exportTable"
                text: "Export\u2026"
                tip: "Save the table as CSV"
                visible: panel.points !== null && typeof panel.points.exportPointsInformation === "function"
                enabled: panel.rowCount > 0 && !jobs.running
                onClicked: chooser.ask("Export the points", ["CSV files (*.csv)"], true, window.exportTable)
            }
            PushButton { text: "\u2715"; tip: "Close the table (F10)"; implicitWidth: 28; onClicked: window.showTable(false) }
        }
        Table {
            objectName: "pointTable"
            Layout.fillWidth: true
            Layout.fillHeight: true
            model: panel.points
            heads: panel.names
            headsClickable: panel.sortable
            headMark: function (column) {
                if (!panel.sortable) return ""
                var order = panel.points.getSort(column)
                return order === 1 ? " \u25b4" : order === -1 ? " \u25be" : ""
            }
            onHeadClicked: panel.sortBy(column)
            onColumnMoved: panel.move(from, to)
        }
    }
}
