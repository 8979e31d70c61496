#include "app/window/color_scale.h"

#include <algorithm>
#include <cmath>

#include "app/render/attribute_scale.h"
#include "app/render/legend.h"

namespace tarvo::skarnvisor::app {
namespace {

constexpr int legendSteps = 4;
constexpr int legendColorCount = 32;

}  // namespace

ColorScale::ColorScale(ColorHalf half, BufferCalls &calls, QObject *parent)
    : QObject(parent), m_half(half), m_calls(calls) {}

void ColorScale::takeUp(const RenderView &view) {
  m_view = view;
  ++m_requests;
  m_requested.clear();
  m_measuredTitle.clear();
  refresh();
}

void ColorScale::refresh() {
  m_colors.words = m_view.wordKind(m_half);
  const auto locked = m_locked.constFind(title());
  if (locked != m_locked.constEnd()) m_colors.range = *locked;
  Q_EMIT changed();
}

void ColorScale::measure(const VertexCloud &cloud, bool shown) {
  if (!m_requested.isEmpty()) return;  // these are still the last mode's values
  const WordKind words = m_view.wordKind(m_half);
  const bool otherWords = words != m_colors.words;
  if (!otherWords && (!shown || m_measuredTitle == title())) return;
  m_colors.words = words;
  if (shown) m_measuredTitle = title();
  if (!isLocked() && isRanged()) m_colors.range = stretchedRange(cloud, words);
  Q_EMIT changed();
}

int ColorScale::mode() const { return static_cast<int>(m_view.colorTitles().indexOf(title())); }

void ColorScale::setMode(int mode) {
  if (mode < 0 || mode == this->mode()) return;
  m_measuredTitle.clear();
  m_requested = m_view.colorTitles().value(mode);
  m_calls.run([this, view = m_view, title = m_requested, request = ++m_requests]() mutable {
    if (request == m_requests) view.setColor(m_half, title);
    QMetaObject::invokeMethod(
        this,
        [this, request] {
          if (request != m_requests) return;
          m_requested.clear();
          refresh();
          Q_EMIT modeTaken();
        },
        Qt::QueuedConnection);
  });
  refresh();
}

void ColorScale::setRamp(const QString &name) {
  const auto ramp = ColorRamp::find(name);
  if (!ramp || name == m_colors.ramp.name()) return;
  m_colors.ramp = *ramp;
  Q_EMIT changed();
}

void ColorScale::setLocked(bool locked) {
  if (locked)
    m_locked.insert(title(), m_colors.range);
  else
    m_locked.remove(title());
  Q_EMIT changed();
}

double ColorScale::low() const { return attributeScale(title()).own(static_cast<double>(m_colors.range.low)); }
double ColorScale::high() const { return attributeScale(title()).own(static_cast<double>(m_colors.range.high)); }
void ColorScale::setLow(double value) { setRange(value, high()); }
void ColorScale::setHigh(double value) { setRange(low(), value); }

void ColorScale::setRange(double low, double high) {
  const AttributeScale scale = attributeScale(title());
  if (!(low < high)) return Q_EMIT changed();  // the fields go back to what holds
  m_colors.range = {static_cast<float>((low - scale.offset) / scale.factor),
                    static_cast<float>((high - scale.offset) / scale.factor)};
  setLocked(true);
}

void ColorScale::fit() {
  m_locked.remove(title());
  m_measuredTitle.clear();
  Q_EMIT fitRequested();
}

QString ColorScale::unit() const {
  return m_colors.words == WordKind::Velocity ? QStringLiteral("m/s") : attributeScale(title()).unit;
}

QString ColorScale::legendTitle() const {
  return unit().isEmpty() ? title() : QStringLiteral("%1, %2").arg(title(), unit());
}

QStringList ColorScale::legendTicks() const {
  const bool velocity = m_colors.words == WordKind::Velocity;
  const double from = velocity ? -static_cast<double>(velocityLimit) : low();
  const double to = velocity ? static_cast<double>(velocityLimit) : high();
  QStringList ticks;
  for (int i = 0; i <= legendSteps; ++i) {
    ticks << legendNumber(from + (to - from) * i / legendSteps, std::abs(to - from));
  }
  return ticks;
}

QVariantList ColorScale::legendColors() const {
  const ColorRamp ramp = m_colors.words == WordKind::Velocity ? ColorRamp::diverging() : m_colors.ramp;
  QVariantList colors;
  for (int i = 0; i < legendColorCount; ++i) colors << QColor(ramp.at(static_cast<double>(i) / (legendColorCount - 1)));
  return colors;
}

}  // namespace tarvo::skarnvisor::app
