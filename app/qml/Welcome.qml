import QtQuick 2.15
import QtQuick.Controls 2.15
import "parts"

// What is on the canvas while nothing is open.
Column {
    spacing: 12
    Label {
        anchors.horizontalCenter: parent.horizontalCenter
        text: viewer.opening ? viewer.openingText : "Open a capture, or drop one here"
        font.pixelSize: 18
        color: theme.label
    }
    BusyIndicator { anchors.horizontalCenter: parent.horizontalCenter; running: viewer.opening; visible: running }
    PushButton { anchors.horizontalCenter: parent.horizontalCenter; visible: viewer.opening; text: "Cancel"; onClicked: viewer.cancelOpening() }
    Row {
        anchors.horizontalCenter: parent.horizontalCenter
        visible: !viewer.opening
        spacing: 8
        PushButton { text: "Open file\u2026"; tip: "Open a capture or a point file (Ctrl+O)"; onClicked: window.openFile() }
        PushButton { text: "Open folder\u2026"; tip: "Open a folder of point files (Ctrl+Shift+O)"; onClicked: window.openFolder() }
        PushButton { text: "Live source\u2026"; tip: "Listen to a lidar (Ctrl+L)"; onClicked: window.openLive() }
    }
    Column {
        readonly property int room: Math.floor((canvas.height - 130) / 26)
        visible: !viewer.opening && prefs.recent.length > 0 && room > 0
        anchors.horizontalCenter: parent.horizontalCenter
        Label { text: "Recent"; color: theme.label; font.pixelSize: 12; bottomPadding: 4 }
        Repeater {
            model: prefs.recent.slice(0, Math.max(0, Math.min(6, parent.room)))
            ItemDelegate {
                id: entry
                width: Math.min(420, canvas.width - 20)
                height: 26
                focusPolicy: Qt.TabFocus
                text: modelData
                Accessible.name: "Open " + modelData
                contentItem: Label { text: modelData; elide: Text.ElideMiddle; font { pixelSize: 12; underline: entry.hovered } color: theme.accent }
                background: Rectangle { radius: 3; color: entry.hovered ? theme.row : "transparent"; FocusRing { visible: entry.visualFocus; anchors.margins: 0 } }
                onClicked: window.openRecent(modelData)
                Keys.onReturnPressed: clicked()
            }
        }
    }
}
