import QtQuick 2.15
import QtQuick.Controls 2.15
import "parts"

// The cursor of a track whose points have x, y, z and an intensity: a needle that tells, while it is moved or the mouse
// is over it, the frame, the time and the points under it.
TrackPoint {
    id: mark
    readonly property bool told: lane !== null && (lane.pressed || over.hovered)
    HoverHandler { id: over; margin: 4 }
    Rectangle {
        id: flag
        objectName: "trackPointFlag"
        visible: mark.told
        // Inside the lane, on the side with room.
        x: mark.lane && mark.lane.visualPosition > 0.5 ? -width - 4 : mark.width + 4
        y: 1
        width: text.width + 12
        height: 22
        radius: 3
        color: theme.window
        border.color: theme.edge
        Label {
            id: text
            anchors.centerIn: parent
            font.pixelSize: 11
            text: (viewer.timeline.frame >= 0 ? "frame " + viewer.timeline.frame + "   " : "") + viewer.timeline.cursorText
                + "   " + viewer.pointsShown.toLocaleString(Qt.locale("en"), "f", 0) + " points x y z i"
        }
    }
}
