import QtQuick 2.15
import QtQuick.Controls 2.15
import QtQuick.Layouts 1.15
import Skarnvisor 1.0
import "parts"

// What is used again and again; the menus have the rest.
ToolBar {
    id: strip
    background: Rectangle { color: theme.bar }
    implicitHeight: 38
    implicitWidth: 0  // as wide as the window; what it holds follows that

    RowLayout {
        anchors { fill: parent; leftMargin: 8; rightMargin: 8 }
        spacing: 5

        component Divider: Rectangle { implicitWidth: 1; implicitHeight: 20; color: theme.edge; Layout.leftMargin: 3; Layout.rightMargin: 3 }
        // Its mark follows what it stands for, whoever changes it.
        component ToolButtonOf: PushButton {
            property int tool
            checkable: true
            checked: canvas.tool === tool
            onClicked: { window.takeTool(tool); checked = Qt.binding(function () { return canvas.tool === tool }) }
        }

        PushButton { objectName: "openButton"; text: "Open\u2026"; tip: "Open a capture or a point file (Ctrl+O)"; onClicked: window.openFile() }
        Divider {}
        ToolButtonOf { objectName: "orbitTool"; text: "Turn"; tip: "Turn and move the view (Escape)"; tool: CloudCanvas.Orbit }
        ToolButtonOf { objectName: "selectTool"; text: "Select"; tip: "Select points with a band (S)"; tool: CloudCanvas.Select }
        ToolButtonOf { objectName: "rulerTool"; text: "Measure"; tip: "Distance between two points (R)"; tool: CloudCanvas.Ruler }
        Divider {}
        Label { text: "Colour by"; visible: strip.width > 1000; font.pixelSize: 12; color: theme.faint }
        Choice {
            objectName: "colorBox"
            label: viewer.splitView ? "Colour of the left view" : "Colour by"
            displayText: viewer.colors.rgb ? "camera colours" : currentText
            Layout.fillWidth: true
            Layout.minimumWidth: 70
            Layout.maximumWidth: 150
            enabled: viewer.ready && !viewer.colors.rgb
            model: viewer.colorTitles
            currentIndex: viewer.colors.mode
            onActivated: viewer.colors.mode = index
        }
        Choice {
            objectName: "sideColorBox"
            label: "Colour of the right view"
            visible: viewer.splitView
            displayText: viewer.sideColors.rgb ? "camera colours" : currentText
            Layout.fillWidth: true
            Layout.minimumWidth: 70
            Layout.maximumWidth: 150
            enabled: viewer.ready && !viewer.sideColors.rgb
            model: viewer.colorTitles
            currentIndex: viewer.sideColors.mode
            onActivated: viewer.sideColors.mode = index
        }
        Divider {}
        PushButton { objectName: "fitButton"; text: "Fit"; tip: "Fit what is shown (F)"; enabled: viewer.ready; onClicked: canvas.fit() }
        Item { Layout.fillWidth: true }
        Label { objectName: "typeLabel"; text: viewer.lidarType; visible: strip.width > 900; font.pixelSize: 12; color: theme.faint; rightPadding: 8 }
        PushButton { objectName: "tableButton"; text: "Table"; tip: "Table of points (F10)"; checkable: true; checked: window.tableShown; onClicked: { window.showTable(!window.tableShown); checked = Qt.binding(function () { return window.tableShown }) } }
        PushButton { objectName: "dockButton"; text: "Panels"; tip: "Side panels (F9)"; checkable: true; checked: window.dockShown; onClicked: { window.showDock(!window.dockShown); checked = Qt.binding(function () { return window.dockShown }) } }
        PushButton { objectName: "helpButton"; text: "?"; tip: "Keys and mouse (?)"; onClicked: help.open() }
    }
}
