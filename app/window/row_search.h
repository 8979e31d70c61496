#pragma once

#include <QAbstractItemModel>
#include <QStringList>
#include <QVector3D>

namespace tarvo::skarnvisor::app {

/// Row of a table of points that lists the point nearest to a place, -1 if none lies within a millimetre on each axis
/// or the table has no columns "x(m)", "y(m)" and "z(m)". `place` in metres. Looks at each row, on the calling thread.
int rowOfPoint(const QAbstractItemModel &table, const QStringList &columnNames, const QVector3D &place);

}  // namespace tarvo::skarnvisor::app
