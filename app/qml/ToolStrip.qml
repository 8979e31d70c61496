import QtQuick 2.15
import QtQuick.Controls 2.15
import QtQuick.Layouts 1.15
import Skarnvisor 1.0
import "parts"

ToolBar {
    id: strip
    background: Rectangle { color: theme.bar }
    implicitHeight: 40

    RowLayout {
        anchors { fill: parent; leftMargin: 8; rightMargin: 8 }
        spacing: 6

        PushButton {
            objectName: "openButton"
            text: "Open \u25be"
            tip: "Open a file, a folder or a live source"
            onClicked: openMenu.popup(this, 0, height)
            menuOpen: openMenu.visible
            PopMenu {
                id: openMenu
                width: 300
                MenuItem { text: "File\u2026   Ctrl+O"; onTriggered: window.openFile() }
                MenuItem { text: "Folder of point files\u2026"; onTriggered: window.openFolder() }
                MenuItem { text: "Live source\u2026   Ctrl+L"; onTriggered: window.openLive() }
                MenuItem { text: "Close"; enabled: viewer.ready; onTriggered: viewer.close() }
                MenuSeparator {}
                Instantiator {
                    model: prefs.recent
                    MenuItem { text: modelData; onTriggered: viewer.open(modelData); contentItem: Label { text: modelData; elide: Text.ElideMiddle; leftPadding: 24 } }
                    onObjectAdded: openMenu.insertItem(5 + index, object)
                    onObjectRemoved: openMenu.removeItem(object)
                }
                MenuItem { text: "Forget these"; enabled: prefs.recent.length > 0; onTriggered: prefs.clearRecent() }
            }
        }

        ToolSeparator {}
        component ToolButtonOf: PushButton {
            property int tool
            checkable: true
            checked: canvas.tool === tool
            onClicked: canvas.tool = checked ? tool : CloudCanvas.Orbit
        }
        ToolButtonOf { objectName: "orbitTool"; text: "Turn"; tip: "Turn and move the view"; tool: CloudCanvas.Orbit; checked: canvas.tool === CloudCanvas.Orbit; onClicked: { canvas.tool = CloudCanvas.Orbit; checked = Qt.binding(function () { return canvas.tool === CloudCanvas.Orbit }) } }
        ToolButtonOf { objectName: "selectTool"; text: "Select"; tip: "Select points with a band (S)"; tool: CloudCanvas.Select; onClicked: checked = Qt.binding(function () { return canvas.tool === CloudCanvas.Select }) }
        ToolButtonOf { objectName: "rulerTool"; text: "Measure"; tip: "Distance between two points (R)"; tool: CloudCanvas.Ruler; onClicked: checked = Qt.binding(function () { return canvas.tool === CloudCanvas.Ruler }) }

        ToolSeparator {}
        Choice {
            objectName: "colorBox"
            label: "Colour by"
            displayText: viewer.colors.rgb ? "camera colours" : currentText
            Layout.preferredWidth: 150
            enabled: viewer.ready && !viewer.colors.rgb
            model: viewer.colorTitles
            currentIndex: viewer.colors.mode
            onActivated: viewer.colors.mode = index
        }
        Choice {
            objectName: "sideColorBox"
            label: "Colour of the right view"
            visible: viewer.splitView
            Layout.preferredWidth: 150
            enabled: viewer.ready && !viewer.sideColors.rgb
            model: viewer.colorTitles
            currentIndex: viewer.sideColors.mode
            onActivated: viewer.sideColors.mode = index
        }
        PushButton {
            text: "View \u25be"
            tip: "Standard views"
            onClicked: viewMenu.popup(this, 0, height)
            menuOpen: viewMenu.visible
            PopMenu {
                id: viewMenu
                MenuItem { text: "Fit   F"; onTriggered: canvas.fit() }
                MenuItem { text: "First view   Home"; onTriggered: canvas.setView(viewer.viewNames[0]) }
                MenuItem { text: "Front   1"; onTriggered: canvas.setView("front") }
                MenuItem { text: "Back   2"; onTriggered: canvas.setView("back") }
                MenuItem { text: "Left   3"; onTriggered: canvas.setView("left") }
                MenuItem { text: "Right   4"; onTriggered: canvas.setView("right") }
                MenuItem { text: "Top   5"; onTriggered: canvas.setView("top") }
                MenuItem { text: "Bottom   6"; onTriggered: canvas.setView("bottom") }
                MenuSeparator {}
                MenuItem { text: "Orthographic   P"; checkable: true; checked: canvas.orthographic; onTriggered: canvas.orthographic = !canvas.orthographic }
                MenuItem { text: "Two views"; checkable: true; checked: viewer.splitView; onTriggered: viewer.splitView = !viewer.splitView }
                MenuItem { text: "Light theme"; objectName: "themeItem"; checkable: true; checked: !theme.dark; onTriggered: window.setTheme(!theme.dark) }
                MenuItem { text: "Full screen   F11"; onTriggered: window.toggleFullScreen() }
                MenuItem { text: "Picture of the window\u2026   Ctrl+P"; onTriggered: window.screenshot() }
            }
        }
        Item { Layout.fillWidth: true }
        Label { objectName: "typeLabel"; text: viewer.lidarType; color: theme.faint; rightPadding: 8 }
        PushButton { objectName: "tableButton"; text: "Table"; tip: "Table of points (F10)"; checkable: true; checked: window.tableShown; onClicked: { window.showTable(!window.tableShown); checked = Qt.binding(function () { return window.tableShown }) } }
        PushButton { objectName: "dockButton"; text: "Panels"; tip: "Side panels (F9)"; checkable: true; checked: window.dockShown; onClicked: { window.showDock(!window.dockShown); checked = Qt.binding(function () { return window.dockShown }) } }
        PushButton { objectName: "helpButton"; text: "?"; tip: "Keys and mouse (?)"; implicitWidth: 30; onClicked: help.open() }
    }
}
