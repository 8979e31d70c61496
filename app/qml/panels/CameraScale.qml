import QtQuick 2.15
import QtQuick.Controls 2.15
import QtQuick.Layouts 1.15
import "../parts"

// The levels between which a colour camera is shown, set by hand or by the shares of its samples that may lie outside.
GridLayout {
    id: camera
    property var buffer: null
    readonly property bool longFocus: buffer !== null && Boolean(buffer.rgbDualFocusScaleFlag)
    function of(property) { return buffer !== null && buffer[property] !== undefined ? buffer[property] : 0 }
    columns: 4
    rowSpacing: 4

    component Level: NumberField {
        property string property
        objectName: property
        Layout.fillWidth: true
        Layout.preferredWidth: 60
        decimals: 1
        number: camera.of(property)
        onEntered: bufferCalls.set(camera.buffer, property, value)
    }
    component Automatic: Check {
        property string property
        objectName: property
        text: "Auto"
        checked: Boolean(camera.of(property))
        onToggled: bufferCalls.set(camera.buffer, property, checked)
    }

    Label { text: "Camera"; font.bold: true; font.pixelSize: 12; Layout.columnSpan: 4 }
    Label { text: camera.longFocus ? "Short focus" : "Levels"; font.pixelSize: 12 }
    Level { property: "rgbMin"; label: "Level shown as black" }
    Level { property: "rgbMax"; label: "Level shown as full colour" }
    Automatic { property: "rgbAutoScale"; tip: "Take the levels from each frame" }

    Label { visible: camera.longFocus; text: "Long focus"; font.pixelSize: 12 }
    Level { visible: camera.longFocus; property: "rgbMinLong"; label: "Level shown as black, long focus" }
    Level { visible: camera.longFocus; property: "rgbMaxLong"; label: "Level shown as full colour, long focus" }
    Automatic { visible: camera.longFocus; property: "rgbAutoScaleLong"; tip: "Take the levels of the long focus from each frame" }

    Label { text: "Auto from, to"; font.pixelSize: 12; enabled: low.enabled }
    Level { id: low; property: "rgbAutoScaleLowPercent"; label: "Per cent of the samples that become black"; enabled: Boolean(camera.of("rgbAutoScale")) || camera.longFocus && Boolean(camera.of("rgbAutoScaleLong")) }
    Level { property: "rgbAutoScaleHighPercent"; label: "Per cent of the samples below full colour"; enabled: low.enabled }
    Label { text: "%"; font.pixelSize: 12; enabled: low.enabled }
}
