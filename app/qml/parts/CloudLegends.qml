import QtQuick 2.15
import ".."

// The legends of the points: one, or with two views one for each.
Item {
    // How much of the lower left corner is taken.
    property real cornerHeight: 0
    Legend {
        scale: viewer.colors
        anchors { bottom: parent.bottom; bottomMargin: 18; right: parent.right; rightMargin: 18 + (viewer.splitView ? parent.width / 2 : 0) }
    }
    Legend {
        scale: viewer.sideColors
        visible: viewer.splitView && shown
        anchors { bottom: parent.bottom; bottomMargin: 18; right: parent.right; rightMargin: 18 }
    }
}
