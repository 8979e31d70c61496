import QtQuick 2.15
import QtQuick.Controls 2.15

Menu {
    width: 260
    background: Rectangle { implicitWidth: 260; implicitHeight: 30; color: theme.panel; border.color: theme.edge; radius: 3 }
}
