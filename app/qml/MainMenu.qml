import QtQuick 2.15
import QtQuick.Controls 2.15
import Skarnvisor 1.0
import "parts"

// What concerns the whole window, by name and with its key.
MenuBar {
    id: bar
    background: Rectangle { color: theme.bar }
    delegate: MenuBarItem {
        id: head
        implicitHeight: 26
        font.pixelSize: 12
        leftPadding: 10
        rightPadding: 10
        contentItem: Label { text: head.text.replace("&", ""); font: head.font; color: head.highlighted ? "white" : theme.text; verticalAlignment: Text.AlignVCenter }
        background: Rectangle { color: head.highlighted ? theme.fill : "transparent" }
        Accessible.name: text.replace("&", "")
        Keys.onReturnPressed: menu.open()
        Keys.onEnterPressed: menu.open()
    }

    // A closed menu gives the keyboard back.
    component BarMenu: PopMenu { onClosed: Qt.callLater(bar.leave) }
    function leave() {
        for (var i = 0; i < count; ++i) if (menuAt(i).visible) return
        for (i = 0; i < count; ++i) itemAt(i).highlighted = false
        if (activeFocus) focusHome.forceActiveFocus()
    }

    BarMenu {
        title: "&File"
        MenuEntry { text: "Open file\u2026"; key: "Ctrl+O"; onTriggered: window.openFile() }
        MenuEntry { text: "Open folder of point files\u2026"; key: "Ctrl+Shift+O"; onTriggered: window.openFolder() }
        MenuEntry { text: "Live source\u2026"; key: "Ctrl+L"; onTriggered: window.openLive() }
        PopMenu {
            id: recent
            title: "Recent"
            enabled: prefs.recent.length > 0
            Instantiator {
                model: prefs.recent
                MenuEntry { text: modelData; onTriggered: window.openRecent(modelData) }
                onObjectAdded: recent.insertItem(index, object)
                onObjectRemoved: recent.removeItem(object)
            }
            MenuSeparator {}
            MenuEntry { text: "Forget these"; onTriggered: prefs.clearRecent() }
        }
        MenuEntry { text: "Close"; key: "Ctrl+W"; enabled: viewer.ready || viewer.opening; onTriggered: viewer.close() }
        MenuSeparator {}
        MenuEntry { text: "Cut frames out\u2026"; enabled: timelineBar.canCut; onTriggered: cutDialog.begin() }
        MenuEntry { text: viewer.recording ? "End recording" : "Record what arrives\u2026"; enabled: timelineBar.canRecord; onTriggered: viewer.record(!viewer.recording) }
        MenuEntry { text: "Save a picture of the window\u2026"; key: "Ctrl+P"; onTriggered: window.screenshot() }
        MenuSeparator {}
        MenuEntry { text: "Quit"; key: "Ctrl+Q"; onTriggered: window.close() }
    }
    BarMenu {
        title: "&View"
        MenuEntry { text: "Fit what is shown"; key: "F"; onTriggered: canvas.fit() }
        PopMenu {
            title: "Standard views"
            MenuEntry { text: "First view"; key: "Home"; onTriggered: canvas.reset() }
            MenuEntry { text: "Front"; key: "1"; onTriggered: canvas.setView("front") }
            MenuEntry { text: "Back"; key: "2"; onTriggered: canvas.setView("back") }
            MenuEntry { text: "Left"; key: "3"; onTriggered: canvas.setView("left") }
            MenuEntry { text: "Right"; key: "4"; onTriggered: canvas.setView("right") }
            MenuEntry { text: "Top"; key: "5"; onTriggered: canvas.setView("top") }
            MenuEntry { text: "Bottom"; key: "6"; onTriggered: canvas.setView("bottom") }
        }
        MenuEntry { text: "Orthographic"; key: "P"; ticked: canvas.orthographic; onTriggered: canvas.orthographic = !canvas.orthographic }
        MenuEntry { text: "Two views"; ticked: viewer.splitView; onTriggered: viewer.splitView = !viewer.splitView }
        MenuSeparator {}
        MenuEntry { text: "Rings and axes"; ticked: viewer.gridVisible; onTriggered: window.showGrid(!viewer.gridVisible) }
        MenuEntry { text: "Legend"; ticked: window.legendShown; onTriggered: window.showLegend(!window.legendShown) }
        MenuEntry { text: "Frame rate and points"; ticked: window.statsShown; onTriggered: window.showStats(!window.statsShown) }
        MenuSeparator {}
        MenuEntry { text: "Side panels"; key: "F9"; ticked: window.dockShown; onTriggered: window.showDock(!window.dockShown) }
        MenuEntry { text: "Table of points"; key: "F10"; ticked: window.tableShown; onTriggered: window.showTable(!window.tableShown) }
        MenuEntry { text: "Light theme"; objectName: "themeItem"; ticked: !theme.dark; onTriggered: window.setTheme(!theme.dark) }
        MenuEntry { text: "Full screen"; key: "F11"; ticked: window.visibility === ApplicationWindow.FullScreen; onTriggered: window.toggleFullScreen() }
    }
    BarMenu {
        title: "&Tools"
        MenuEntry { text: "Turn the view"; key: "Escape"; ticked: canvas.tool === CloudCanvas.Orbit; onTriggered: window.takeTool(CloudCanvas.Orbit) }
        MenuEntry { text: "Select points with a band"; key: "S"; ticked: canvas.tool === CloudCanvas.Select; onTriggered: window.takeTool(CloudCanvas.Select) }
        MenuEntry { text: "Measure between two points"; key: "R"; ticked: canvas.tool === CloudCanvas.Ruler; onTriggered: window.takeTool(CloudCanvas.Ruler) }
        MenuSeparator {}
        MenuEntry { text: viewer.ready && viewer.timeline.playing ? "Pause" : "Play"; key: "Space"; enabled: viewer.ready; onTriggered: viewer.timeline.togglePlaying() }
        MenuEntry { text: "Frame on"; key: "Right"; enabled: viewer.ready; onTriggered: viewer.timeline.stepFrames(1) }
        MenuEntry { text: "Frame back"; key: "Left"; enabled: viewer.ready; onTriggered: viewer.timeline.stepFrames(-1) }
        MenuEntry { text: "First frame"; key: "Ctrl+Home"; enabled: viewer.ready; onTriggered: viewer.timeline.first() }
        MenuEntry { text: "Last frame"; key: "Ctrl+End"; enabled: viewer.ready; onTriggered: viewer.timeline.last() }
        MenuSeparator {}
        MenuEntry { text: "End the selection"; enabled: window.selecting; onTriggered: window.clearSelection() }
    }
    BarMenu {
        title: "&Help"
        MenuEntry { text: "Keys and mouse"; key: "?"; onTriggered: help.open() }
        MenuEntry { text: "Manual"; onTriggered: window.openManual() }
        MenuEntry { text: "Log"; onTriggered: window.openLog() }
        MenuSeparator {}
        MenuEntry { text: "About Skarnvisor"; onTriggered: about.open() }
    }
}
