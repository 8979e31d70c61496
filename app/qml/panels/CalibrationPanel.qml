import QtQuick 2.15
import QtQuick.Controls 2.15
import "../parts"

// The calibration files of the lidar: what is in use, loading another, saving it, and the switches of what they do.
Column {
    id: panel
    readonly property var buffer: viewer.buffer
    // A colour lidar's image-signal settings stand in the place of firetimes.
    readonly property bool imageSignal: buffer !== null && Boolean(buffer.ispFlag)
    spacing: 8
    topPadding: 6

    readonly property var kinds: [
        { title: "Corrections", stem: "CorrectionsFile", dir: "correctionFileDir", flag: "", filters: ["Corrections (*.csv *.dat *.bin)", "All files (*)"] },
        imageSignal
            ? { title: "Image signal settings", stem: "FiretimesFile", load: "importIspConfigFile", reload: "reloadIspConfigAndReapply", dir: "firetimesFileDir", flag: "ispFlag", filters: ["Settings (*.csv)", "All files (*)"] }
            : { title: "Firetimes", stem: "FiretimesFile", dir: "firetimesFileDir", flag: "firetimesUseful", filters: ["Firetimes (*.csv *.dat)", "All files (*)"] },
        { title: "Channel EQ", stem: "ChannelEqFile", reload: "reloadChannelEqAndReapply", dir: "channelEqFileDir", flag: "ispFlag", filters: ["Channel EQ (*.csv *.npy)", "All files (*)"] },
        { title: "DCF", stem: "DcfFile", dir: "DcfFileDir", flag: "dcfUseful", filters: ["DCF files (*.csv *.dat)", "All files (*)"] },
        { title: "Nonlinear mapping", stem: "NonlinearMappingFile", dir: "nonlinearMappingFileDir", flag: "nonlinearMappingUseful", filters: ["Mappings (*.csv)", "All files (*)"] },
        { title: "Channel configuration", stem: "ChannelConfigFile", dir: "channelConfigFileDir", flag: "channelConfigUseful", filters: ["Channel configurations (*.csv)", "All files (*)"] }]

    function stands(setter) { return buffer !== null && buffer.toolSettings !== undefined && Boolean(buffer.toolSettings[setter]) }
    function has(operation) { return buffer !== null && typeof buffer[operation] === "function" }
    function load(kind, operation, url) {
        files.call(buffer, operation, url, function (result) {
            if (!result.done) viewer.fail((result.reason || kind.title + " cannot be loaded") + "; choose another file, what is in use stays.")
            else if (result.reason) viewer.fail(kind.title + " loaded, but with a fault: " + result.reason + ".")
            else viewer.tell(kind.title + " loaded")
        })
    }
    function save(kind, url) {
        files.call(buffer, "export" + kind.stem, url, function (result) {
            if (result.done) viewer.tell(kind.title + " saved")
            else viewer.fail((result.reason || "This lidar has no " + kind.title + " to save") + "; " + (files.writeFault(url) || "load a file first, or choose another folder") + ".")
        })
    }

    component Kind: Column {
        id: entry
        property var kind
        readonly property string inUse: panel.buffer && panel.buffer[kind.dir] || ""
        visible: panel.has("import" + kind.stem) && (kind.flag === "" || Boolean(panel.buffer[kind.flag]))
        width: panel.width
        spacing: 3
        Item {
            width: parent.width
            height: title.height
            Label { id: title; text: entry.kind.title; font { pixelSize: 12; bold: true } }
            Label {
                id: file
                objectName: "inUse-" + entry.kind.stem
                anchors { left: title.right; leftMargin: 10; right: parent.right }
                text: entry.inUse || "no file"
                color: theme.faint
                font.pixelSize: 12
                elide: Text.ElideMiddle
                horizontalAlignment: Text.AlignRight
                Accessible.name: entry.kind.title + ": " + text
                HoverHandler { id: hover }
                ToolTip.visible: hover.hovered && truncated
                ToolTip.text: text
            }
        }
        Flow {
            width: parent.width
            spacing: 6
            PushButton {
                objectName: "load-" + entry.kind.stem
                text: "Load\u2026"
                width: 70
                tip: "Load " + entry.kind.title
                onClicked: chooser.ask(tip, entry.kind.filters, false, function (url) { panel.load(entry.kind, entry.kind.load || "import" + entry.kind.stem, url) })
            }
            PushButton {
                objectName: "save-" + entry.kind.stem
                text: "Save\u2026"
                width: 70
                tip: "Save " + entry.kind.title + " as a file"
                onClicked: chooser.ask(tip, entry.kind.filters, true, function (url) { panel.save(entry.kind, url) })
            }
            PushButton {
                visible: entry.kind.reload !== undefined
                text: "Reload"
                width: 70
                tip: "Read the default file of " + entry.kind.title + " again"
                onClicked: panel.load(entry.kind, entry.kind.reload, "")
            }
        }
    }
    Repeater {
        model: panel.kinds
        Kind { kind: modelData }
    }
    PushButton {
        text: "Folder of the files"
        tip: "Show the folder of the files that are loaded by themselves"
        onClicked: if (!files.showCalibrationFolder()) viewer.fail("No file manager opened: look into " + files.calibrationFolder() + ".")
    }

    Flow {
        width: parent.width
        spacing: 8
        Check { visible: panel.buffer && panel.buffer.firetimesUseful || false; text: "Apply firetimes"; checked: panel.stands("setFiretimeCorrectionState"); onToggled: panel.buffer.setFiretimeCorrectionState(checked) }
        Check { visible: panel.buffer && panel.buffer.dcfUseful || false; text: "Apply DCF"; checked: panel.stands("setDcfCorrectionState"); onToggled: panel.buffer.setDcfCorrectionState(checked) }
        Check {
            visible: panel.buffer !== null && typeof panel.buffer.distanceCorrectionState === "number" && panel.buffer.distanceCorrectionState >= 0
            text: "Distance correction"
            checked: panel.buffer && panel.buffer.distanceCorrectionState > 0 || false
            onToggled: panel.buffer.distanceCorrectionState = checked ? 1 : 0
        }
    }
}
