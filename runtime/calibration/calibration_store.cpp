#include "runtime/calibration/calibration_store.h"

#include <QtCore/QFile>
#include <QtCore/QSaveFile>
#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <new>
#include <numbers>
#include <stdexcept>
#include <string_view>

#include "contracts/host/log.h"

namespace tarvo::lidar {

SKARN_LOG_SOURCE("runtime/calibration_store");

namespace {

using skarnvisor::LogLevel;

constexpr const char *kindNames[] = {"corrections", "firetimes", "DCF", "nonlinear mapping", "channel configuration"};

const char *nameOf(CalibrationKind kind) { return kindNames[std::size_t(kind)]; }

// Zeroed pages that cost nothing until a table reaches them.
template <class T>
T *zeroedArray(std::size_t count) {
  void *block = std::calloc(count, sizeof(T));
  if (!block) throw std::bad_alloc();
  return static_cast<T *>(block);
}

void parseInto(CalibrationSnapshot &snapshot, CalibrationKind kind, std::string_view text, int channels) {
  switch (kind) {
    case CalibrationKind::Corrections:
      snapshot.corrections = std::make_shared<const CorrectionTable>(parseCorrections(text, channels));
      return;
    case CalibrationKind::Firetimes:
      snapshot.firetimes = std::make_shared<const FiretimeTable>(parseFiretimes(text, channels));
      return;
    case CalibrationKind::Dcf:
      snapshot.dcf = std::make_shared<const DcfTable>(parseDcf(text, channels));
      return;
    case CalibrationKind::NonlinearMapping:
      snapshot.nonlinear = std::make_shared<const NonlinearTable>(parseNonlinear(text));
      return;
    case CalibrationKind::ChannelConfig:
      snapshot.channelConfig = std::make_shared<const ChannelConfigTable>(parseChannelConfig(text, channels));
      return;
  }
  throw std::invalid_argument("expected a kind of calibration");
}

// Empty: not loaded.
std::string textOf(const CalibrationSnapshot &snapshot, CalibrationKind kind) {
  const auto text = [](const auto &table) { return table ? formatTable(*table) : std::string(); };
  switch (kind) {
    case CalibrationKind::Corrections:
      return text(snapshot.corrections);
    case CalibrationKind::Firetimes:
      return text(snapshot.firetimes);
    case CalibrationKind::Dcf:
      return text(snapshot.dcf);
    case CalibrationKind::NonlinearMapping:
      return text(snapshot.nonlinear);
    case CalibrationKind::ChannelConfig:
      return text(snapshot.channelConfig);
  }
  return {};
}

}  // namespace

void CalibrationStore::FreeArray::operator()(void *block) const noexcept { std::free(block); }

CalibrationStore::CalibrationStore()
    : current_(std::make_shared<const CalibrationSnapshot>()),
      azimuths_(zeroedArray<float>(std::size_t(maxChannels) * 3)),
      elevations_(zeroedArray<float>(maxChannels)),
      azimuthsOdd_(zeroedArray<float>(maxChannels)),
      displayed_(zeroedArray<bool>(maxChannels)) {
  std::fill_n(displayed_.get(), maxChannels, true);
}

CalibrationStore::~CalibrationStore() = default;

int CalibrationStore::loadFile(CalibrationKind kind, const std::string &path) {
  QFile file(QFile::decodeName(path.c_str()));
  if (!file.open(QIODevice::ReadOnly)) {
    SKARN_LOG(LogLevel::Error, "Unable to read the %s file %s: %s", nameOf(kind), path.c_str(),
              qPrintable(file.errorString()));
    return -1;
  }
  // One byte more than the limit tells a file that is too long from one that just fits, devices and pipes included.
  const QByteArray bytes = file.read(qint64(wire::calibrationSizeLimit) + 1);
  if (file.error() != QFileDevice::NoError || bytes.size() > qint64(wire::calibrationSizeLimit)) {
    SKARN_LOG(LogLevel::Error, "Unable to read the %s file %s: expected at most %u bytes, got %s", nameOf(kind),
              path.c_str(), wire::calibrationSizeLimit,
              file.error() == QFileDevice::NoError ? "more" : qPrintable(file.errorString()));
    return -1;
  }
  return loadBytes(kind, {reinterpret_cast<const std::uint8_t *>(bytes.constData()), std::size_t(bytes.size())}, path);
}

int CalibrationStore::loadBytes(CalibrationKind kind, std::span<const std::uint8_t> bytes, const std::string &name) {
  CalibrationSnapshot parsed;
  try {
    parseInto(parsed, kind, {reinterpret_cast<const char *>(bytes.data()), bytes.size()}, channels_);
  } catch (const std::exception &error) {
    SKARN_LOG(LogLevel::Error, "No %s in %s: %s", nameOf(kind), name.c_str(), error.what());
    return -2;
  }
  const std::lock_guard lock(mutex_);
  auto next = std::make_shared<CalibrationSnapshot>(*current_);
  ++next->generation;
  if (parsed.corrections) next->corrections = parsed.corrections;
  if (parsed.firetimes) next->firetimes = parsed.firetimes;
  if (parsed.dcf) next->dcf = parsed.dcf;
  if (parsed.nonlinear) next->nonlinear = parsed.nonlinear;
  if (parsed.channelConfig) next->channelConfig = parsed.channelConfig;
  current_ = std::move(next);
  if (kind == CalibrationKind::Corrections) {
    correctionLoaded_ = true;
    if (!parsed.corrections->frameSpan.empty()) frameSpan_ = parsed.corrections->frameSpan;
    fillViewLocked();
  }
  return 0;
}

int CalibrationStore::exportFile(CalibrationKind kind, const std::string &path) const {
  auto source = snapshot();
  if (kind == CalibrationKind::Corrections && source->corrections) {
    // The span in force may have been set since the table was loaded.
    auto table = std::make_shared<CorrectionTable>(*source->corrections);
    table->frameSpan = frameSpan();
    auto changed = std::make_shared<CalibrationSnapshot>(*source);
    changed->corrections = std::move(table);
    source = std::move(changed);
  }
  const std::string text = textOf(*source, kind);
  if (text.empty()) {
    SKARN_LOG(LogLevel::Error, "No %s are loaded to write to %s", nameOf(kind), path.c_str());
    return -1;
  }
  QSaveFile file(QFile::decodeName(path.c_str()));
  // A small file is still in the buffer: commit() alone would not tell that it found no room.
  if (!file.open(QIODevice::WriteOnly) || file.write(text.data(), qint64(text.size())) != qint64(text.size()) ||
      !file.flush() || !file.commit()) {
    SKARN_LOG(LogLevel::Error, "Unable to write the %s file %s: %s", nameOf(kind), path.c_str(),
              qPrintable(file.errorString()));
    return -2;
  }
  return 0;
}

bool CalibrationStore::isLoaded(CalibrationKind kind) const {
  const std::lock_guard lock(mutex_);
  switch (kind) {
    case CalibrationKind::Corrections:
      return correctionLoaded_;
    case CalibrationKind::Firetimes:
      return current_->firetimes != nullptr;
    case CalibrationKind::Dcf:
      return current_->dcf != nullptr;
    case CalibrationKind::NonlinearMapping:
      return current_->nonlinear != nullptr;
    case CalibrationKind::ChannelConfig:
      return current_->channelConfig != nullptr;
  }
  return false;
}

void CalibrationStore::setCorrectionLoaded(bool loaded) {
  const std::lock_guard lock(mutex_);
  correctionLoaded_ = loaded;
}

std::shared_ptr<const CalibrationSnapshot> CalibrationStore::snapshot() const {
  const std::lock_guard lock(mutex_);
  return current_;
}

float *CalibrationStore::azimuthsOdd() {
  const std::lock_guard lock(mutex_);
  return current_->corrections && !current_->corrections->azimuthsOdd.empty() ? azimuthsOdd_.get() : nullptr;
}

void CalibrationStore::setViewLayout(CorrectionViewLayout layout) {
  const std::lock_guard lock(mutex_);
  layout_ = layout;
  fillViewLocked();
}

int CalibrationStore::viewIndexLocked(int channelIndex) const {
  if (layout_.columns <= 0) return channelIndex;
  return channelIndex / layout_.columns * layout_.stride + channelIndex % layout_.columns;
}

void CalibrationStore::fillViewLocked() {
  if (!current_->corrections) return;
  const CorrectionTable &table = *current_->corrections;
  int end = 0;
  for (std::size_t i = 0; i < table.elevations.size(); ++i) {
    const int at = viewIndexLocked(int(i));
    if (at < 0 || at >= maxChannels) break;
    end = at + 1;
    elevations_[std::size_t(at)] = table.elevations[i];
    if (!table.azimuthsOdd.empty()) azimuthsOdd_[std::size_t(at)] = table.azimuthsOdd[i];
    if (!layout_.directions) {
      azimuths_[std::size_t(at)] = table.azimuths[i];
      continue;
    }
    // Azimuth from the y axis towards x, elevation from the x-y plane, as the decoder places points.
    constexpr double radians = std::numbers::pi / 180.0;
    const double azimuth = table.azimuths[i] * radians;
    const double elevation = table.elevations[i] * radians;
    float *direction = &azimuths_[std::size_t(at) * 3];
    direction[0] = float(std::cos(elevation) * std::sin(azimuth));
    direction[1] = float(std::cos(elevation) * std::cos(azimuth));
    direction[2] = float(std::sin(elevation));
  }
  // What a longer table left behind.
  for (int at = end; at < viewEnd_; ++at) {
    elevations_[std::size_t(at)] = azimuthsOdd_[std::size_t(at)] = 0.0F;
    if (!layout_.directions) azimuths_[std::size_t(at)] = 0.0F;
  }
  viewEnd_ = end;
}

bool CalibrationStore::isDisplayed(int index) const {
  if (index < 0 || index >= maxChannels) return true;
  return std::atomic_ref<bool>(displayed_[std::size_t(index)]).load(std::memory_order_relaxed);
}

std::vector<double> CalibrationStore::frameSpan() const {
  const std::lock_guard lock(mutex_);
  return frameSpan_;
}

void CalibrationStore::setFrameSpan(const std::vector<double> &span) {
  const std::lock_guard lock(mutex_);
  frameSpan_ = span;
}

int CalibrationStore::section(int index, SvSdkCorrectionSectionView *view) {
  const std::lock_guard lock(mutex_);
  if (!view || index < 0 || index >= correctionSections || !current_->corrections || layout_.columns > 0) return 0;
  const auto [first, count] = current_->corrections->sections[std::size_t(index)];
  if (count > 0) *view = {azimuths_.get() + first, elevations_.get() + first, displayed_.get() + first};
  return count;
}

SvSdkCorrectionSnapshot CalibrationStore::correctionSnapshot() const {
  const std::lock_guard lock(mutex_);
  SvSdkCorrectionSnapshot out;
  out.loaded = correctionLoaded_;
  out.frameSpan = frameSpan_;
  if (!current_->corrections) return out;
  const CorrectionTable &table = *current_->corrections;
  out.generation = current_->generation;
  out.elevations = table.elevations;
  out.azimuths = table.azimuths;
  out.azimuthsOdd = table.azimuthsOdd;
  for (std::size_t i = 0; i < table.elevations.size(); ++i)
    out.displayed.push_back(isDisplayed(viewIndexLocked(int(i))));
  return out;
}

}  // namespace tarvo::lidar
