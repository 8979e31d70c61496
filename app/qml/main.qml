import QtQuick 2.15
import QtQuick.Controls 2.15
import QtQuick.Layouts 1.15
import Skarnvisor 1.0
import "parts"
import "panels"

ApplicationWindow {
    id: window
    // The program puts it where it was.
    width: 1360
    height: 860
    minimumWidth: 720
    minimumHeight: 480
    visible: false
    title: viewer.title ? viewer.title + " - Skarnvisor" : "Skarnvisor"
    color: theme.window
    palette {
        window: theme.window; windowText: theme.text
        base: theme.field; alternateBase: theme.row; text: theme.text
        button: theme.dark ? "#2a3139" : "#e1e5e9"; buttonText: theme.text; brightText: "white"
        light: theme.dark ? "#3a434d" : "#ffffff"; mid: theme.dark ? "#3a434d" : "#c2c8ce"; dark: theme.dark ? "#101317" : "#a4acb4"
        midlight: theme.dark ? "#323a43" : "#e8ebee"
        highlight: theme.accent; highlightedText: "white"
        toolTipBase: theme.dark ? "#2a3139" : "#fffbe6"; toolTipText: theme.text
    }

    property bool legendShown: prefs.value("legend", true)
    property bool cameraShown: prefs.value("camera", true)
    property bool statsShown: prefs.value("stats", false)
    property bool dockShown: prefs.value("dock", true)
    property bool tableShown: prefs.value("table", false)
    // The selection as the window has asked for it: the buffer takes it up in the background.
    property bool selecting: false
    property matrix4x4 selection
    readonly property alias exporting: frameExport.running
    readonly property var buffer: viewer.buffer
    // While a control, a field or a menu has the keyboard, its keys are its own.
    readonly property bool typing: activeFocusItem !== null && activeFocusItem.cursorPosition !== undefined
    readonly property bool inPopup: { for (var item = activeFocusItem; item; item = item.parent) if (item === Overlay.overlay) return true; return false }
    readonly property bool keysFree: !typing && !inPopup && (activeFocusItem === null || activeFocusItem.focusPolicy === undefined)
    readonly property Item focusHome: canvasView.canvas
    readonly property var viewerObject: viewer

    // What goes out of sight would keep the keyboard.
    Connections {
        target: window.activeFocusItem
        function onVisibleChanged() { if (window.activeFocusItem !== null && !window.activeFocusItem.visible) canvas.forceActiveFocus() }
    }

    Theme { id: theme; objectName: "theme"; dark: prefs.value("dark", true); onCanvasChanged: window.applyTheme(); onGridChanged: window.applyTheme() }
    FileChooser { id: chooser; objectName: "chooser" }
    LiveDialog { id: liveDialog }
    CutDialog { id: cutDialog }
    HelpSheet { id: help }
    AboutDialog { id: about }
    ManualSheet { id: manual }
    Shortcuts { id: shortcuts }
    FrameExport { id: frameExport }
    Binding { target: viewer; property: "savesFrames"; value: frameExport.running }

    function applyTheme() {
        app.setDark(theme.dark)
        viewer.setCanvasColors(theme.canvas, theme.grid)
    }
    function setTheme(dark) { theme.dark = dark; prefs.setValue("dark", dark) }
    function openFile() { chooser.ask("Open a capture or a point file", ["Captures and point files (*.pcap *.pcapng *.pcd *.ply *.bin)", "All files (*)"], false, viewer.openUrl) }
    function openFolder() { chooser.askFolder("Open a folder of point files", viewer.openUrl) }
    function openLive() { liveDialog.open() }
    function openRecent(source) {
        if (prefs.isThere(source)) return viewer.open(source)
        prefs.removeRecent(source)
        viewer.fail(source + " is not there any more: open it from where it is now.")
    }
    function openDropped(urls) {
        viewer.openUrl(urls[0])
        if (urls.length > 1) viewer.tell("The first of " + urls.length + " was opened: one source is open at a time")
    }
    function openManual() { manual.open() }
    function openLog() { dock.showLog() }
    // A tool that is taken again is put away.
    function takeTool(tool) {
        canvas.tool = canvas.tool === tool ? CloudCanvas.Orbit : tool
        if (canvas.tool !== CloudCanvas.Ruler) ruler.clear()
        else canvasView.picked.hide()
    }
    function showGrid(on) { viewer.gridVisible = on; prefs.setValue("grid", on) }
    function showLegend(on) { legendShown = on; prefs.setValue("legend", on) }
    function showStats(on) { statsShown = on; prefs.setValue("stats", on) }
    function showTable(on) {
        tableShown = on
        prefs.setValue("table", on)
        window.syncTable()
    }
    function showDock(on) { dockShown = on; prefs.setValue("dock", on) }
    function toggleFullScreen() { visibility = visibility === ApplicationWindow.FullScreen ? ApplicationWindow.Windowed : ApplicationWindow.FullScreen }
    // Escape puts away what came last.
    function stepBack() {
        if (!keysFree) canvas.forceActiveFocus()
        else if (viewer.error.length > 0) viewer.clearError()
        else if (canvas.tool !== CloudCanvas.Orbit) takeTool(canvas.tool)
        else if (canvasView.picked.place) canvasView.picked.hide()
        else if (selecting) clearSelection()
        else if (visibility === ApplicationWindow.FullScreen) toggleFullScreen()
    }
    // The point table is filled only while it is seen, or while the export of each frame needs it.
    function syncTable() { if (buffer && !exporting) bufferCalls.set(buffer, "spreadSheetEnabled", tableShown) }
    function refilter() { viewer.refilter() }
    function screenshot() {
        chooser.ask("Save a picture of the window", ["Pictures (*.png)"], true, function (url) {
            if (app.saveShot(url)) viewer.tell("Picture saved")
            else viewer.fail("The picture was not saved: " + (files.writeFault(url) || "choose another folder") + ".")
        })
    }
    function select(matrix) {
        if (!buffer) return
        selection = matrix
        bufferCalls.set(buffer, "selectionMatrix", matrix)
        if (!selecting) bufferCalls.set(buffer, "selectEnabled", true)
        selecting = true
    }
    function clearSelection() {
        if (selecting) bufferCalls.set(buffer, "selectEnabled", false)
        selecting = false
    }
    // The buffer writes in the background. Without columns it goes by the suffix.
    readonly property var pointExport: buffer && buffer.pointExport || null
    property url exportTarget
    property var exportDue: null  // begins when what was asked of the points before is done
    function startExport(url, columns) {
        if (!buffer) return
        if (exportDue || (pointExport && pointExport.running)) return viewer.fail("Wait until the export under way has ended.")
        exportTarget = url
        exportDue = columns
        startDueExport()
    }
    function startDueExport() {
        if (!exportDue || bufferCalls.running) return
        var columns = exportDue
        exportDue = null
        buffer.startExport(files.path(exportTarget), columns)
    }
    Connections { target: bufferCalls; function onRunningChanged() { window.startDueExport() } }
    function exportFrame(url) { startExport(/\.csv$/i.test(url) ? url + ".pcd" : url, []) }
    Connections {
        target: window.pointExport
        ignoreUnknownSignals: true
        function onFinished(written, reason) {
            if (written) viewer.tell("Saved " + files.path(window.exportTarget))
            else if (reason.length > 0) viewer.fail(files.path(window.exportTarget) + " was not written: " + (files.writeFault(window.exportTarget) || reason) + ".")
            else viewer.tell("Export cancelled")
        }
    }
    function startFrameExport(target, type, url) { frameExport.start(target, type, url) }
    function endFrameExport() {
        frameExport.end()
        syncTable()
    }

    onBufferChanged: { selecting = false; exportDue = null; frameExport.forget(); if (tableShown) syncTable() }
    Component.onCompleted: {
        viewer.pointSize = prefs.value("pointSize", 2.0)
        viewer.gridVisible = prefs.value("grid", true)
        viewer.colors.ramp = prefs.value("ramp", "turbo")
        viewer.sideColors.ramp = prefs.value("sideRamp", "viridis")
        applyTheme()
        canvas.forceActiveFocus()
    }
    Connections {
        target: viewer.colors
        function onChanged() { prefs.setValue("ramp", viewer.colors.ramp) }
    }
    Connections {
        target: viewer.sideColors
        function onChanged() { prefs.setValue("sideRamp", viewer.sideColors.ramp) }
    }

    menuBar: MainMenu {}
    header: ToolStrip {}

    SplitView {
        id: columns
        anchors.fill: parent
        orientation: Qt.Horizontal
        handle: Rectangle { implicitWidth: 5; implicitHeight: 5; color: SplitHandle.hovered || SplitHandle.pressed ? theme.accent : theme.line }

        SplitView {
            SplitView.fillWidth: true
            SplitView.minimumWidth: 300
            orientation: Qt.Vertical
            handle: Rectangle { implicitWidth: 5; implicitHeight: 5; color: SplitHandle.hovered || SplitHandle.pressed ? theme.accent : theme.line }

            CanvasView {
                id: canvasView
                SplitView.fillHeight: true
                SplitView.minimumHeight: 160
            }
            Loader {
                id: tableLoader
                SplitView.preferredHeight: prefs.value("tableHeight", 240)
                SplitView.minimumHeight: 100
                visible: window.tableShown
                active: window.tableShown
                sourceComponent: SpreadsheetPanel {}
                onHeightChanged: if (visible && height > 0) prefs.setValue("tableHeight", height)
            }
        }
        Dock {
            id: dock
            SplitView.preferredWidth: prefs.value("dockWidth", 330)
            SplitView.minimumWidth: 260
            SplitView.maximumWidth: 600
            visible: window.dockShown
            onWidthChanged: if (visible && width > 0) prefs.setValue("dockWidth", width)
        }
    }
    property alias canvas: canvasView.canvas
    property alias ruler: canvasView.ruler
    property alias stackEditor: timelineBar.stackEditor

    DropArea {
        id: drop
        anchors.fill: parent
        // Only files and folders: a piece of text is not taken.
        onEntered: drag.accepted = drag.hasUrls
        onDropped: if (drop.hasUrls) window.openDropped(drop.urls)
        Rectangle {
            anchors { fill: parent; margins: 8 }
            visible: drop.containsDrag
            color: "transparent"
            border { color: theme.accent; width: 3 }
            radius: 6
        }
    }

    footer: Column {
        TimelineBar { id: timelineBar; width: parent.width }
        StatusLine { width: parent.width }
    }
}
