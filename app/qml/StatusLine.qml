import QtQuick 2.15
import QtQuick.Controls 2.15

Rectangle {
    readonly property bool failed: viewer.error.length > 0
    height: 26
    color: failed ? "#5a1f24" : "#14181d"

    Label {
        objectName: "statusLabel"
        anchors { left: parent.left; right: counts.left; verticalCenter: parent.verticalCenter; leftMargin: 10; rightMargin: 10 }
        text: failed ? viewer.error : viewer.opening ? "Opening ..." : viewer.statusText
        color: failed ? "#ffd7d9" : "#9fb4c8"
        font.pixelSize: 12
        elide: Text.ElideRight
    }
    Label {
        id: counts
        anchors { right: parent.right; verticalCenter: parent.verticalCenter; rightMargin: 10 }
        text: viewer.countText
        font.pixelSize: 12
    }
    MouseArea { anchors.fill: parent; enabled: failed; onClicked: viewer.clearError() }
}
