import QtQuick 2.15
import "parts"

// What lies over the points of a point file: the legends.
CloudLegends {}
