#include "tools/sim/frame_content.h"

#include <algorithm>
#include <cmath>
#include <numbers>
#include <thread>

namespace tarvo::lidar::sim {
namespace {

constexpr double radians = std::numbers::pi / 180.0;

Vec3 directionOf(double azimuthDeg, double elevationDeg) noexcept {
  const double flat = std::cos(elevationDeg * radians);
  return {flat * std::sin(azimuthDeg * radians), flat * std::cos(azimuthDeg * radians),
          std::sin(elevationDeg * radians)};
}

/// How far the lidar sees a surface of this intensity.
double reachOf(double intensity) noexcept { return 28.0 * std::sqrt(std::max(intensity, 0.5)); }

class FrameCaster {
 public:
  FrameCaster(const Scene &scene, const Sensor &sensor, const Options &options, std::uint32_t frame)
      : sensor_(sensor),
        options_(options),
        frame_(frame),
        caster_(scene, frame / options.rateHz, options.speed * frame / options.rateHz, options.speed) {}

  void castColumn(FrameContent &content, unsigned column) const {
    const double azimuth = sensor_.columnAzimuthDeg(column, content.columns);
    Sample *out = content.samples.data() + std::size_t{column} * content.echoes * content.channels;
    for (unsigned channel = 0; channel < content.channels; ++channel) {
      Draw draw(options_.seed, frame_, column, channel);
      const Vec3 direction = directionOf(azimuth + sensor_.azimuthOffsetDeg[channel], sensor_.elevationDeg[channel]);
      const Echoes echoes = caster_.cast(direction, draw);
      const Sample first = measured(echoes[0], draw);
      const Sample second = measured(echoes[1], draw);
      const auto ordered = inOrder(first, second);
      for (unsigned echo = 0; echo < content.echoes; ++echo) {
        Sample &sample = out[std::size_t{echo} * content.channels + channel] = ordered[echo];
        if (sensor_.traits.confidenceIsEcho && sample.distance > 0)
          sample.confidence = static_cast<std::uint8_t>(echo + 1);
      }
    }
  }

  /// A camera beside the lidar, 90 degrees wide, that looks along y.
  void castPixelRow(FrameContent &content, unsigned row) const {
    constexpr double span = 0.5625;
    for (unsigned column = 0; column < overlayColumns; ++column) {
      const double right = 2.0 * (column + 0.5) / overlayColumns - 1.0;
      const double up = span * (1.0 - 2.0 * (row + 0.5) / overlayRows) - 0.1;
      const Vec3 look{right, 1.0, up};
      const Vec3 direction = look * (1.0 / std::sqrt(dot(look, look)));
      Draw draw(options_.seed, frame_, 777, row * overlayColumns + column);
      const Echo seen = caster_.cast(direction, draw)[0];
      wire::OverlayPixel &pixel = content.overlay[std::size_t{row} * overlayColumns + column];
      if (seen.distance <= 0) continue;
      const Vec3 point = direction * seen.distance;
      const auto raw = [&](double share) {
        return static_cast<std::uint16_t>(std::clamp(share, 0.0, 1.0) * sensor_.traits.colourScale);
      };
      pixel = {static_cast<float>(point.x),
               static_cast<float>(point.y),
               static_cast<float>(point.z),
               raw(seen.paint.red),
               raw(seen.paint.green),
               raw(seen.paint.blue),
               1};
    }
  }

 private:
  [[nodiscard]] Sample measured(const Echo &echo, Draw &draw) const {
    Sample out;
    if (echo.distance <= 0) return out;
    const double reach = reachOf(echo.paint.intensity);
    if (echo.distance > reach * draw.between(0.9, 1.1)) return out;
    const double weakness = echo.distance / reach;  // 0 strong, 1 hardly seen
    const double blur = options_.noiseMetres * (0.7 + 0.9 * weakness);
    out.distance = static_cast<float>(std::max(echo.distance + blur * draw.gaussian(), 0.05));
    const double shimmer = options_.noiseMetres > 0 ? 1.5 * draw.gaussian() : 0.0;
    out.intensity = static_cast<std::uint8_t>(std::clamp(std::lround(echo.paint.intensity + shimmer), 1l, 255l));
    out.velocity = static_cast<float>(echo.radialVelocity + (options_.noiseMetres > 0 ? 0.03 * draw.gaussian() : 0.0));
    out.foliage = echo.foliage;
    const unsigned quality = static_cast<unsigned>(std::clamp(15.0 * (1.2 - weakness), 0.0, 15.0));
    const bool doubtful = weakness > 0.97;
    out.confidence = static_cast<std::uint8_t>((doubtful ? 1u : 0u) | (echo.distance > 100 ? 2u : 0u) |
                                               (echo.foliage ? 4u : 0u) | quality << 4);
    const double light = options_.noiseMetres > 0 ? draw.between(0.96, 1.04) : 1.0;
    out.colour = {static_cast<float>(echo.paint.red * light), static_cast<float>(echo.paint.green * light),
                  static_cast<float>(echo.paint.blue * light)};
    return out;
  }

  /// The returns in the order that the return mode names; "second" kinds are empty when only one echo came back.
  [[nodiscard]] std::array<Sample, 2> inOrder(const Sample &first, const Sample &behind) const {
    const bool two = behind.distance > 0 && first.distance > 0;
    const Sample &nearest = first.distance > 0 ? first : behind;
    const Sample none;
    if (!two)
      return sensor_.returnMode == 50 || sensor_.returnMode == 52 ? std::array{none, none} : std::array{nearest, none};
    const bool firstStronger = first.intensity >= behind.intensity;
    const Sample &strong = firstStronger ? first : behind;
    const Sample &weak = firstStronger ? behind : first;
    switch (sensor_.returnMode) {
      case 50:
        return {weak, strong};
      case 55:
      case 62:
      case 63:
        return {strong, weak};
      case 52:
      case 56:
      case 59:
        return {behind, first};
      case 57:  // where the last is the strongest, the other one is reported beside it
        return {behind, first};
      default:
        return {first, behind};
    }
  }

  const Sensor &sensor_;
  const Options &options_;
  std::uint32_t frame_;
  RayCaster caster_;
};

/// Runs `work(i)` for i below `count`, interleaved over the threads.
template <typename Work>
void spread(unsigned count, unsigned threads, const Work &work) {
  std::vector<std::jthread> helpers;
  for (unsigned t = 1; t < threads; ++t)
    helpers.emplace_back([&work, count, threads, t] {
      for (unsigned i = t; i < count; i += threads) work(i);
    });
  for (unsigned i = 0; i < count; i += threads) work(i);
}

}  // namespace

FrameContent lookAround(const Scene &scene, const Sensor &sensor, const Options &options, std::uint32_t frame,
                        unsigned threads) {
  FrameContent content{options.channels, options.columns, options.echoes, {}, {}};
  content.samples.resize(std::size_t{options.columns} * options.echoes * options.channels);
  const FrameCaster caster(scene, sensor, options, frame);
  spread(options.columns, threads, [&](unsigned column) { caster.castColumn(content, column); });
  if (options.overlay) {
    content.overlay.resize(std::size_t{overlayColumns} * overlayRows);
    spread(overlayRows, threads, [&](unsigned row) { caster.castPixelRow(content, row); });
  }
  return content;
}

}  // namespace tarvo::lidar::sim
