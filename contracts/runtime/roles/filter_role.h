#pragma once

#include "contracts/runtime/smoothing_config.h"

namespace tarvo::lidar {

// Parameters of the decoder's own filters; they take effect at the next decode. A runtime without a filter ignores its
// parameters.
class FilterRole {
 public:
  virtual ~FilterRole() = default;
  virtual void SetPopoutFilterFlag(bool /*on*/) {}
  virtual void SetPopoutFilterHighlight(bool /*on*/) {}
  virtual void SetPopoutFilterConfig(int /*columns*/, float /*metres*/, float /*shareOfRange*/, float /*farthest*/) {}
  virtual void SetOfflineFilterFlag(bool /*on*/) {}
  virtual void SetVd8OfflineFilterFlag(bool /*on*/) {}
  virtual void SetPointCloudSmoothingFlag(bool /*on*/) {}
  [[nodiscard]] virtual bool GetPointCloudSmoothingFlag() const { return false; }
  virtual void SetPointCloudSmoothingConfig(const SmoothingConfig & /*config*/, float /*last*/) {}
  virtual void SetYfnNoiseFilterFlag(bool /*on*/) {}
  virtual void SetYfnNoiseFilterMode(int /*mode*/) {}
  virtual void SetYfnNoiseFilterParams(float /*radius*/, float /*shareOfRange*/, int /*leastNeighbours*/) {}
  virtual void SetNbqSmoothingFlag(bool /*on*/) {}
  virtual void SetNbqSmoothingKernel(int /*row*/, int /*column*/, float /*value*/) {}
  virtual void SetNbqSmoothingDisThres(float /*metres*/) {}
  virtual void SetNbqSmoothingAziRange(float /*minDeg*/, float /*maxDeg*/) {}
};

}  // namespace tarvo::lidar
