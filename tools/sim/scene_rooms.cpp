#include <cmath>
#include <numbers>

#include "tools/sim/props.h"

namespace tarvo::lidar::sim {
namespace {

/// A warehouse: 44 x 64 m, 9 m high, racks on both sides of an aisle, a truck that drives up and down and a worker.
class Hall final : public Scene {
 public:
  explicit Hall(std::uint64_t seed) : seed_(seed) {
    const Surface panel{Texture::Plain, 62, {190, 192, 196}, 0};
    const Surface roof{Texture::Plain, 40, {120, 122, 126}, 0};
    const double x = 22, front = 44, back = -20, top = 9;
    standing_.push_back(box({-x - 0.3, back, 0}, {-x, front, top}, panel));
    standing_.push_back(box({x, back, 0}, {x + 0.3, front, top}, panel));
    standing_.push_back(box({-x, front, 0}, {x, front + 0.3, top}, panel));
    standing_.push_back(box({-x, back - 0.3, 0}, {x, back, top}, panel));
    standing_.push_back(box({-x, back, top}, {x, front, top + 0.3}, roof));
    for (double y = back + 8; y < front; y += 8) {
      standing_.push_back(box({-x, y - 0.15, top - 0.8}, {x, y + 0.15, top}, {Texture::Plain, 55, {150, 60, 50}, 0}));
      for (const double side : {-5.0, 5.0})
        standing_.push_back(box({side - 0.2, y - 0.2, 0}, {side + 0.2, y + 0.2, top}, panel));
    }
    addRacks();
  }

  Surface ground() const override { return {Texture::Floor, 34, {130, 132, 134}, 0}; }

  void place(double seconds, std::vector<Primitive> &out) const override {
    out.insert(out.end(), standing_.begin(), standing_.end());
    constexpr double stretch = 24, speed = 2.2;
    const double way = std::fmod(seconds * speed, 2 * stretch);
    const bool outward = way < stretch;
    addVehicle({1.4,
                10 + (outward ? way : 2 * stretch - way),
                outward ? Heading::North : Heading::South,
                speed,
                true,
                {Texture::CarBody, 90, {230, 160, 30}, 0}},
               out);
    addWalker({-2.0,
               24 - std::fmod(seconds * 1.3, 18),
               Heading::South,
               1.3,
               seconds * 1.9 * std::numbers::pi,
               0,
               {240, 120, 30}},
              out);
  }

 private:
  void addRacks() {
    const Surface beam{Texture::Plain, 70, {40, 70, 150}, 0};
    Draw draw(seed_, 20);
    for (const double side : {-1.0, 1.0}) {
      for (double row = 9; row < 20; row += 5) {
        const double low = side > 0 ? row : -row - 1.2;
        for (double level = 0.1; level < 6; level += 1.9) {
          standing_.push_back(box({low, -14, level}, {low + 1.2, 38, level + 0.12}, beam));
          for (double y = -13.5; y < 36; y += 1.6) {
            if (draw.uniform() < 0.3) continue;
            const Surface crate{Texture::Plain, static_cast<std::uint8_t>(draw.between(40, 110)), {176, 136, 92}, 0};
            standing_.push_back(box({low + 0.1, y, level + 0.12},
                                    {low + 1.1, y + draw.between(0.9, 1.4), level + draw.between(0.7, 1.6)}, crate));
          }
        }
      }
    }
  }

  std::uint64_t seed_;
  std::vector<Primitive> standing_;
};

/// A chequered wall 20 m ahead of the lidar, square to the y axis, on bare ground: for checks of distance and angle.
class Wall final : public Scene {
 public:
  Surface ground() const override { return {Texture::Plain, 30, {110, 110, 108}, 0}; }

  void place(double, std::vector<Primitive> &out) const override {
    out.push_back(box({-30, wallDistance, 0}, {30, wallDistance + 0.5, 9}, {Texture::Target, 100, {235, 235, 235}, 0}));
  }
};

}  // namespace

std::unique_ptr<Scene> makeHall(std::uint64_t seed) { return std::make_unique<Hall>(seed); }
std::unique_ptr<Scene> makeWall(std::uint64_t) { return std::make_unique<Wall>(); }

std::span<const SceneInfo> scenes() noexcept {
  static constexpr SceneInfo all[] = {
      {"street", "a street with houses, trees, traffic and people; the lidar stands in its lane or drives", makeStreet},
      {"hall", "a warehouse with racks, a truck and a worker", makeHall},
      {"wall", "a chequered wall 20 m ahead on bare ground", makeWall},
  };
  return all;
}

}  // namespace tarvo::lidar::sim
