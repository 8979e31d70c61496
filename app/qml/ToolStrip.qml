import QtQuick 2.15
import QtQuick.Controls 2.15
import QtQuick.Layouts 1.15

ToolBar {
    signal openRequested()
    signal viewChosen(string name)

    RowLayout {
        anchors.fill: parent
        anchors.leftMargin: 8
        anchors.rightMargin: 8
        spacing: 8

        Button { text: "Open"; focusPolicy: Qt.NoFocus; onClicked: openRequested() }

        Label { text: "Colour"; Layout.leftMargin: 8 }
        ComboBox {
            objectName: "colorBox"
            focusPolicy: Qt.NoFocus
            Layout.preferredWidth: 150
            enabled: viewer.ready
            model: viewer.colorTitles
            currentIndex: viewer.colorMode
            onActivated: viewer.colorMode = index
        }
        ComboBox {
            focusPolicy: Qt.NoFocus
            Layout.preferredWidth: 100
            model: viewer.rampNames
            currentIndex: viewer.rampNames.indexOf(viewer.ramp)
            onActivated: viewer.ramp = viewer.rampNames[index]
        }

        Label { text: "View"; Layout.leftMargin: 8 }
        ComboBox {
            focusPolicy: Qt.NoFocus
            Layout.preferredWidth: 100
            model: viewer.viewNames
            onActivated: viewChosen(viewer.viewNames[index])
        }

        Label { text: "Points"; Layout.leftMargin: 8 }
        Slider {
            focusPolicy: Qt.NoFocus
            Layout.preferredWidth: 90
            from: 1; to: 8
            value: viewer.pointSize
            onMoved: viewer.pointSize = value
        }
        CheckBox {
            focusPolicy: Qt.NoFocus
            text: "Rings"
            checked: viewer.gridVisible
            onToggled: viewer.gridVisible = checked
        }
        Item { Layout.fillWidth: true }
        Label { text: viewer.lidarType; color: "#9fb4c8" }
    }
}
