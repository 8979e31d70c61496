import QtQuick 2.15
import QtQuick.Controls 2.15
import "../parts"

// Saving what is shown as point files: one frame, every frame while playing, or a whole folder in another format.
Column {
    id: panel
    readonly property var buffer: viewer.buffer
    readonly property var fields: buffer && typeof buffer.getPcdFieldListString === "function" ? buffer.getPcdFieldListString() : []
    readonly property bool savesFrames: viewer.track !== null && typeof viewer.track.setDetailExport === "function"
    spacing: 8
    topPadding: 6

    component Title: Label { font { pixelSize: 12; bold: true } }

    Title { text: "This frame"; visible: frameButton.visible }
    Flow {
        width: parent.width
        visible: panel.fields.length > 0
        spacing: 4
        Repeater {
            model: panel.fields
            Check {
                objectName: "pcd-" + modelData
                text: modelData
                tip: "Field of the PCD files"
                checked: panel.buffer !== null && panel.buffer.getPcdFieldEnabled(index)
                onToggled: panel.buffer.setPcdFieldEnabled(index, checked)
            }
        }
    }
    PushButton {
        id: frameButton
        objectName: "saveFrame"
        visible: panel.buffer !== null && typeof panel.buffer.capture2PCD === "function"
        enabled: viewer.pointsShown > 0 && !jobs.running
        text: "Save as PCD\u2026"
        tip: "Save the points shown, or the selected ones"
        onClicked: {
            if (prefs.lastPcdFolder != "") chooser.start = prefs.lastPcdFolder
            chooser.ask("Save this frame", ["pcd files (*.pcd)"], true, function (url) { prefs.notePcdFile(url); window.exportFrame(url) })
        }
    }

    Title { text: "Each frame that is played"; visible: panel.savesFrames }
    Flow {
        width: parent.width
        spacing: 6
        visible: panel.savesFrames && !window.exporting
        PushButton {
            objectName: "framesAsTables"
            text: "As CSV\u2026"
            tip: "Save the points of each frame that is played as a table"
            onClicked: chooser.askFolder("Folder for the tables of points", function (url) { window.startFrameExport(viewer.track, 1, url) })
        }
        PushButton {
            text: "As PCD\u2026"
            tip: "Save each frame that is played as a PCD file"
            onClicked: chooser.askFolder("Folder for the PCD files", function (url) { window.startFrameExport(viewer.track, 2, url) })
        }
    }
    PushButton { visible: window.exporting; text: "End the saving"; onClicked: window.endFrameExport() }

    Title { text: "All files in another format"; visible: conversion.visible }
    Flow {
        id: conversion
        width: parent.width
        spacing: 6
        visible: panel.buffer !== null && typeof panel.buffer.convertFile === "function"
        Choice { id: suffix; objectName: "convertTo"; label: "Format"; model: ["bin", "pcd", "csv"]; width: 80 }
        PushButton {
            objectName: "convert"
            text: "Convert\u2026"
            tip: "Choose the folder that the converted files go to"
            enabled: !jobs.running
            onClicked: chooser.askFolder("Folder for the converted files", function (url) { jobs.convert(panel.buffer, viewer.clip, url, suffix.currentText) })
        }
    }
}
