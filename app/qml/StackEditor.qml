import QtQuick 2.15
import QtQuick.Controls 2.15
import "parts"

// How much is shown at once: frames, whose memory is taken in the background and what came of it told, and by time, for
// lidars of which so much is asked, a window.
Row {
    id: editor
    readonly property var buffer: viewer.buffer
    property bool busy: false
    property bool narrow: false
    property bool cancelling: false
    property int asked: 0
    property bool awaited: false  // by the user; a stack that is made anew is not told of
    property real progress: 0
    readonly property bool stacks: buffer !== null && typeof buffer.setFrameNumber === "function"
    readonly property bool timed: buffer !== null && Boolean(buffer.frameDurationFlag) && !viewer.playByFrame
    visible: stacks || timed
    spacing: 4

    function ask(depth) {
        asked = depth
        awaited = true
        bufferCalls.call(buffer, "setFrameNumber", [depth])
        if (depth === 1) viewer.tell("Frames are shown one at a time")  // comes without an answer
    }
    function cancel() {
        cancelling = true
        buffer.cancelFrameAllocation()
    }
    onBufferChanged: busy = cancelling = awaited = false
    onBusyChanged: progress = 0
    Timer { interval: 100; repeat: true; running: editor.busy; onTriggered: editor.progress = editor.buffer.frameAllocationProgress() }
    Connections {
        target: editor.buffer
        ignoreUnknownSignals: true
        function onFrameAllocationStarted() { editor.busy = true }
        function onFrameAllocationFinished(success, actualFrames, message) {
            var wanted = !success && editor.cancelling
            var told = awaited
            busy = cancelling = awaited = false
            if (!success && !wanted) return viewer.fail(message)
            if (success && !told) return
            // The frames before the cursor fill it by themselves.
            var lacking = success && !viewer.timeline.playing && (!viewer.playByFrame || viewer.timeline.frame + 1 < actualFrames)
            viewer.tell(lacking ? message + "; press play to fill it" : message)
        }
    }
    // By time, some lidars show a window of a length of its own.
    Label { text: "Seconds"; visible: editor.timed && !editor.narrow; font.pixelSize: 12; anchors.verticalCenter: parent.verticalCenter }
    NumberField {
        id: seconds
        visible: editor.timed
        label: "Length of the time window, seconds"
        width: 52
        decimals: 3
        number: editor.buffer && editor.buffer.frameSeconds || 0
        onEntered: bufferCalls.set(editor.buffer, "frameSeconds", value)
    }
    Label { text: "Stack"; visible: editor.stacks; font.pixelSize: 12; anchors.verticalCenter: parent.verticalCenter }
    NumberField {
        objectName: "stackDepth"
        visible: editor.stacks
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
    Label { text: "frames"; visible: editor.stacks && !editor.narrow; font.pixelSize: 12; color: theme.faint; anchors.verticalCenter: parent.verticalCenter }
}
