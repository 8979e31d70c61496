import QtQuick 2.15

// The saving of each frame that is played. The files are written by the pipeline, which tells a failure to the log alone.
Item {
    id: frames
    property bool running: false
    property var target: null
    property url folder

    function start(track, type, url) {
        var fault = files.folderFault(url)
        if (fault) return viewer.fail("No frame is saved: " + fault + ".")
        folder = url
        target = track
        bufferCalls.call(target, "setDetailExport", [true, type, url])
        running = true
        viewer.showAgain()  // the one that is shown is the first
        viewer.tell("This frame and each that is played is saved; press play")
    }
    function end() {
        if (running && target) bufferCalls.call(target, "setDetailExport", [false, 0, ""])
        forget()
    }
    // The source has gone, and its export with it.
    function forget() {
        running = false
        target = null
    }
    Connections {
        target: logModel
        function onErrorLogged(message) {
            if (!frames.running || message.indexOf(files.path(frames.folder)) < 0) return
            viewer.fail("The saving of frames has ended: " + (files.folderFault(frames.folder) || message) + ".")
            window.endFrameExport()
        }
    }
}
