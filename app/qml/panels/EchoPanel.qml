import QtQuick 2.15
import QtQuick.Controls 2.15
import "../parts"

// Which of the returns of a shot is shown.
Flow {
    id: panel
    readonly property var buffer: viewer.buffer
    readonly property var titles: buffer && buffer.echoModel ? buffer.echoModel.echoTitles : []
    property int chosen: 0
    onBufferChanged: chosen = 0
    // A return mode with fewer echoes has no button left for the one chosen before.
    onTitlesChanged: if (chosen > 0 && chosen >= titles.length) { chosen = 0; if (buffer && buffer.echoModel) buffer.setEchoModelReturnMode(0) }
    spacing: 6
    topPadding: 6

    Repeater {
        model: panel.titles
        PushButton {
            objectName: "echo-" + modelData
            text: modelData
            checkable: true
            autoExclusive: true
            checked: index === panel.chosen
            onClicked: { panel.chosen = index; panel.buffer.setEchoModelReturnMode(index) }
        }
    }
}
