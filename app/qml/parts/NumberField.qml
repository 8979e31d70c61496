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
    // What was entered, until the number follows or the text changes: leaving the field does not enter it again.
    property var asked: undefined
    function restore() { text = Qt.binding(function () { return format(number) }) }
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
        var value = Number(text)
        if (text.length > 0 && !isNaN(value) && value !== number && value !== asked) {
            asked = value
            entered(value)
        }
        restore()
    }
    // Entered: the keys are the window's again.
    onAccepted: focusHome.forceActiveFocus()
    Keys.onEscapePressed: { restore(); focusHome.forceActiveFocus() }
    onNumberChanged: asked = undefined
    onTextEdited: asked = undefined
    onActiveFocusChanged: if (activeFocus) selectAll()
}
