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
                for (var up = item; up; up = up.parent) if (up === column) break
                if (!item || up !== column) return
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
                content: TablePanel { modelName: "monitorModel"; enabledName: "monitorViewEnabled"; widths: [40, 170, 90]; emptyText: "This source has sent no device status yet." }
            }
            Section {
                title: "Faults"
                name: "faults"
                shown: dock.has("faultmessageViewUsed") && dock.buffer.faultmessageViewUsed
                content: TablePanel { modelName: "faultmessageModel"; enabledName: "faultmessageViewEnabled"; widths: [190, 100]; emptyText: "No fault message has come since this panel was opened." }
            }
            Section { title: "Motion sensor"; name: "motion"; shown: dock.has("imuConfig") && dock.buffer.imuConfig >= 0; content: MotionPanel {} }
            Section { title: "Calibration files"; name: "calibration"; shown: dock.buffer !== null && typeof dock.buffer.setDcfCorrectionState === "function"; content: CalibrationPanel {} }
            Section { title: "Save and export"; name: "export"; shown: dock.buffer !== null; content: ExportPanel {} }
            Section { title: "Tools of the lidar"; name: "tools"; shown: toolFile != ""; readonly property url toolFile: viewer.panelFile(dock.buffer && dock.buffer.toolBoxSource || ""); content: Loader { source: viewer.panelFile(dock.buffer.toolBoxSource) } }
            Section { title: "Frame modes"; name: "modes"; shown: modeFile != ""; readonly property url modeFile: viewer.panelFile(dock.buffer && dock.buffer.modeEditorSource || ""); content: Loader { source: viewer.panelFile(dock.buffer.modeEditorSource) } }
            Section { title: "Zones"; name: "zones"; shown: zoneFile != ""; readonly property url zoneFile: viewer.panelFile(dock.buffer && dock.buffer.initialFunctionSource || ""); content: Loader { source: viewer.panelFile(dock.buffer.initialFunctionSource) } }
            Section {
                id: logSection
                title: "Log"
                name: "log"
                content: LogPanel {}
                Connections { target: logModel; function onErrorLogged(message) { logSection.open = true } }
            }
        }
    }
}
