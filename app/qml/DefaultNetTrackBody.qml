import QtQuick 2.15
import QtQuick.Controls 2.15
import "parts"

// The track of a live source: what is still in memory, at which rate frames come, whether they are followed, and the
// recording.
TrackLane {
    id: body
    property real rate: 0
    property int counted: 0
    readonly property bool recording: viewer.recording
    property real recordedFrom: 0  // seconds since 1970
    onRecordingChanged: if (recording) recordedFrom = line.endSeconds
    readonly property real behind: Math.max(0, line.endSeconds - line.cursorSeconds)
    byFrame: false
    backwards: true
    label: viewer.title + "   " + rate.toFixed(1) + " frames/s, "
         + (!line.playing ? "paused" : line.follow ? "following" : "playing")
         + (behind > 0.5 ? ", " + behind.toFixed(1) + " s behind" : "")
         + (viewer.recording ? ", recording" : "")

    // What the recording holds of it.
    overClip: Item {
        Rectangle {
            visible: body.recording
            x: (Math.max(body.from, body.recordedFrom) - body.from) / (body.to - body.from) * parent.width
            width: parent.width - x
            height: parent.height
            color: theme.logError
            opacity: 0.5
        }
    }

    Timer {
        interval: 1000
        repeat: true
        running: viewer.live
        onTriggered: {
            var frames = body.line.frameCount
            body.rate = Math.max(0, frames - body.counted)
            body.counted = frames
        }
    }
    Component.onCompleted: counted = line.frameCount
}
