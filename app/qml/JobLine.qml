import QtQuick 2.15
import "parts"

// The jobs that are under way, in one look: reading a capture, taking memory, writing files.
Row {
    id: line
    readonly property var writer: window.pointExport
    readonly property var stack: window.stackEditor
    spacing: 14
    JobRow {
        running: viewer.indexing
        text: "Reading, " + viewer.timeline.frameCount + " frames found"
        share: viewer.indexShare
        way: "Stop"
        onCancelled: viewer.stopReading()
    }
    JobRow {
        running: stack !== null && stack.busy
        text: stack ? "Taking memory for " + stack.asked + " frames" : ""
        share: stack ? stack.progress : -1
        ending: stack !== null && stack.cancelling
        onCancelled: stack.cancel()
    }
    JobRow {
        running: line.writer !== null && Boolean(line.writer.running)
        text: "Saving points"
        share: line.writer ? line.writer.progress : -1
        onCancelled: line.writer.cancel()
    }
    JobRow {
        running: jobs.running
        text: jobs.text
        share: jobs.share
        ending: jobs.cancelling
        onCancelled: jobs.cancel()
    }
}
