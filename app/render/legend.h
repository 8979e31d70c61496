#pragma once

#include <QPainter>

#include "app/render/cloud_picture.h"

namespace tarvo::skarnvisor::app {

/// Draws the colour ramp with its title, range and unit into the lower right corner of `area`, and the caption into the
/// upper left.
void drawLegend(QPainter &painter, const QRect &area, const PictureStyle &style);

}  // namespace tarvo::skarnvisor::app
