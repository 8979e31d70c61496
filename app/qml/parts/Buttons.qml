import QtQuick 2.15
import QtQuick.Controls 2.15

// The buttons at the foot of a dialog.
DialogButtonBox {
    padding: 10
    spacing: 8
    alignment: Qt.AlignRight
    background: null
    // Of one width: the box goes by what the buttons measure before they have their texts.
    delegate: PushButton { implicitWidth: 88 }
}
