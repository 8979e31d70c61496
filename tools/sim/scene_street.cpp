#include <cmath>
#include <numbers>

#include "tools/sim/props.h"
#include "tools/sim/street_plan.h"

namespace tarvo::lidar::sim {
namespace {

using namespace street;

constexpr double firstY = -period / 2;
constexpr double lastY = period / 2;

bool onCrossing(double y, double margin) noexcept { return y > crossingBegin - margin && y < crossingEnd + margin; }

/// What moves: where it is at a time, going round over a stretch.
double along(double begin, double length, double seconds, double speed) noexcept {
  return begin + std::fmod(seconds * speed, length);
}

class Street final : public Scene {
 public:
  explicit Street(std::uint64_t seed) : seed_(seed) {
    addBuildings();
    addPavements();
    addPlants();
    addFurniture();
    addParkedCars();
  }

  Surface ground() const override { return {Texture::Road, 16, {62, 62, 66}, 0}; }
  double laneOffset() const override { return laneWidth / 2; }
  double period() const override { return street::period; }

  void place(double seconds, std::vector<Primitive> &out) const override {
    out.insert(out.end(), standing_.begin(), standing_.end());
    placeTraffic(seconds, out);
    placeWalkers(seconds, out);
  }

 private:
  void addBuildings() {
    constexpr Rgb colours[] = {{196, 176, 148}, {170, 96, 78}, {206, 202, 194}, {150, 150, 158}, {214, 190, 120}};
    for (const double side : {-1.0, 1.0}) {
      Draw draw(seed_, 1, side > 0);
      std::uint16_t number = 0;
      for (double y = firstY; y < lastY - 6;) {
        if (onCrossing(y, 0.1)) y = crossingEnd + 0.5;
        double end = std::min(y + draw.between(13, 27), lastY);
        if (y < crossingBegin && end > crossingBegin - 4) end = crossingBegin - 0.5;
        const double front = buildingLine + draw.between(0.0, 0.9);
        const double back = front + draw.between(10, 16);
        const double height = draw.between(7, 21);
        const Rgb colour = colours[static_cast<std::size_t>(draw.uniform() * std::size(colours))];
        const Surface facade{Texture::Facade, static_cast<std::uint8_t>(draw.between(45, 95)), colour, number++};
        standing_.push_back(box({side > 0 ? front : -back, y, 0}, {side > 0 ? back : -front, end, height}, facade));
        y = end + (draw.uniform() < 0.4 ? draw.between(2, 5) : 0.0);
      }
    }
    for (const double y : {firstY - 4.0, lastY + 2.0})
      if (!onCrossing(y, 0))
        standing_.push_back(box({-60, y, 0}, {-pavementEdge - 12, y + 2, 9}, {Texture::Facade, 60, colours[2], 3}));
  }

  void addPavements() {
    const Surface slabs{Texture::Pavement, 42, {150, 148, 142}, 0};
    for (const double side : {-1.0, 1.0}) {
      const double inner = side > 0 ? roadHalfWidth : -pavementEdge - 0.5;
      const double outer = side > 0 ? pavementEdge + 0.5 : -roadHalfWidth;
      standing_.push_back(box({inner, firstY, 0}, {outer, crossingBegin, kerbHeight}, slabs));
      standing_.push_back(box({inner, crossingEnd, 0}, {outer, lastY, kerbHeight}, slabs));
    }
  }

  void addPlants() {
    for (const double side : {-1.0, 1.0}) {
      Draw draw(seed_, 2, side > 0);
      for (double y = firstY + 4; y < lastY - 3; y += draw.between(11, 19)) {
        if (!onCrossing(y, 5))
          addTree(side * (roadHalfWidth + 1.0), y, kerbHeight, Draw(seed_, 3, side > 0, static_cast<std::int64_t>(y)),
                  standing_);
      }
      for (double y = firstY + 20; y < lastY - 10; y += 46) {
        Primitive hedge =
            ball({side * (pavementEdge - 0.2), y, 0.6}, {0.5, 2.4, 0.7}, {Texture::Foliage, 66, {50, 105, 48}, 0});
        hedge.shape = Shape::Crown;
        if (!onCrossing(y, 5)) standing_.push_back(hedge);
      }
    }
  }

  void addFurniture() {
    const Surface metal{Texture::Plain, 80, {110, 112, 118}, 0};
    const Surface bin{Texture::Plain, 35, {40, 80, 60}, 0};
    for (const double side : {-1.0, 1.0}) {
      const double x = side * (roadHalfWidth + 0.5);
      for (double y = firstY + 12; y < lastY; y += 28)
        if (!onCrossing(y, 3)) addStreetLamp(x, y, kerbHeight, -side * 1.7, standing_);
      for (const double y : {crossingBegin - 1.0, crossingEnd + 1.0}) {  // traffic lights
        standing_.push_back(pillar(x, y, 0.07, kerbHeight, 3.4, metal));
        standing_.push_back(
            box({x - 0.17, y - 0.17, 2.4}, {x + 0.17, y + 0.17, 3.4}, {Texture::Plain, 28, {30, 30, 30}, 0}));
        for (double bollard = 2; bollard < 8; bollard += 1.5)
          standing_.push_back(pillar(x, y + (y < crossingEnd ? -bollard : bollard), 0.07, kerbHeight, 1.0, metal));
      }
      standing_.push_back(pillar(side * 8.9, -3, 0.28, kerbHeight, 1.1, bin));
      standing_.push_back(pillar(side * 8.9, 27, 0.28, kerbHeight, 1.1, bin));
    }
    addSign(6.5, 14, kerbHeight, {200, 30, 30}, standing_);
    addSign(6.5, 61, kerbHeight, {30, 60, 190}, standing_);
    addSign(-6.5, 24, kerbHeight, {30, 60, 190}, standing_);
    addSign(-6.5, -18, kerbHeight, {200, 30, 30}, standing_);
    const Surface glass{Texture::Plain, 14, {120, 150, 160}, 0};
    standing_.push_back(box({8.6, 17, kerbHeight}, {8.65, 21.5, 2.4}, glass));  // shelter
    standing_.push_back(box({7.2, 17, 2.4}, {8.7, 21.5, 2.5}, metal));
    standing_.push_back(box({8.1, 17.5, 0.55}, {8.5, 21, 0.62}, bin));
  }

  void addParkedCars() {
    for (const double side : {-1.0, 1.0}) {
      Draw draw(seed_, 4, side > 0);
      for (double y = firstY + 5; y < lastY - 4; y += 6) {
        if (onCrossing(y, 9) || draw.uniform() < 0.38) continue;
        addVehicle({side * 4.85 + draw.between(-0.1, 0.1), y + draw.between(-0.3, 0.3),
                    side > 0 ? Heading::North : Heading::South, 0, draw.uniform() < 0.12, vehiclePaint(draw)},
                   standing_);
      }
    }
  }

  void placeTraffic(double seconds, std::vector<Primitive> &out) const {
    const double lane = laneWidth / 2;
    Draw draw(seed_, 5);
    const double phases[] = {12, 55, 78, 140};
    for (const double phase : phases)
      addVehicle({-lane, lastY - std::fmod(phase + seconds * 9.0, period()), Heading::South, 9.0, phase == 78,
                  vehiclePaint(draw)},
                 out);
    addVehicle({lane, along(11, 85, seconds + 0.6, 6.5), Heading::North, 6.5, false, vehiclePaint(draw)}, out);
    addVehicle({lane, -9.5, Heading::North, 0, false, vehiclePaint(draw)}, out);
    addVehicle(
        {along(-70, 140, seconds + 7.5, 7.0), crossingBegin + 2.4, Heading::East, 7.0, false, vehiclePaint(draw)}, out);
    addVehicle({-along(-70, 140, seconds + 5.0, 8.0), crossingEnd - 2.4, Heading::West, 8.0, true, vehiclePaint(draw)},
               out);
  }

  void placeWalkers(double seconds, std::vector<Primitive> &out) const {
    const double stride = seconds * 1.9 * std::numbers::pi;
    addWalker({7.9, along(4, 30, seconds, 1.4), Heading::North, 1.4, stride, kerbHeight, {170, 50, 50}}, out);
    addWalker({-8.0, 22 - std::fmod(seconds * 1.2, 40), Heading::South, 1.2, stride * 0.9, kerbHeight, {50, 90, 60}},
              out);
    addWalker({along(-6.5, 13, seconds, 1.3), crossingBegin - 3.2, Heading::East, 1.3, stride, 0, {60, 70, 150}}, out);
    addWalker({8.2, 19.2, Heading::West, 0, 0, kerbHeight, {180, 160, 90}}, out);
  }

  std::uint64_t seed_;
  std::vector<Primitive> standing_;
};

}  // namespace

std::unique_ptr<Scene> makeStreet(std::uint64_t seed) { return std::make_unique<Street>(seed); }

}  // namespace tarvo::lidar::sim
