import QtQuick 2.15
import QtQuick.Controls 2.15
import QtQuick.Layouts 1.15
import "../parts"

// Colour mode, ramp and range of one or both views, and the scale of a colour camera.
Column {
    id: panel
    readonly property var buffer: viewer.buffer
    spacing: 8
    topPadding: 6

    ScaleEditor { scale: viewer.colors; title: viewer.splitView ? "Left view" : "" }
    ScaleEditor { visible: viewer.splitView; scale: viewer.sideColors; title: "Right view" }

    Flow {
        width: parent.width
        spacing: 8
        Check { objectName: "splitCheck"; text: "Two views"; tip: "Two views of one frame, each with a colour mode of its own"; checked: viewer.splitView; onToggled: viewer.splitView = checked }
        Check { text: "Range rings"; checked: viewer.gridVisible; onToggled: { viewer.gridVisible = checked; prefs.setValue("grid", checked) } }
        Check { text: "Legend"; checked: window.legendShown; onToggled: { window.legendShown = checked; prefs.setValue("legend", checked) } }
        Check { text: "Frame rate and points"; checked: window.statsShown; onToggled: { window.statsShown = checked; prefs.setValue("stats", checked) } }
    }
    RowLayout {
        width: parent.width
        Label { text: "Point size"; font.pixelSize: 12 }
        Slider {
            Layout.fillWidth: true
            focusPolicy: Qt.TabFocus
            Accessible.name: "Point size"
            from: 1; to: 8
            value: viewer.pointSize
            onMoved: { viewer.pointSize = value; prefs.setValue("pointSize", value) }
        }
        Label { text: viewer.pointSize.toFixed(1) + " px"; font.pixelSize: 12; Layout.preferredWidth: 40 }
    }

    // A colour camera has a scale of its own.
    GridLayout {
        visible: viewer.colors.rgb && panel.buffer !== null && panel.buffer.rgbMin !== undefined
        width: parent.width
        columns: 3
        Label { text: "Camera"; font.bold: true; font.pixelSize: 12; Layout.columnSpan: 3 }
        Label { text: "Levels"; font.pixelSize: 12 }
        NumberField { label: "Dark end of the camera's levels"; Layout.fillWidth: true; decimals: 1; number: panel.buffer && panel.buffer.rgbMin || 0; onEntered: panel.buffer.rgbMin = value }
        NumberField { label: "Bright end of the camera's levels"; Layout.fillWidth: true; decimals: 1; number: panel.buffer && panel.buffer.rgbMax || 0; onEntered: panel.buffer.rgbMax = value }
        Check { text: "Automatic, %"; checked: panel.buffer && panel.buffer.rgbAutoScale || false; onToggled: panel.buffer.rgbAutoScale = checked }
        NumberField { label: "Share that may be darker, per cent"; Layout.fillWidth: true; decimals: 1; number: panel.buffer && panel.buffer.rgbAutoScaleLowPercent || 0; onEntered: panel.buffer.rgbAutoScaleLowPercent = value }
        NumberField { label: "Share that may not be brighter, per cent"; Layout.fillWidth: true; decimals: 1; number: panel.buffer && panel.buffer.rgbAutoScaleHighPercent || 0; onEntered: panel.buffer.rgbAutoScaleHighPercent = value }
        Label { visible: longFocus.visible; text: "Long focus"; font.pixelSize: 12 }
        NumberField { id: longFocus; visible: panel.buffer && panel.buffer.rgbDualFocusScaleFlag || false; label: "Dark end, long focus"; Layout.fillWidth: true; decimals: 1; number: panel.buffer && panel.buffer.rgbMinLong || 0; onEntered: panel.buffer.rgbMinLong = value }
        NumberField { visible: longFocus.visible; label: "Bright end, long focus"; Layout.fillWidth: true; decimals: 1; number: panel.buffer && panel.buffer.rgbMaxLong || 0; onEntered: panel.buffer.rgbMaxLong = value }
        Check { visible: longFocus.visible; text: "Automatic, long"; Layout.columnSpan: 3; checked: panel.buffer && panel.buffer.rgbAutoScaleLong || false; onToggled: panel.buffer.rgbAutoScaleLong = checked }
    }
}
