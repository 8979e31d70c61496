import QtQuick 2.15
import QtQuick.Controls 2.15
import QtQuick.Layouts 1.15
import "../parts"

// Saving what is shown as point files: one frame, every frame while playing, or a whole folder in another format.
Column {
    id: panel
    readonly property var buffer: viewer.buffer
    readonly property var fields: buffer && typeof buffer.getPcdFieldListString === "function" ? buffer.getPcdFieldListString() : []
    readonly property var exporter: viewer.track && typeof viewer.track.setDetailExport === "function" ? viewer.track
                                  : viewer.clip && typeof viewer.clip.setDetailExport === "function" ? viewer.clip : null
    readonly property bool pathTaken: fields.length > 0
    spacing: 8
    topPadding: 6

    Column {
        width: parent.width
        visible: panel.fields.length > 0
        Label { text: "Fields of a PCD file"; font.pixelSize: 12; font.bold: true }
        Flow {
            width: parent.width
            spacing: 4
            Repeater {
                model: panel.fields
                Check {
                    objectName: "pcd-" + modelData
                    text: modelData
                    checked: panel.buffer !== null && panel.buffer.getPcdFieldEnabled(index)
                    onToggled: panel.buffer.setPcdFieldEnabled(index, checked)
                }
            }
        }
    }
    PushButton {
        visible: panel.buffer !== null && typeof panel.buffer.capture2PCD === "function"
        text: "Save this frame as PCD\u2026"
        tip: "The points shown, or the selected ones"
        onClicked: {
            if (!panel.pathTaken) { if (panel.buffer.capture2PCD()) viewer.tell("Frame saved"); return }
            chooser.ask("Save this frame", ["pcd files (*.pcd)"], true, window.exportFrame)
        }
    }
    RowLayout {
        visible: panel.exporter !== null && !window.exporting
        PushButton {
            visible: panel.exporter !== null
            text: "Each frame as CSV\u2026"
            tip: "Writes a table of points for each frame that is played"
            onClicked: chooser.askFolder("Folder for the tables of points", function (url) { window.startFrameExport(panel.exporter, 1, url) })
        }
        PushButton {
            visible: panel.fields.length > 0
            text: "Each frame as PCD\u2026"
            tip: "Writes a PCD file for each frame that is played"
            onClicked: chooser.askFolder("Folder for the PCD files", function (url) { window.startFrameExport(panel.exporter, 2, url) })
        }
    }
    PushButton { visible: window.exporting; text: "End the export of frames"; onClicked: window.endFrameExport() }
    RowLayout {
        visible: panel.buffer !== null && typeof panel.buffer.convertFile === "function"
        Label { text: "Convert all files to"; font.pixelSize: 12 }
        Choice { id: suffix; label: "Format"; model: ["bin", "pcd", "csv"]; Layout.preferredWidth: 80 }
        PushButton { text: "Folder\u2026"; tip: "Choose where the converted files go"; onClicked: chooser.askFolder("Folder for the converted files", function (url) { jobs.convert(panel.buffer, viewer.clip, url, suffix.currentText) }) }
    }
}
