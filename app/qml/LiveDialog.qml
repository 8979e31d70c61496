import QtQuick 2.15
import QtQuick.Controls 2.15
import QtQuick.Layouts 1.15
import "parts"

Dialog {
    id: dialog
    objectName: "liveDialog"
    anchors.centerIn: Overlay.overlay
    modal: true
    title: "Live source"
    width: 420
    padding: 14
    focus: true
    footer: Buttons {}
    standardButtons: Dialog.Ok | Dialog.Cancel
    onOpened: port.forceActiveFocus()
    onAccepted: {
        prefs.setValue("livePort", Number(port.text))
        prefs.setValue("liveAddress", address.text)
        viewer.open("udp://" + address.text.trim() + ":" + Number(port.text))
    }
    GridLayout {
        width: parent.width
        columns: 2
        columnSpacing: 10
        rowSpacing: 8
        Label { text: "UDP port" }
        TextField {
            id: port
            objectName: "livePort"
            Layout.fillWidth: true
            selectByMouse: true
            text: prefs.value("livePort", 2368)
            validator: IntValidator { bottom: 1; top: 65535 }
            Accessible.name: "UDP port that the lidar sends to"
            onAccepted: if (acceptableInput) dialog.accept()
        }
        Label { text: "Address" }
        TextField {
            id: address
            Layout.fillWidth: true
            selectByMouse: true
            text: prefs.value("liveAddress", "")
            placeholderText: "every interface"
            Accessible.name: "Address of this machine's interface, or of a multicast group"
            onAccepted: dialog.accept()
        }
        Note { Layout.columnSpan: 2; Layout.fillWidth: true; text: "Leave the address empty to listen everywhere. A multicast address, such as 239.1.1.1, joins that group." }
    }
}
