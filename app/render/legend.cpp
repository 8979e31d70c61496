#include "app/render/legend.h"

#include <cmath>

#include "app/render/attribute_scale.h"

namespace tarvo::skarnvisor::app {
namespace {

constexpr int barWidth = 14;
constexpr int margin = 18;

void drawRamp(QPainter &painter, const QRect &area, const PictureStyle &style) {
  const bool velocity = style.words == WordKind::Velocity;
  const ColorRamp ramp = velocity ? ColorRamp::diverging() : style.ramp;
  const AttributeScale scale =
      velocity ? AttributeScale{1, 0, QStringLiteral("m/s")} : attributeScale(style.colorTitle);
  const double low = velocity ? -velocityLimit : scale.own(style.range.low);
  const double high = velocity ? velocityLimit : scale.own(style.range.high);

  const int height = std::min(180, area.height() / 3);
  const int textWidth = 64;
  const QRect bar(area.right() - margin - textWidth - barWidth, area.bottom() - margin - height, barWidth, height);
  const QRect titlePlace(area.right() - margin - 220, bar.top() - 34, 220, 22);
  // The points behind would make the numbers hard to read.
  painter.fillRect(QRect(bar.left() - 10, titlePlace.top(), area.right() - bar.left() - margin + 20, height + 48),
                   QColor(0x10, 0x14, 0x18, 0xb0));
  for (int y = 0; y < height; ++y) {
    painter.setPen(QColor(ramp.at(1 - static_cast<double>(y) / std::max(1, height - 1))));
    painter.drawLine(bar.left(), bar.top() + y, bar.right(), bar.top() + y);
  }
  painter.setPen(QColor(0xd0, 0xd6, 0xdc));
  for (int tick = 0; tick <= 4; ++tick) {
    const int y = bar.bottom() - tick * (height - 1) / 4;
    const QRect place(bar.right() + 8, y - 10, textWidth, 20);
    painter.drawText(place, Qt::AlignLeft | Qt::AlignVCenter, legendNumber(low + (high - low) * tick / 4, high - low));
  }
  const QString title =
      scale.unit.isEmpty() ? style.colorTitle : QStringLiteral("%1, %2").arg(style.colorTitle, scale.unit);
  painter.drawText(titlePlace, Qt::AlignRight | Qt::AlignVCenter, title);
}

}  // namespace

QString legendNumber(double value, double span) {
  const QString text = QString::number(value, 'f', span >= 20 ? 0 : span >= 2 ? 1 : 2);
  return text.toDouble() == 0 ? QString(text).remove(QLatin1Char('-')) : text;
}

void drawLegend(QPainter &painter, const QRect &area, const PictureStyle &style) {
  QFont font = painter.font();
  font.setPixelSize(13);
  painter.setFont(font);
  if (!style.colorTitle.isEmpty() && style.words != WordKind::Rgb) drawRamp(painter, area, style);
  if (!style.caption.isEmpty()) {
    painter.setPen(QColor(0xd0, 0xd6, 0xdc));
    painter.drawText(area.adjusted(margin, margin - 4, -margin, -margin), Qt::AlignLeft | Qt::AlignTop, style.caption);
  }
}

}  // namespace tarvo::skarnvisor::app
