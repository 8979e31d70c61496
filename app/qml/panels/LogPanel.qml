import QtQuick 2.15
import QtQuick.Controls 2.15
import QtQuick.Layouts 1.15
import "../parts"

// The newest lines of the log, those that are wanted.
Column {
    id: panel
    spacing: 6
    topPadding: 6

    function save(url) {
        if (logView.save(url)) viewer.tell("Log saved")
        else viewer.fail("The log was not saved: " + (files.writeFault(url) || "choose another folder") + ".")
    }

    RowLayout {
        width: parent.width
        spacing: 6
        Choice {
            objectName: "logLevel"
            label: "Lines to show"
            Layout.preferredWidth: 100
            model: ["All", "Warnings", "Errors"]
            currentIndex: logView.severity
            onActivated: logView.severity = index
        }
        TextField {
            objectName: "logSearch"
            Layout.fillWidth: true
            implicitHeight: 28
            placeholderText: "Text to find"
            text: logView.search
            selectByMouse: true
            font.pixelSize: 12
            topPadding: 3
            bottomPadding: 3
            background: Rectangle { color: theme.field; radius: 3; border.color: parent.activeFocus ? theme.accent : theme.edge }
            Accessible.name: "Text that the lines hold"
            onTextEdited: logView.search = text
            onAccepted: focusHome.forceActiveFocus()
            Keys.onEscapePressed: { logView.search = ""; focusHome.forceActiveFocus() }
        }
    }
    Rectangle {
        width: parent.width
        height: 200
        color: theme.field
        border { color: list.activeFocus ? theme.accent : "transparent"; width: 1 }
        ListView {
            id: list
            objectName: "logList"
            property bool follow: true  // until the user looks at older lines
            anchors { fill: parent; margins: 4 }
            clip: true
            activeFocusOnTab: true
            boundsBehavior: Flickable.StopAtBounds
            model: logView
            Accessible.role: Accessible.List
            Accessible.name: "Log, " + logView.count + " lines"
            onCountChanged: if (follow) Qt.callLater(positionViewAtEnd)
            onMovementEnded: follow = atYEnd
            Component.onCompleted: Qt.callLater(positionViewAtEnd)
            function scroll(by) {
                contentY = Math.max(originY, Math.min(contentY + by, originY + contentHeight - height))
                follow = atYEnd
            }
            Keys.onUpPressed: scroll(-20)
            Keys.onDownPressed: scroll(20)
            Keys.onPressed: {
                if (event.key !== Qt.Key_PageUp && event.key !== Qt.Key_PageDown) return
                scroll(event.key === Qt.Key_PageUp ? -height : height)
                event.accepted = true
            }
            Keys.onEscapePressed: focusHome.forceActiveFocus()
            ScrollBar.vertical: ScrollBar { onPressedChanged: if (!pressed) list.follow = list.atYEnd }
            delegate: Label {
                width: list.width - 10
                text: time + "  " + message
                wrapMode: Text.Wrap
                font.pixelSize: 11
                bottomPadding: 3
                color: level === "error" || level === "internal" ? theme.logError : level === "warning" ? theme.logWarning : theme.text
                Accessible.role: Accessible.ListItem
                Accessible.name: level + ": " + message
                HoverHandler { id: hover }
                ToolTip.visible: hover.hovered
                ToolTip.delay: 800
                ToolTip.text: level + ", " + source
            }
            Note {
                anchors.centerIn: parent
                width: parent.width - 20
                horizontalAlignment: Text.AlignHCenter
                visible: logView.count === 0
                text: logModel.count === 0 ? "Nothing has been logged." : "None of the " + logModel.count + " lines is of this kind."
            }
        }
    }
    Flow {
        width: parent.width
        spacing: 6
        PushButton { text: "Copy"; width: 70; tip: "Copy these lines"; enabled: logView.count > 0; onClicked: { app.copyText(logView.text()); viewer.tell("Log copied") } }
        PushButton { text: "Save\u2026"; width: 70; tip: "Save these lines as a file"; enabled: logView.count > 0; onClicked: chooser.ask("Save the log", ["Text files (*.txt)"], true, panel.save, "log") }
        PushButton { text: "Clear"; width: 70; tip: "Empty the list"; enabled: logModel.count > 0; onClicked: logModel.clear() }
    }
}
