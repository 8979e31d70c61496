#include "app/render/color_ramp.h"

#include <algorithm>
#include <array>
#include <cmath>

namespace tarvo::skarnvisor::app {
namespace {

// Dark blue over cyan, green and yellow to dark red; even steps of lightness on both sides of green.
constexpr std::array<QRgb, 9> turboAnchors{0xff30123b, 0xff4662d7, 0xff36aaf9, 0xff1ae4b6, 0xff72fe5e,
                                           0xffc8ef34, 0xfffaba39, 0xfff66b19, 0xffb01500};
// Rising lightness from violet to yellow, readable with every colour vision.
constexpr std::array<QRgb, 9> viridisAnchors{0xff440154, 0xff482878, 0xff3e4989, 0xff31688e, 0xff26828e,
                                             0xff1f9e89, 0xff35b779, 0xff6ece58, 0xfffde725};
// Starts above black, so that the darkest point still stands out from the background.
constexpr std::array<QRgb, 2> greyAnchors{0xff505050, 0xffffffff};
constexpr std::array<QRgb, 5> divergingAnchors{0xff2a5bff, 0xff86b3ff, 0xfff2f2f2, 0xffff9d7a, 0xffff3020};

struct NamedRamp {
  const char *name;
  const QRgb *anchors;
  int count;
};

constexpr std::array<NamedRamp, 3> ramps{{
    {"turbo", turboAnchors.data(), static_cast<int>(turboAnchors.size())},
    {"viridis", viridisAnchors.data(), static_cast<int>(viridisAnchors.size())},
    {"grey", greyAnchors.data(), static_cast<int>(greyAnchors.size())},
}};

int blend(int from, int to, double share) { return static_cast<int>(std::lround(from + (to - from) * share)); }

}  // namespace

ColorRamp::ColorRamp() : ColorRamp(QString::fromLatin1(ramps[0].name), ramps[0].anchors, ramps[0].count) {}

std::optional<ColorRamp> ColorRamp::find(const QString &name) {
  for (const NamedRamp &ramp : ramps) {
    if (name == QLatin1String(ramp.name)) return ColorRamp(name, ramp.anchors, ramp.count);
  }
  return std::nullopt;
}

ColorRamp ColorRamp::diverging() {
  return {QStringLiteral("diverging"), divergingAnchors.data(), static_cast<int>(divergingAnchors.size())};
}

QStringList ColorRamp::names() {
  QStringList names;
  for (const NamedRamp &ramp : ramps) names << QString::fromLatin1(ramp.name);
  return names;
}

QRgb ColorRamp::at(double share) const {
  const double position = (share > 0 ? std::min(share, 1.0) : 0.0) * (m_count - 1);
  const int index = std::min(static_cast<int>(position), m_count - 2);
  const QRgb from = m_anchors[index];
  const QRgb to = m_anchors[index + 1];
  const double inside = position - index;
  return qRgb(blend(qRed(from), qRed(to), inside), blend(qGreen(from), qGreen(to), inside),
              blend(qBlue(from), qBlue(to), inside));
}

}  // namespace tarvo::skarnvisor::app
