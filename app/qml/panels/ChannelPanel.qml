import QtQuick 2.15
import QtQuick.Controls 2.15
import QtQuick.Layouts 1.15
import "../parts"

// One row a channel: a check to show it, its number and angles. A click marks a row, Shift marks up to it, Ctrl adds
// one; the checks of marked rows go together.
Column {
    id: panel
    readonly property var buffer: viewer.buffer
    readonly property var channels: buffer ? buffer.channelModel : null
    property int anchor: -1
    property int rowCount: channels ? channels.rowCount() : 0
    Connections { target: panel.channels; ignoreUnknownSignals: true; function onModelReset() { panel.rowCount = panel.channels.rowCount() } }
    spacing: 4
    topPadding: 6

    // The first frame with corrections brings the angles; no signal tells of it while the number of channels stays.
    property string angles: ""
    onBufferChanged: angles = ""
    Connections {
        target: panel.buffer
        ignoreUnknownSignals: true
        function onSomeSignalReceived() {
            if (!panel.channels) return
            var now = panel.channels.data(panel.channels.index(0, 2)) + " " + panel.channels.data(panel.channels.index(0, 3))
            if (now === panel.angles) return
            panel.angles = now
            panel.channels.refresh()
        }
    }

    function setShown(rows, shown) {
        rows.forEach(function (row, i) { buffer.setDisplayedFlag(row, shown, i === rows.length - 1) })
    }
    function all() {
        var rows = []
        for (var row = 0; row < channels.rowCount(); ++row) rows.push(row)
        return rows
    }
    function marked(row) {
        var flags = channels.selectRows()
        var rows = all().filter(function (each) { return flags[each] })
        return rows.indexOf(row) >= 0 ? rows : [row]
    }
    function mark(row, modifiers) {
        if (modifiers & Qt.ControlModifier) channels.setSelectRange(row)
        else if ((modifiers & Qt.ShiftModifier) && anchor >= 0) channels.setSelectRange(anchor, row)
        else channels.setSelectRange(-1, row)
        if (!(modifiers & Qt.ShiftModifier)) anchor = row
        channels.refresh()
    }

    RowLayout {
        width: parent.width
        PushButton { objectName: "allChannels"; text: "All"; tip: "Show all channels"; onClicked: panel.setShown(panel.all(), true) }
        PushButton {
            objectName: "noChannels"
            text: "None"
            tip: "Hide all channels"
            onClicked: {
                panel.setShown(panel.all(), false)
                // A frame without a visible point leaves the picture as it is.
                viewer.tell("All channels are off: the picture stays until one is on")
            }
        }
        Item { Layout.fillWidth: true }
        Label { text: panel.rowCount + " channels"; color: theme.faint; font.pixelSize: 12 }
    }
    Table {
        id: table
        objectName: "channelTable"
        width: parent.width
        height: 260
        model: panel.channels
        heads: panel.channels ? panel.channels.headerData : []
        widths: [34, 56, 96, 96]
        cell: Rectangle {
            // A check box has a "display" of its own.
            readonly property var value: display
            implicitWidth: 60
            implicitHeight: 22
            color: background ? theme.accent : row % 2 ? theme.row : theme.field
            MouseArea { anchors.fill: parent; onClicked: panel.mark(row, mouse.modifiers) }
            Check {
                objectName: column === 0 ? "channel-" + (row + 1) : ""
                visible: column === 0
                anchors.centerIn: parent
                focusPolicy: Qt.NoFocus
                tip: "Channel " + (row + 1)
                checked: column === 0 && Boolean(value)
                onClicked: panel.setShown(panel.marked(row), checked)
            }
            Label {
                visible: column > 0
                anchors { fill: parent; leftMargin: 6 }
                verticalAlignment: Text.AlignVCenter
                font.pixelSize: 12
                color: background ? "white" : theme.text
                text: column < 2 ? value : Number(value).toFixed(3) + "\u00b0"
            }
        }
    }
}
