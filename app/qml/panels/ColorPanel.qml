import QtQuick 2.15
import QtQuick.Controls 2.15
import QtQuick.Layouts 1.15
import "../parts"

// Colour mode, ramp and range of one or both views, and the scales that only some lidars have.
Column {
    id: panel
    readonly property var buffer: viewer.buffer
    spacing: 8
    topPadding: 6
    // Both kinds of buffer take a mask and tell nothing of it; a new one begins with all bits.
    onBufferChanged: mask.shown = 0xffff

    ScaleEditor { objectName: "mainScale"; scale: viewer.colors; title: viewer.splitView ? "Left view" : "" }
    ScaleEditor { objectName: "sideScale"; visible: viewer.splitView; scale: viewer.sideColors; title: "Right view" }
    CameraScale { visible: (viewer.colors.rgb || viewer.overlaySerial > 0) && panel.buffer !== null && panel.buffer.rgbMin !== undefined; width: parent.width; buffer: panel.buffer }
    AreaScale { visible: panel.buffer !== null && Boolean(panel.buffer.areaRemapFlag); width: parent.width; buffer: panel.buffer }

    Flow {
        width: parent.width
        spacing: 8
        Check { objectName: "splitCheck"; text: "Two views"; tip: "Two views of one frame, each with a colour mode of its own"; checked: viewer.splitView; onToggled: viewer.splitView = checked }
        Check { text: "Rings and axes"; tip: "Circles around the lidar with their distance, and which way its axes point"; checked: viewer.gridVisible; onToggled: { viewer.gridVisible = checked; prefs.setValue("grid", checked) } }
        Check { text: "Legend"; tip: "The ramp with its values, on the canvas"; checked: window.legendShown; onToggled: { window.legendShown = checked; prefs.setValue("legend", checked) } }
        Check { objectName: "cameraCheck"; visible: viewer.overlaySerial > 0; text: "Camera picture"; tip: "The camera's picture in the lower left corner"; checked: window.cameraShown; onToggled: { window.cameraShown = checked; prefs.setValue("camera", checked) } }
        Check { text: "Frame rate and points"; tip: "Pictures a second and the number of points, on the canvas"; checked: window.statsShown; onToggled: { window.statsShown = checked; prefs.setValue("stats", checked) } }
    }
    RowLayout {
        width: parent.width
        Label { text: "Point size"; font.pixelSize: 12 }
        Slider {
            Layout.fillWidth: true
            focusPolicy: Qt.TabFocus
            Accessible.name: "Point size"
            FocusRing {}
            from: 1; to: 8
            value: viewer.pointSize
            onMoved: { viewer.pointSize = value; prefs.setValue("pointSize", value) }
        }
        Label { text: viewer.pointSize.toFixed(1) + " px"; font.pixelSize: 12; Layout.preferredWidth: 40 }
    }
    RowLayout {
        width: parent.width
        visible: panel.buffer !== null && typeof panel.buffer.updateMask === "function"
        Label { text: "Bit mask"; font.pixelSize: 12; Layout.fillWidth: true }
        Label { text: "0x"; font.pixelSize: 12; color: theme.faint }
        NumberField {
            id: mask
            property int shown: 0xffff
            objectName: "bitMask"
            label: "Bits of whole-number attributes that are coloured, hexadecimal"
            implicitWidth: 64
            number: shown
            maximumLength: 4
            validator: RegExpValidator { regExp: /[0-9a-fA-F]{1,4}/ }
            ToolTip.visible: hovered
            ToolTip.delay: 600
            ToolTip.text: "Colour whole-number attributes by these bits only"
            function format(value) { return value.toString(16) }
            function parse(text) { return parseInt(text, 16) }
            onEntered: { shown = value; bufferCalls.call(panel.buffer, "updateMask", [value]) }
        }
    }
}
