#pragma once

#include <QPainter>

#include "app/render/cloud_picture.h"

namespace tarvo::skarnvisor::app {

/// Draws the colour ramp with its title, range and unit into the lower right corner of `area`, and the caption into the
/// upper left.
void drawLegend(QPainter &painter, const QRect &area, const PictureStyle &style);

/// A value on a legend, with as many decimals as tell the ticks of `span` apart.
QString legendNumber(double value, double span);

}  // namespace tarvo::skarnvisor::app
