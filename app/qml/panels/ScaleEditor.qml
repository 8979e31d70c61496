import QtQuick 2.15
import QtQuick.Controls 2.15
import QtQuick.Layouts 1.15
import "../parts"

// Colour mode, ramp and range of one view.
GridLayout {
    id: editor
    property var scale
    property string title
    width: parent ? parent.width : 0
    columns: 2
    rowSpacing: 4

    Label { visible: editor.title.length > 0; text: editor.title; font.bold: true; font.pixelSize: 12; Layout.columnSpan: 2 }
    Label { text: "Colour by"; font.pixelSize: 12 }
    Choice {
        label: "Colour mode"
        Layout.fillWidth: true
        model: viewer.colorTitles
        enabled: !editor.scale.rgb
        currentIndex: editor.scale.mode
        onActivated: editor.scale.mode = index
    }
    Label { text: "Ramp"; font.pixelSize: 12 }
    Choice {
        label: "Colour ramp"
        Layout.fillWidth: true
        enabled: editor.scale.ranged
        model: viewer.rampNames
        currentIndex: viewer.rampNames.indexOf(editor.scale.ramp)
        onActivated: editor.scale.ramp = viewer.rampNames[index]
    }
    Label { text: "Range"; font.pixelSize: 12 }
    RowLayout {
        enabled: editor.scale.ranged
        NumberField { label: "Low end of the colour range"; Layout.fillWidth: true; number: editor.scale.low; onEntered: editor.scale.low = value }
        Label { text: "to"; font.pixelSize: 12 }
        NumberField { label: "High end of the colour range"; Layout.fillWidth: true; number: editor.scale.high; onEntered: editor.scale.high = value }
    }
    Item { width: 1; height: 1 }
    RowLayout {
        enabled: editor.scale.ranged
        Check { text: "Lock"; tip: "Keep this range for this colour mode, in every capture"; checked: editor.scale.locked; onToggled: editor.scale.locked = checked }
        PushButton { text: "Fit"; tip: "Spread the ramp over what is shown now"; onClicked: editor.scale.fit() }
    }
}
