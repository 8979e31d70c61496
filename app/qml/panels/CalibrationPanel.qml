import QtQuick 2.15
import QtQuick.Controls 2.15
import QtQuick.Layouts 1.15
import "../parts"

// The calibration files of the lidar: what is in use, loading another, saving it, and the switches of what they do.
Column {
    id: panel
    readonly property var buffer: viewer.buffer
    spacing: 8
    topPadding: 6

    readonly property var kinds: [
        { title: "Corrections", stem: "CorrectionsFile", dir: "correctionFileDir", flag: "", filters: ["Corrections (*.csv *.dat)", "All files (*)"] },
        { title: "Firetimes", stem: "FiretimesFile", dir: "firetimesFileDir", flag: "firetimesUseful", filters: ["Firetimes (*.csv *.dat)", "All files (*)"] },
        { title: "DCF", stem: "DcfFile", dir: "DcfFileDir", flag: "dcfUseful", filters: ["DCF files (*.csv *.dat)", "All files (*)"] },
        { title: "Nonlinear mapping", stem: "NonlinearMappingFile", dir: "nonlinearMappingFileDir", flag: "nonlinearMappingUseful", filters: ["Mappings (*.csv)", "All files (*)"] },
        { title: "Channel configuration", stem: "ChannelConfigFile", dir: "channelConfigFileDir", flag: "channelConfigUseful", filters: ["Channel configurations (*.csv *.json)", "All files (*)"] },
        { title: "Channel EQ", stem: "ChannelEqFile", dir: "channelEqFileDir", flag: "ispFlag", filters: ["Channel EQ (*.csv *.npy)", "All files (*)"] }]

    function has(operation) { return buffer !== null && typeof buffer[operation] === "function" }
    function load(kind, url) {
        if (buffer["import" + kind.stem](url)) viewer.tell(kind.title + " loaded")
        else viewer.fail("This file was not taken as " + kind.title.toLowerCase() + ": see the log for the line, or choose another file.")
    }
    function save(kind, url) {
        if (buffer["export" + kind.stem](url)) viewer.tell(kind.title + " saved")
        else viewer.fail("The " + kind.title.toLowerCase() + " could not be saved: choose a folder that you may write to.")
    }

    Repeater {
        model: panel.kinds
        Column {
            readonly property bool offered: panel.has("import" + modelData.stem)
                && (modelData.flag === "" || Boolean(panel.buffer[modelData.flag]))
            visible: offered
            width: panel.width
            spacing: 2
            RowLayout {
                width: parent.width
                Label { text: modelData.title; font.pixelSize: 12; font.bold: true; Layout.fillWidth: true }
                PushButton {
                    text: "Load\u2026"
                    tip: "Load " + modelData.title.toLowerCase()
                    onClicked: chooser.ask("Load " + modelData.title.toLowerCase(), modelData.filters, false, function (url) { panel.load(modelData, url) })
                }
                PushButton {
                    text: "Save\u2026"
                    tip: "Save " + modelData.title.toLowerCase()
                    enabled: panel.has("export" + modelData.stem)
                    onClicked: chooser.ask("Save " + modelData.title.toLowerCase(), modelData.filters, true, function (url) { panel.save(modelData, url) })
                }
            }
            Note { text: panel.buffer && panel.buffer[modelData.dir] ? panel.buffer[modelData.dir] : "as the source brought it"; elide: Text.ElideMiddle }
        }
    }
    Note { visible: !panel.has("importCorrectionsFile"); text: "Corrections come with the capture." }

    Flow {
        width: parent.width
        spacing: 8
        Check { visible: panel.buffer && panel.buffer.firetimesUseful || false; text: "Apply firetimes"; onToggled: panel.buffer.setFiretimeCorrectionState(checked) }
        Check { visible: panel.buffer && panel.buffer.dcfUseful || false; text: "Apply DCF"; onToggled: panel.buffer.setDcfCorrectionState(checked) }
        Check {
            visible: panel.buffer !== null && typeof panel.buffer.distanceCorrectionState === "number" && panel.buffer.distanceCorrectionState >= 0
            text: "Distance correction"
            checked: panel.buffer && panel.buffer.distanceCorrectionState > 0 || false
            onToggled: panel.buffer.distanceCorrectionState = checked ? 1 : 0
        }
        Check { visible: panel.buffer && panel.buffer.reflectanceMappingFlag || false; text: "Intensity mapping"; checked: panel.buffer && panel.buffer.intensityMapFlag || false; onToggled: panel.buffer.intensityMapping(checked) }
        Check { visible: panel.buffer && panel.buffer.dirtyMappingReflectanceUsefulFlag || false; text: "Dirt into reflectance"; onToggled: panel.buffer.setDirtyMappingReflectanceFlag(checked) }
    }
}
