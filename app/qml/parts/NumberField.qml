import QtQuick 2.15
import QtQuick.Controls 2.15

// A number that is taken over with Enter or when the field is left; what is no number falls back to what held.
TextField {
    id: field
    property double number: 0
    property int decimals: 2
    property string label
    signal entered(double value)
    function format(value) {
        var text = value.toFixed(decimals)
        return decimals > 0 ? text.replace(/\.?0+$/, "") : text
    }
    function parse(text) { return Number(text) }
    function restore() { text = Qt.binding(function () { return format(number) }) }
    // What was entered may have to wait for a pass over the points, and stands there meanwhile.
    property string awaited
    function endWait() {
        awaited = ""
        if (!activeFocus) restore()
    }
    Connections { target: bufferCalls; enabled: field.awaited.length > 0; function onRunningChanged() { if (!bufferCalls.running) field.endWait() } }
    // What is typed belongs to the source that is open: it is dropped when another one opens. The field may lose the
    // keyboard to that before this has followed.
    property var source: viewer.buffer
    onSourceChanged: { awaited = ""; restore() }
    text: format(number)
    selectByMouse: true
    opacity: enabled ? 1 : 0.45
    implicitHeight: 26
    font.pixelSize: 12
    topPadding: 3
    bottomPadding: 3
    background: Rectangle { color: theme.field; radius: 3; border.color: field.activeFocus ? theme.accent : theme.edge }
    horizontalAlignment: Text.AlignRight
    validator: DoubleValidator { notation: DoubleValidator.StandardNotation; locale: "C" }
    Accessible.name: label
    onEditingFinished: {
        var value = parse(text)
        var typed = source === viewer.buffer && text.length > 0 && text !== format(number) && value !== number && text !== awaited
        var entry = text
        restore()  // first: what hears of the number may take the keyboard away, which ends the editing once more
        if (!typed || isNaN(value)) return
        var before = number
        entered(value)
        if (!bufferCalls.running || number !== before) return
        awaited = entry
        text = entry
    }
    // Entered: the keys are the window's again.
    onAccepted: focusHome.forceActiveFocus()
    Keys.onEscapePressed: { restore(); focusHome.forceActiveFocus() }
    onActiveFocusChanged: if (activeFocus) selectAll(); else if (awaited.length > 0) text = awaited; else restore()
}
