import QtQuick 2.15
import QtQuick.Controls 2.15
import QtQuick.Layouts 1.15
import "../parts"

// Which channels are shown: all, none, some by number, or one by one in the table.
Column {
    id: panel
    readonly property var buffer: viewer.buffer
    readonly property var channels: buffer ? buffer.channelModel : null
    // Both follow the model's states.
    readonly property var shownRows: (table.serial, table.model ? table.all().filter(table.isShown) : [])
    readonly property string shownText: rangesOf(shownRows)
    spacing: 6
    topPadding: 6

    // Point files alone take it, and tell nothing of it.
    property bool subpixelsHidden: false
    // The first frame with corrections brings the angles; no signal tells of it while the number of channels stays.
    property string angles: ""
    onBufferChanged: {
        angles = ""
        subpixelsHidden = false
        Qt.callLater(ranges.restore)  // what was typed is no wish for another lidar
    }
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
        // A frame without a visible point leaves the picture as it is.
        if (shownRows.length === 0 && !shown) viewer.tell("All channels are off: the picture stays until one is on")
    }
    /// Rows by channel numbers as "1-16, 20"; null for what is no such text or names no channel.
    function rowsOf(text) {
        var named = {}
        var parts = text.split(",")
        for (var i = 0; i < parts.length; ++i) {
            var ends = /^\s*(\d+)\s*(?:-\s*(\d+)\s*)?$/.exec(parts[i])
            if (!ends) return null
            var a = Number(ends[1]), b = ends[2] === undefined ? a : Number(ends[2])
            for (var channel = Math.max(1, Math.min(a, b)); channel <= Math.min(table.rowCount, Math.max(a, b)); ++channel) named[channel - 1] = true
        }
        var rows = Object.keys(named).map(Number)
        return rows.length > 0 ? rows : null
    }
    function rangesOf(rows) {
        var ranges = []
        for (var i = 0; i < rows.length; ++i) {
            var from = i
            while (i + 1 < rows.length && rows[i + 1] === rows[i] + 1) ++i
            ranges.push(i === from ? rows[i] + 1 : (rows[from] + 1) + "-" + (rows[i] + 1))
        }
        return ranges.join(", ")
    }
    function showOnly(rows) {
        table.all().forEach(function (row) { buffer.setDisplayedFlag(row, false, false) })
        setShown(rows, true)
    }

    RowLayout {
        width: parent.width
        PushButton { objectName: "allChannels"; text: "All"; tip: "Show all channels"; Layout.preferredWidth: 46; onClicked: panel.setShown(table.all(), true) }
        PushButton { objectName: "noChannels"; text: "None"; tip: "Hide all channels"; Layout.preferredWidth: 46; onClicked: panel.setShown(table.all(), false) }
        Label { objectName: "channelCount"; text: panel.shownRows.length + " of " + table.rowCount + " shown"; color: theme.faint; font.pixelSize: 12; elide: Text.ElideRight; horizontalAlignment: Text.AlignRight; Layout.fillWidth: true }
    }
    RowLayout {
        width: parent.width
        Label { text: "Only"; font.pixelSize: 12 }
        TextField {
            id: ranges
            objectName: "channelRanges"
            property bool wrong: false
            Layout.fillWidth: true
            implicitHeight: 26
            font.pixelSize: 12
            topPadding: 3
            bottomPadding: 3
            selectByMouse: true
            placeholderText: "none"
            text: panel.shownText
            Accessible.name: "Channels to show, as 1-16, 20"
            ToolTip.visible: hovered
            ToolTip.delay: 600
            ToolTip.text: "Channels to show, as 1-16, 20"
            background: Rectangle { color: theme.field; radius: 3; border.color: ranges.wrong ? "#e0555f" : ranges.activeFocus ? theme.accent : theme.edge }
            function restore() { wrong = false; text = Qt.binding(function () { return panel.shownText }) }
            onTextEdited: wrong = false
            onAccepted: {
                var rows = panel.rowsOf(text)
                wrong = rows === null
                if (wrong) return
                panel.showOnly(rows)
                restore()
                focusHome.forceActiveFocus()
            }
            Keys.onEscapePressed: { restore(); focusHome.forceActiveFocus() }
            onActiveFocusChanged: if (activeFocus) selectAll(); else restore()
        }
    }
    Note { visible: ranges.wrong; text: "Write channels as 1-16, 20, up to " + table.rowCount + "." }
    ChannelTable {
        id: table
        objectName: "channelTable"
        width: parent.width
        height: 260
        model: panel.channels
        onShowAsked: panel.setShown(rows, shown)
    }
    Check { objectName: "blindChannels"; visible: panel.buffer !== null && Boolean(panel.buffer.useBlindChannels); text: "Hide blind channels"; tip: "Leave out channels that measure nothing"; checked: panel.buffer && panel.buffer.toolSettings && panel.buffer.toolSettings.setBlindChannelsCheck || false; onToggled: panel.buffer.setBlindChannelsCheck(checked) }
    Check {
        objectName: "hideSubpixels"
        visible: panel.buffer !== null && typeof panel.buffer.setUsePixelChannelLayout === "function"
        text: "Hide sub-pixel channels"
        tip: "Leave out channels that lie between others"
        checked: panel.subpixelsHidden
        onToggled: { panel.subpixelsHidden = checked; bufferCalls.call(panel.buffer, "setDisableSubpixelChannel", [checked]) }
    }
    Check {
        objectName: "subpixelsByFrame"
        visible: panel.subpixelsHidden
        leftPadding: 22
        text: "Found by the channels of this frame"
        tip: "Those between odd channels, where it has only odd ones; otherwise all above channel 64"
        checked: panel.buffer && panel.buffer.usePixelChannelLayout || false
        onToggled: bufferCalls.call(panel.buffer, "setUsePixelChannelLayout", [checked])
    }
}
