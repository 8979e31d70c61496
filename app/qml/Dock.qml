import QtQuick 2.15
import QtQuick.Controls 2.15
import "parts"
import "panels"

// The panels, one under the other. A panel is there when the open source has what it shows.
Rectangle {
    id: dock
    objectName: "dock"
    color: theme.panel
    readonly property var buffer: viewer.buffer
    readonly property bool logSeen: visible && logSection.open && logSection.y + 60 < flick.contentY + flick.height
    // An error opens the log; who has hidden the panels asks for it with the button in the status line.
    function openLog() {
        logSection.open = true
        // Not under the hands of who works in a panel.
        if (!holds(window.activeFocusItem)) toLog.restart()
    }
    function showLog() {
        window.showDock(true)
        logSection.open = true
        toLog.restart()
    }
    // The log stands last, and has its height a moment after it is opened.
    Timer { id: toLog; interval: 50; onTriggered: flick.contentY = Math.max(0, Math.min(logSection.y, flick.contentHeight - flick.height)) }
    function holds(item) {
        for (var up = item; up; up = up.parent) if (up === column) return true
        return false
    }
    function has(property) { return buffer !== null && buffer[property] !== undefined && buffer[property] !== null }

    Flickable {
        id: flick
        anchors.fill: parent
        contentHeight: column.height
        clip: true
        boundsBehavior: Flickable.StopAtBounds
        ScrollBar.vertical: ScrollBar {}
        // A panel that gets the keyboard comes into sight.
        Connections {
            target: window
            function onActiveFocusItemChanged() {
                var item = window.activeFocusItem
                if (!dock.holds(item)) return
                var y = item.mapToItem(column, 0, 0).y
                if (y < flick.contentY) flick.contentY = y
                else if (y + item.height > flick.contentY + flick.height) flick.contentY = y + item.height - flick.height
            }
        }

        Column {
            id: column
            width: flick.width - 6

            Section { title: "Colours and scales"; name: "colors"; open: true; shown: dock.buffer !== null; content: ColorPanel {} }
            Section { title: "Point filter"; name: "filter"; keeps: true; shown: dock.has("filterModel"); content: FilterPanel {} }
            Section { title: "Echoes"; name: "echoes"; keeps: true; shown: dock.has("echoModel") && dock.buffer.echoModel.echoTitles.length > 1; content: EchoPanel {} }
            Section { title: "Channels"; name: "channels"; keeps: true; shown: dock.buffer !== null && typeof dock.buffer.setDisplayedFlag === "function"; content: ChannelPanel {} }
            Section {
                title: "Device monitor"
                name: "monitor"
                shown: dock.has("monitorViewUseful") && dock.buffer.monitorViewUseful
                content: TablePanel { modelName: "monitorModel"; enabledName: "monitorViewEnabled"; title: "the device monitor"; widths: [30, 0, 68]; emptyText: "The lidar has sent no status yet: play, or step on." }
            }
            Section {
                title: "Faults"
                name: "faults"
                shown: dock.has("faultmessageViewUsed") && dock.buffer.faultmessageViewUsed
                content: TablePanel { modelName: "faultmessageModel"; enabledName: "faultmessageViewEnabled"; title: "the faults"; widths: [0, 68]; emptyText: "No fault message has come since this panel was opened." }
            }
            Section { title: "Motion sensor"; name: "motion"; shown: dock.has("imuConfig") && dock.buffer.imuConfig >= 0; content: MotionPanel {} }
            Section { title: "Calibration files"; name: "calibration"; shown: dock.buffer !== null && typeof dock.buffer.setDcfCorrectionState === "function"; content: CalibrationPanel {} }
            Section { title: "Save and export"; name: "export"; shown: dock.buffer !== null; content: ExportPanel {} }
            // A lidar that names no tool box of its own has the common one.
            Section { title: "Tools of the lidar"; name: "tools"; shown: lidarTools.rows.length > 0; content: Loader { source: viewer.panelFile(dock.buffer && dock.buffer.toolBoxSource || "ToolBox.qml") } }
            Section { title: "Frame modes"; name: "modes"; shown: modeFile != ""; readonly property url modeFile: viewer.panelFile(dock.buffer && dock.buffer.modeEditorSource || ""); content: Loader { source: viewer.panelFile(dock.buffer.modeEditorSource) } }
            Section { title: "Zones"; name: "zones"; shown: zoneFile != ""; readonly property url zoneFile: viewer.panelFile(dock.buffer && dock.buffer.initialFunctionSource || ""); content: Loader { source: viewer.panelFile(dock.buffer.initialFunctionSource) } }
            Section {
                id: logSection
                title: "Log"
                name: "log"
                content: LogPanel {}
                Connections { target: logModel; function onNewsLogged() { dock.openLog() } }
            }
        }
    }
}
