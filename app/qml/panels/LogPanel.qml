import QtQuick 2.15
import QtQuick.Controls 2.15
import QtQuick.Layouts 1.15
import "../parts"

Column {
    spacing: 4
    topPadding: 6

    RowLayout {
        width: parent.width
        PushButton { text: "Copy"; tip: "Copy the log"; onClicked: app.copyText(logModel.text()) }
        PushButton { text: "Clear"; tip: "Empty the list"; onClicked: logModel.clear() }
        Item { Layout.fillWidth: true }
        Label { text: logModel.count + " lines"; color: theme.faint; font.pixelSize: 12 }
    }
    Rectangle {
        width: parent.width
        height: 200
        color: theme.field
        ListView {
            id: list
            objectName: "logList"
            anchors { fill: parent; margins: 4 }
            clip: true
            model: logModel
            onCountChanged: positionViewAtEnd()
            Component.onCompleted: positionViewAtEnd()
            ScrollBar.vertical: ScrollBar {}
            delegate: Label {
                width: list.width - 10
                text: time + "  " + message
                wrapMode: Text.Wrap
                font.pixelSize: 11
                bottomPadding: 3
                color: level === "error" || level === "internal" ? (theme.dark ? "#ff8a8a" : "#b00020") : level === "warning" ? (theme.dark ? "#ffc46b" : "#8a5a00") : theme.text
                HoverHandler { id: hover }
                ToolTip.visible: hover.hovered
                ToolTip.delay: 800
                ToolTip.text: level + ", " + source
            }
        }
    }
}
