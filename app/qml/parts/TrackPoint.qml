import QtQuick 2.15

// The cursor of a track: a needle. `lane` is the track's lane.
Rectangle {
    property var lane: null
    implicitWidth: 7
    implicitHeight: 30
    radius: 2
    color: lane && (lane.pressed || lane.visualFocus) ? theme.text : theme.accent
}
