import QtQuick 2.15

// Colours that the palette has no role for.
QtObject {
    property bool dark: true
    readonly property color window: dark ? "#1b2026" : "#f0f2f4"
    readonly property color bar: dark ? "#14181d" : "#e4e8ec"
    readonly property color panel: dark ? "#1b2026" : "#f7f8f9"
    readonly property color line: dark ? "#323a43" : "#ccd2d8"
    readonly property color edge: dark ? "#68747f" : "#828c96"
    readonly property color text: dark ? "#d6dce2" : "#1d242b"
    readonly property color faint: dark ? "#8fa0b0" : "#5a6672"
    readonly property color field: dark ? "#14181d" : "#ffffff"
    readonly property color accent: dark ? "#3d8bd9" : "#2470b8"
    // Behind white text.
    readonly property color fill: dark ? "#2a6db3" : "#2470b8"
    readonly property color button: dark ? "#2a3139" : "#e1e5e9"
    readonly property color hover: dark ? "#35404a" : "#d3d9df"
    readonly property color row: dark ? "#20262d" : "#eef1f4"
    readonly property color canvas: dark ? "#101418" : "#fbfbfa"
    readonly property color grid: dark ? "#2b333c" : "#d3d8dd"
    readonly property color label: dark ? "#7f8b97" : "#626c76"
    readonly property color veil: dark ? "#c8101418" : "#d8ffffff"
    readonly property color errorBack: dark ? "#5a1f24" : "#f6d5d7"
    readonly property color errorText: dark ? "#ffd7d9" : "#7a1119"
    readonly property color logError: dark ? "#ff8a8a" : "#b00020"
    readonly property color logWarning: dark ? "#ffc46b" : "#8a5a00"
    readonly property color mark: dark ? "#ff40ff" : "#c000c0"
}
