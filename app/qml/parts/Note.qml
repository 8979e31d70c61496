import QtQuick 2.15
import QtQuick.Controls 2.15

// A sentence in a panel that says what it is good for, or why it is empty.
Label {
    width: parent ? parent.width : implicitWidth
    wrapMode: Text.WordWrap
    color: theme.faint
    font.pixelSize: 12
}
