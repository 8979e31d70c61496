#include "runtime/decode/point_loan.h"

#include <utility>

namespace tarvo::lidar {

namespace {

constexpr std::size_t spareFactor = 4;  // an array so many times longer than needed is let go

}  // namespace

PointLoan::~PointLoan() {
  if (!taken_) return;
  points_.clear();
  const std::lock_guard lock(source_.frameLock);
  source_.points.swap(points_);
}

void PointLoan::take(std::size_t points) {
  {
    const std::lock_guard sourceLock(source_.frameLock);
    const std::lock_guard frameLock(frame_.mutex);
    points_.swap(source_.points);
    frame_.points = nullptr;
    frame_.pointCount = 0;
  }
  taken_ = true;
  // Freed before the other is had, so that both never count.
  if (points_.capacity() < points || points_.capacity() / spareFactor > points)
    std::vector<SDKPointInfo>().swap(points_);
  points_.resize(points);
}

void PointLoan::handOver(std::size_t points) {
  points_.resize(points);
  points_.swap(source_.points);
  frame_.points = source_.points.data();
  taken_ = false;
}

}  // namespace tarvo::lidar
