#pragma once

#include <QColor>
#include <QString>
#include <QStringList>
#include <optional>

namespace tarvo::skarnvisor::app {

/// A colour ramp over 0 to 1, linear between evenly spaced anchors.
class ColorRamp {
 public:
  /// The ramp of that name (see `names()`), nothing for another name.
  static std::optional<ColorRamp> find(const QString &name);
  /// Blue over white to red: for signed values such as a velocity, the middle being standstill.
  static ColorRamp diverging();
  /// The first is the default.
  static QStringList names();

  ColorRamp();
  /// Colour at `share`, which is clamped to 0 to 1; NaN gives the low end.
  QRgb at(double share) const;
  QString name() const { return m_name; }

 private:
  ColorRamp(QString name, const QRgb *anchors, int count)
      : m_name(std::move(name)), m_anchors(anchors), m_count(count) {}

  QString m_name;
  const QRgb *m_anchors;
  int m_count;
};

}  // namespace tarvo::skarnvisor::app
