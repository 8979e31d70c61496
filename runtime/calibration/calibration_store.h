#pragma once

#include <array>
#include <atomic>
#include <cstdint>
#include <memory>
#include <mutex>
#include <span>
#include <string>
#include <vector>

#include "contracts/runtime/correction_views.h"
#include "runtime/calibration/calibration_tables.h"
#include "runtime/wire/blob_bodies.h"

namespace tarvo::lidar {

using wire::CalibrationKind;

/// Everything that a decode needs of the calibration, immutable. A null pointer: that kind is not loaded.
struct CalibrationSnapshot {
  std::uint64_t generation = 0;  ///< rises with every change
  std::shared_ptr<const CorrectionTable> corrections;
  std::shared_ptr<const FiretimeTable> firetimes;
  std::shared_ptr<const DcfTable> dcf;
  std::shared_ptr<const NonlinearTable> nonlinear;
  std::shared_ptr<const ChannelConfigTable> channelConfig;
};

/// Where a channel's entry lies in the view arrays. With `columns` 0 channel c is entry c - 1; else the channels fill a
/// grid row by row, and a row starts `stride` entries after the one before. With `directions` the azimuth array holds
/// a unit vector (x, y, z) for each entry in place of an azimuth.
struct CorrectionViewLayout {
  int columns = 0;
  int stride = 0;
  bool directions = false;
};

/// The calibration of one runtime. Any thread; a decode takes one snapshot() and uses it to its end.
///
/// A load checks the whole input and then takes its place at once; a failure is logged at level 8 with file, line, what
/// was expected and what came, and leaves in force what was loaded before.
class CalibrationStore {
 public:
  CalibrationStore();
  ~CalibrationStore();
  CalibrationStore(const CalibrationStore &) = delete;
  CalibrationStore &operator=(const CalibrationStore &) = delete;

  /// How many channels the lidar has: from now on a table by channel with any other number is refused. 0: not known
  /// yet.
  void setChannels(int channels) { channels_ = channels; }

  /// 0: in force; -1: the file cannot be read; -2: it does not hold such a table. `path` in the local 8-bit code page.
  int loadFile(CalibrationKind kind, const std::string &path);
  /// The same for bytes that a capture carried; `name` stands for the file in messages.
  int loadBytes(CalibrationKind kind, std::span<const std::uint8_t> bytes, const std::string &name);
  /// Writes the whole table in force to a temporary file beside `path` and renames it. 0: written; -1: nothing of this
  /// kind is loaded; -2: not written. Failures are logged at level 8 and leave the old file whole.
  int exportFile(CalibrationKind kind, const std::string &path) const;

  [[nodiscard]] bool isLoaded(CalibrationKind kind) const;
  /// Overrides what isLoaded(Corrections) answers until the next load of corrections.
  void setCorrectionLoaded(bool loaded);
  [[nodiscard]] std::shared_ptr<const CalibrationSnapshot> snapshot() const;

  /// View arrays of maxChannels entries, at the same place for the life of the store. Angles in degrees.
  [[nodiscard]] float *azimuths() { return azimuths_.get(); }
  [[nodiscard]] float *elevations() { return elevations_.get(); }
  [[nodiscard]] bool *displayed() { return displayed_.get(); }
  /// Null while the corrections have one azimuth a channel.
  [[nodiscard]] float *azimuthsOdd();
  void setViewLayout(CorrectionViewLayout layout);
  /// Display flag of entry `index` of the view, from 0; true outside the array.
  [[nodiscard]] bool isDisplayed(int index) const;

  [[nodiscard]] std::vector<double> frameSpan() const;
  void setFrameSpan(const std::vector<double> &span);
  /// Channels of section 0 to 3 and, if there are any, their arrays inside the view.
  int section(int index, SvSdkCorrectionSectionView *view);
  [[nodiscard]] SvSdkCorrectionSnapshot correctionSnapshot() const;

 private:
  struct FreeArray {
    void operator()(void *block) const noexcept;
  };
  void fillViewLocked();
  [[nodiscard]] int viewIndexLocked(int channelIndex) const;

  std::atomic<int> channels_{0};
  mutable std::mutex mutex_;  // guards every member below but the display flags
  std::shared_ptr<const CalibrationSnapshot> current_;
  bool correctionLoaded_ = false;
  CorrectionViewLayout layout_;
  int viewEnd_ = 0;  // entries of the view that the last table reached
  std::vector<double> frameSpan_;
  std::unique_ptr<float[], FreeArray> azimuths_;  // three floats an entry are reserved, for directions
  std::unique_ptr<float[], FreeArray> elevations_;
  std::unique_ptr<float[], FreeArray> azimuthsOdd_;
  std::unique_ptr<bool[], FreeArray> displayed_;  // single bytes, written by the GUI thread while a decode reads them
};

}  // namespace tarvo::lidar
