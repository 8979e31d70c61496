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
        label: editor.title.length > 0 ? "Colour mode, " + editor.title.toLowerCase() : "Colour mode"
        Layout.fillWidth: true
        model: viewer.colorTitles
        enabled: !editor.scale.rgb
        displayText: editor.scale.rgb ? "camera colours" : currentText
        currentIndex: editor.scale.mode
        onActivated: editor.scale.mode = index
    }
    // Camera colours and velocities have no ramp to choose and no range.
    Label { visible: editor.scale.ranged; text: "Ramp"; font.pixelSize: 12 }
    Choice {
        label: editor.title.length > 0 ? "Colour ramp, " + editor.title.toLowerCase() : "Colour ramp"
        Layout.fillWidth: true
        visible: editor.scale.ranged
        model: viewer.rampNames
        currentIndex: viewer.rampNames.indexOf(editor.scale.ramp)
        onActivated: editor.scale.ramp = viewer.rampNames[index]
    }
    Label { visible: editor.scale.ranged; text: "Range"; font.pixelSize: 12 }
    RowLayout {
        visible: editor.scale.ranged
        NumberField { objectName: "rangeLow"; label: "Low end of the colour range"; Layout.fillWidth: true; Layout.preferredWidth: 60; number: editor.scale.low; onEntered: editor.scale.low = value }
        Label { text: "to"; font.pixelSize: 12 }
        NumberField { objectName: "rangeHigh"; label: "High end of the colour range"; Layout.fillWidth: true; Layout.preferredWidth: 60; number: editor.scale.high; onEntered: editor.scale.high = value }
        Label { visible: text.length > 0; text: editor.scale.unit; font.pixelSize: 12 }
    }
    Item { visible: editor.scale.ranged; width: 1; height: 1 }
    RowLayout {
        visible: editor.scale.ranged
        Check { text: "Lock"; tip: "Keep this range for this colour mode, in every capture"; checked: editor.scale.locked; onToggled: editor.scale.locked = checked }
        PushButton { text: "Fit"; tip: "Spread the ramp over what is shown now"; onClicked: editor.scale.fit() }
    }
}
