import QtQuick 2.15

// The ranges that a point filter can have, in the order in which it takes them: first the six of real numbers, then
// those of whole ones. A row is offered where the buffer's model says so.
QtObject {
    readonly property var floats: [
        { flag: "azimuthCalibFilterFlag", title: "Azimuth, \u00b0", low: -360, high: 360 },
        { flag: "elevationCalibFilterFlag", title: "Elevation, \u00b0", low: -360, high: 360 },
        { flag: "distanceFilterFlag", title: "Distance, m", low: 0, high: 1000 },
        { flag: "xFilterFlag", title: "x, m", low: -1000, high: 1000 },
        { flag: "yFilterFlag", title: "y, m", low: -1000, high: 1000 },
        { flag: "zFilterFlag", title: "z, m", low: -1000, high: 1000 }]
    readonly property var ints: [
        { flag: "intensityFilterFlag", title: "Intensity", low: 0, high: 255 },
        { flag: "confidenceFilterFlag", title: "Confidence", low: 0, high: 255 },
        { flag: "weightFactorFilterFlag", title: "Weight factor", low: 0, high: 255 },
        { flag: "angleStateFilterFlag", title: "Angle state", low: 0, high: 255 },
        { flag: "turnIndexFilterFlag", title: "Turn index", low: 0, high: 255 },
        { flag: "pointIdFilterFlag", title: "Point id", low: 0, high: 65536 },
        { flag: "confidence0FilterFlag", title: "Confidence bit 0", low: 0, high: 1 },
        { flag: "confidence1FilterFlag", title: "Confidence bit 1", low: 0, high: 2 },
        { flag: "confidence2FilterFlag", title: "Confidence bit 2", low: 0, high: 4 },
        { flag: "confidence3FilterFlag", title: "Confidence bit 3", low: 0, high: 8 },
        { flag: "confidence4567FilterFlag", title: "Confidence bits 4 to 7", low: 0, high: 16 },
        { flag: "confidence01234FilterFlag", title: "Confidence bits 0 to 4", low: 0, high: 32 },
        { flag: "confidence5FilterFlag", title: "Confidence bit 5", low: 0, high: 32 },
        { flag: "confidence6FilterFlag", title: "Confidence bit 6", low: 0, high: 64 },
        { flag: "confidence7FilterFlag", title: "Confidence bit 7", low: 0, high: 128 },
        { flag: "nbqVtAreaFilterFlag", title: "Area", low: 0, high: 255 },
        { flag: "nbqVtStepIdFilterFlag", title: "Step id", low: 0, high: 1 },
        { flag: "nbqVtSpadIdFilterFlag", title: "SPAD id", low: 0, high: 1 }]

    function atStart(rows) { return rows.map(function (row) { return [row.low, row.high] }) }
    function flat(limits) { return limits.reduce(function (all, pair) { return all.concat(pair) }, []) }
}
