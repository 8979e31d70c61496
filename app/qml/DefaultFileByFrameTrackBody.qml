import QtQuick 2.15
import QtQuick.Controls 2.15
import "parts"

// The track of what is played from files: the clip, a tick a frame, and how far the reading has come.
TrackLane {
    id: body
    overClip: Item {
        visible: viewer.indexing
        // The clip grows while the file is read: its end is not the last one.
        Rectangle {
            anchors { right: parent.right; top: parent.top; bottom: parent.bottom }
            width: 60
            gradient: Gradient {
                orientation: Gradient.Horizontal
                GradientStop { position: 0; color: "transparent" }
                GradientStop { position: 1; color: theme.field }
            }
        }
        Label {
            objectName: "readingText"
            anchors { right: parent.right; rightMargin: 8; verticalCenter: parent.verticalCenter }
            font.pixelSize: 11
            text: "reading" + (viewer.indexShare >= 0 ? ", " + Math.floor(viewer.indexShare * 100) + " %" : "")
        }
    }
}
