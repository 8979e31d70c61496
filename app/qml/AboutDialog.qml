import QtQuick 2.15
import QtQuick.Controls 2.15
import QtQuick.Layouts 1.15
import "parts"

// Which program this is and where it keeps its files.
Dialog {
    id: dialog
    objectName: "about"
    anchors.centerIn: Overlay.overlay
    modal: true
    title: "About Skarnvisor"
    width: Math.min(560, window.width - 40)
    focus: true
    footer: Buttons {}
    standardButtons: Dialog.Close
    GridLayout {
        width: parent.width
        columns: 2
        columnSpacing: 12
        component Head: Label { color: theme.faint; font.pixelSize: 12 }
        component Fact: TextField {
            property string label
            Layout.fillWidth: true
            readOnly: true
            selectByMouse: true
            font.pixelSize: 12
            color: theme.text
            background: null
            Accessible.name: label
        }
        Head { text: "Version" }
        Fact { label: "Version"; objectName: "versionText"; text: app.version }
        Head { text: "Settings file" }
        Fact { label: "Settings file"; text: prefs.file }
        Head { text: "Data folder" }
        Fact { label: "Data folder"; text: prefs.folder }
        Head { text: "Log" }
        Fact { label: "Log"; text: "In the panel Log at the side; also printed with --verbose" }
        Item { width: 1; height: 1 }
        Row {
            spacing: 8
            PushButton { text: "Open the data folder"; onClicked: if (!Qt.openUrlExternally(prefs.folderUrl)) viewer.fail("No program here shows folders: open " + prefs.folder + " yourself.") }
            PushButton { text: "Show the log"; onClicked: { dialog.close(); window.openLog() } }
        }
    }
}
