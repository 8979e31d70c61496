import QtQuick 2.15
import QtQuick.Controls 2.15
import "parts"

// How many frames are shown at once. The memory for them is taken in the background; what came of it is told.
Row {
    id: editor
    readonly property var buffer: viewer.buffer
    property bool busy: false
    property bool narrow: false
    property bool cancelling: false
    property int asked: 0
    property real progress: 0
    visible: buffer !== null && typeof buffer.setFrameNumber === "function"
    spacing: 4

    function ask(depth) {
        if (!visible) return  // what was typed for another source
        asked = depth
        if (buffer.setFrameNumber(depth) === false) { if (!busy) field.restore() }
        else if (depth === 1) viewer.tell("Frames are shown one at a time")  // stands at once, without an answer
    }
    function cancel() {
        cancelling = true
        buffer.cancelFrameAllocation()
    }
    onBufferChanged: busy = cancelling = false
    onBusyChanged: progress = 0
    Timer { interval: 100; repeat: true; running: editor.busy; onTriggered: editor.progress = editor.buffer.frameAllocationProgress() }
    Connections {
        target: editor.buffer
        ignoreUnknownSignals: true
        function onFrameAllocationStarted() { editor.busy = true }
        function onFrameAllocationFinished(success, actualFrames, message) {
            var wanted = !success && editor.cancelling
            editor.busy = editor.cancelling = false
            field.restore()
            // A stack fills as frames come.
            if (!success && !wanted) viewer.fail(message)
            else viewer.tell(success && actualFrames > 1 && !viewer.timeline.playing ? message + "; press play to fill it" : message)
        }
    }
    // By time, some lidars show a window of a length of its own.
    Label { text: "Seconds"; visible: seconds.visible && !editor.narrow; font.pixelSize: 12; anchors.verticalCenter: parent.verticalCenter }
    NumberField {
        id: seconds
        visible: !viewer.playByFrame && editor.buffer !== null && Boolean(editor.buffer.frameDurationFlag)
        label: "Length of the time window, seconds"
        width: 52
        decimals: 3
        number: editor.buffer && editor.buffer.frameSeconds || 0
        onEntered: editor.buffer.frameSeconds = value
    }
    Label { text: "Stack"; font.pixelSize: 12; anchors.verticalCenter: parent.verticalCenter }
    NumberField {
        id: field
        objectName: "stackDepth"
        label: "Frames shown at once"
        width: 52
        decimals: 0
        enabled: !editor.busy
        number: editor.buffer && editor.buffer.frameNumber || 1
        onEntered: editor.ask(Math.round(value))
        ToolTip.visible: hovered
        ToolTip.delay: 600
        ToolTip.text: "Frames shown at once, up to 3000"
    }
    Label { text: "frames"; visible: !editor.narrow; font.pixelSize: 12; color: theme.faint; anchors.verticalCenter: parent.verticalCenter }
}
