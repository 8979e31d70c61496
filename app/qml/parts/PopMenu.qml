import QtQuick 2.15
import QtQuick.Controls 2.15

// A menu as wide as its longest entry.
Menu {
    id: menu
    padding: 3
    delegate: MenuEntry {}
    width: {
        var widest = 180
        for (var i = 0; i < count; ++i) widest = Math.max(widest, Math.min(420, itemAt(i).implicitWidth))
        return widest + 2 * padding
    }
    background: Rectangle { color: theme.panel; border.color: theme.edge; radius: 3 }
}
