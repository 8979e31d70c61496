import QtQuick 2.15
import QtQuick.Controls 2.15
import QtQuick.Layouts 1.15
import "../parts"

// The limits between which the area of a point is spread over its whole range.
GridLayout {
    id: area
    property var buffer: null
    function of(property) { return buffer !== null && buffer[property] !== undefined ? buffer[property] : 0 }
    columns: 4
    rowSpacing: 4
    Label { text: "Area"; font.pixelSize: 12 }
    NumberField { objectName: "areaMin"; label: "Area that becomes 0"; Layout.fillWidth: true; Layout.preferredWidth: 60; number: area.of("areaMin"); onEntered: bufferCalls.set(area.buffer, "areaMin", value) }
    Label { text: "to"; font.pixelSize: 12 }
    NumberField { objectName: "areaMax"; label: "Area that becomes the largest value"; Layout.fillWidth: true; Layout.preferredWidth: 60; number: area.of("areaMax"); onEntered: bufferCalls.set(area.buffer, "areaMax", value) }
    Note { Layout.columnSpan: 4; Layout.fillWidth: true; text: "Spread over 0 to " + area.of("areaRemapFullScale") + " once a limit is entered." }
}
