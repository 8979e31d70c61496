import QtQuick 2.15
import QtQuick.Controls 2.15
import "parts"

// The manual, as it lies in the program. A link leads to another of its pages.
Popup {
    id: sheet
    objectName: "manual"
    anchors.centerIn: Overlay.overlay
    modal: true
    focus: true
    width: Math.min(960, window.width - 30)
    height: window.height - 40
    padding: 12
    background: Rectangle { color: theme.panel; border.color: theme.line; radius: 6 }
    property string page: "manual.md"
    property var pagesBefore: []
    function show(name) { page = name; scroll.ScrollBar.vertical.position = 0 }
    onAboutToShow: { pagesBefore = []; show("manual.md") }
    onOpened: text.forceActiveFocus()

    Row {
        id: head
        spacing: 8
        PushButton { text: "\u25c0"; tip: "Page before"; visible: sheet.pagesBefore.length > 0; onClicked: { sheet.show(sheet.pagesBefore[sheet.pagesBefore.length - 1]); sheet.pagesBefore = sheet.pagesBefore.slice(0, -1) } }
        PushButton { text: "Close"; tip: "Close the manual (Escape)"; onClicked: sheet.close() }
    }
    ScrollView {
        id: scroll
        anchors { fill: parent; topMargin: head.height + 8 }
        clip: true
        contentWidth: availableWidth
        TextArea {
            id: text
            objectName: "manualText"
            width: scroll.availableWidth
            readOnly: true
            selectByMouse: true
            wrapMode: Text.Wrap
            textFormat: TextEdit.MarkdownText
            baseUrl: "qrc:/manual/"
            text: sheet.visible ? app.manualPage(sheet.page) : ""
            color: theme.text
            font.pixelSize: 13
            background: null
            Accessible.name: "Manual"
            // A reader's keys go through the page, not through its letters.
            Keys.onPressed: {
                var page = scroll.height - 40, flick = scroll.contentItem
                var steps = {}
                steps[Qt.Key_Up] = -40; steps[Qt.Key_Down] = 40; steps[Qt.Key_PageUp] = -page; steps[Qt.Key_PageDown] = page
                steps[Qt.Key_Space] = page; steps[Qt.Key_Home] = -flick.contentHeight; steps[Qt.Key_End] = flick.contentHeight
                if (steps[event.key] === undefined) return
                flick.contentY = Math.max(0, Math.min(flick.contentY + steps[event.key], flick.contentHeight - flick.height))
                event.accepted = true
            }
            function fit() { app.fitPage(textDocument, width - 30, theme.accent) }
            onTextChanged: Qt.callLater(fit)
            onWidthChanged: Qt.callLater(fit)
            onLinkActivated: {
                if (app.manualPage(link).length > 0) { sheet.pagesBefore = sheet.pagesBefore.concat(sheet.page); sheet.show(link) }
                else Qt.openUrlExternally(link)
            }
            HoverHandler { cursorShape: text.hoveredLink.length > 0 ? Qt.PointingHandCursor : Qt.IBeamCursor }
        }
    }
}
