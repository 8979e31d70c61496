import QtQuick 2.15
import QtQuick.Controls 2.15

// The scale of a track: a tick a frame, or as many as there is room for, every so many of them with its number.
Item {
    id: ticks
    property real from: 0
    property real to: 1
    property bool byFrame: true
    property bool backwards: false  // seconds are counted from the end, as for data that are still coming
    readonly property real span: Math.max(to - from, 1e-6)
    readonly property real major: niceStep(span * 76 / Math.max(width, 1))
    readonly property real minor: minorOf(major)
    clip: true

    // 1, 2 or 5 times a power of ten, at least `least`.
    function niceStep(least) {
        if (byFrame) least = Math.max(least, 1)
        var power = Math.pow(10, Math.floor(Math.log(least) / Math.LN10 + 1e-9))
        var digit = least / power
        return power * (digit <= 1.001 ? 1 : digit <= 2.001 ? 2 : digit <= 5.001 ? 5 : 10)
    }
    function minorOf(step) {
        var leading = Math.round(step / Math.pow(10, Math.floor(Math.log(step) / Math.LN10 + 1e-9)))
        var part = step / (leading === 2 ? 2 : 5)
        return byFrame && part < 1 ? Math.max(1, step) : part
    }

    Repeater {
        model: Math.min(400, Math.floor(ticks.span / ticks.minor + 1e-6) + 1)
        Item {
            readonly property real value: index * ticks.minor
            readonly property bool numbered: Math.abs(value / ticks.major - Math.round(value / ticks.major)) < 1e-6
            x: Math.round((ticks.backwards ? ticks.span - value : value) / ticks.span * ticks.width)
            height: ticks.height
            Rectangle { width: 1; height: parent.numbered ? 7 : 4; y: parent.height - height; color: theme.faint; opacity: parent.numbered ? 1 : 0.6 }
            Label {
                visible: parent.numbered && x + parent.x >= 0 && x + parent.x + width <= ticks.width
                x: 3
                anchors.bottom: parent.bottom
                anchors.bottomMargin: 1
                font.pixelSize: 10
                color: theme.faint
                text: ticks.byFrame ? value : (ticks.backwards && value > 0 ? "-" : "") + Number(value.toFixed(2)) + " s"
            }
        }
    }
}
