import QtQuick 2.15
import QtQuick.Controls 2.15
import "parts"

// What is on the canvas while nothing is open.
Column {
    spacing: 12
    Label {
        anchors.horizontalCenter: parent.horizontalCenter
        text: viewer.opening ? "Opening \u2026" : "Open a capture, or drop one here"
        font.pixelSize: 18
        color: theme.label
    }
    BusyIndicator { anchors.horizontalCenter: parent.horizontalCenter; running: viewer.opening; visible: running }
    PushButton { anchors.horizontalCenter: parent.horizontalCenter; visible: viewer.opening; text: "Cancel"; onClicked: viewer.cancelOpening() }
    Row {
        anchors.horizontalCenter: parent.horizontalCenter
        visible: !viewer.opening
        spacing: 8
        PushButton { text: "Open file\u2026"; tip: "Ctrl+O"; onClicked: window.openFile() }
        PushButton { text: "Open folder\u2026"; onClicked: window.openFolder() }
        PushButton { text: "Live source\u2026"; onClicked: window.openLive() }
    }
    Column {
        visible: !viewer.opening && prefs.recent.length > 0
        anchors.horizontalCenter: parent.horizontalCenter
        Label { text: "Recent"; color: theme.label; font.pixelSize: 12; bottomPadding: 4 }
        Repeater {
            model: prefs.recent.slice(0, 6)
            ItemDelegate {
                width: 420
                height: 26
                focusPolicy: Qt.TabFocus
                text: modelData
                contentItem: Label { text: modelData; elide: Text.ElideMiddle; font.pixelSize: 12; color: theme.accent }
                onClicked: viewer.open(modelData)
            }
        }
    }
}
