import QtQuick 2.15
import QtQuick.Controls 2.15

// A track on the timeline: its clip with a scale, and the cursor, which a click or a drag moves.
Slider {
    id: lane
    objectName: "cursor"
    readonly property var line: viewer.timeline
    property bool byFrame: line.frameCount > 0 && viewer.playByFrame
    property bool backwards: false
    property string label: viewer.title
    property Component overClip: null
    focusPolicy: Qt.TabFocus
    implicitHeight: 42
    padding: 0
    enabled: viewer.ready
    Accessible.name: "Place in the track"
    from: byFrame ? 0 : line.beginSeconds
    to: byFrame ? Math.max(1, line.frameCount - 1) : Math.max(line.beginSeconds + 0.1, line.endSeconds)
    stepSize: byFrame ? 1 : 0
    onMoved: byFrame ? line.seekFrame(Math.round(value)) : line.seekSeconds(value)
    function goToCursor() { if (!pressed) value = byFrame ? line.frame : line.cursorSeconds }
    onByFrameChanged: goToCursor()
    onToChanged: goToCursor()
    Component.onCompleted: goToCursor()
    Connections {
        target: lane.line
        function onCursorChanged() { lane.goToCursor() }
    }

    background: Rectangle {
        radius: 3
        color: theme.field
        border { color: lane.visualFocus ? theme.text : theme.line; width: lane.visualFocus ? 2 : 1 }
        Item {
            id: clip
            anchors { fill: parent; leftMargin: lane.handle.width / 2; rightMargin: lane.handle.width / 2 }
            visible: viewer.ready
            Rectangle {
                anchors { fill: parent; topMargin: 2; bottomMargin: 16 }
                radius: 3
                color: theme.accent
                opacity: 0.3
            }
            // What lies behind the cursor.
            Rectangle {
                anchors { top: parent.top; bottom: parent.bottom; topMargin: 2; bottomMargin: 16 }
                width: lane.visualPosition * parent.width
                radius: 3
                color: theme.accent
                opacity: 0.35
            }
            Label {
                x: 8
                y: 2
                height: parent.height - 18
                width: parent.width - 16
                text: lane.label
                font.pixelSize: 11
                elide: Text.ElideMiddle
                verticalAlignment: Text.AlignVCenter
            }
            TrackTicks { anchors.fill: parent; from: lane.from; to: lane.to; byFrame: lane.byFrame; backwards: lane.backwards }
            Loader { anchors { fill: parent; topMargin: 2; bottomMargin: 16 } sourceComponent: lane.overClip }
        }
    }
    handle: Loader {
        x: lane.visualPosition * (lane.availableWidth - width)
        visible: viewer.ready
        source: viewer.trackPointFile
        onLoaded: item.lane = lane
    }
}
