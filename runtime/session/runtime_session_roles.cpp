#include <cmath>

#include "contracts/host/log.h"
#include "runtime/session/runtime_session.h"

SKARN_LOG_SOURCE("runtime/session");

namespace tarvo::lidar {

using skarnvisor::LogLevel;

namespace {

/// A moment in whole milliseconds stands for all of that millisecond: the timeline's text cuts what is finer off, and
/// the frame that it was read from begins a little later.
double endOfMillisecond(double seconds) {
  constexpr double perSecond = 1000.0;
  constexpr double finest = 0.001;  // of a millisecond, what doubles of our time tell apart
  const double milliseconds = std::round(seconds * perSecond);
  const bool whole = std::abs(seconds * perSecond - milliseconds) < finest;
  return whole ? (milliseconds + 1 - finest) / perSecond : seconds;
}

}  // namespace

/// Keeps why a cut or a recording failed, and logs it.
bool RuntimeSession::settle(bool done, const std::string &error) {
  if (!done) SKARN_LOG(LogLevel::Error, "%s", error.c_str());
  const std::lock_guard lock(errorMutex_);
  captureError_ = done ? std::string() : error;
  return done;
}

bool RuntimeSession::CutPcap(const std::string &path, double begin, double end) {
  if (!ready_) return settle(false, "There is no capture to cut.");
  const FrameIndex &index = frames_->index();
  const int first = index.firstFrom(begin);
  const int last = index.find(endOfMillisecond(end));
  if (!(begin <= end) || first > last) return settle(false, "No frame begins in the time that is to be cut out.");
  return CutPcap(path, first, last);
}

bool RuntimeSession::CutPcap(const std::string &path, int first, int last) {
  if (!ready_) return settle(false, "There is no capture to cut.");
  const int oldest = frames_->oldest();
  const int newest = frames_->index().count() - 1;
  if (first < oldest || last > newest || first > last)
    return settle(false, "Frames " + std::to_string(first) + " to " + std::to_string(last) +
                             " cannot be cut out: there are frames " + std::to_string(oldest) + " to " +
                             std::to_string(newest) + ".");
  CutTell tell;
  {
    const std::lock_guard lock(errorMutex_);
    tell = cutTell_;
  }
  CutWatch watch(std::move(tell));
  std::string error;
  const bool done = frames_->cut(path, first, last, watch, error);
  if (!watch.givenUp()) return settle(done, error);
  SKARN_LOG(LogLevel::Information, "The cut to %s was given up.", path.c_str());
  const std::lock_guard lock(errorMutex_);
  captureError_ = "The cut was given up.";
  return false;
}

void RuntimeSession::WatchCuts(CutTell tell) {
  const std::lock_guard lock(errorMutex_);
  cutTell_ = std::move(tell);
}

bool RuntimeSession::StartRecordPcap(const std::string &path) {
  if (!ready_) return settle(false, "There is no live source to record.");
  std::string error;
  const bool done = frames_->startRecord(path, error);
  return settle(done, error);
}

void RuntimeSession::StopRecordPcap() {
  if (ready_) frames_->stopRecord();
}

void RuntimeSession::SetStopRecv(bool stop) {
  if (ready_) frames_->setReceiving(!stop);
}

CaptureReport RuntimeSession::GetCaptureReport() const {
  CaptureReport report;
  report.complete = finished_;
  if (ready_) frames_->report(report);
  return report;
}

std::string RuntimeSession::CaptureError() const {
  const std::lock_guard lock(errorMutex_);
  return captureError_;
}

bool RuntimeSession::IsCorrectionLoadSuccess() const { return store_.isLoaded(CalibrationKind::Corrections); }
bool RuntimeSession::IsFiretimesLoadSuccess() const { return store_.isLoaded(CalibrationKind::Firetimes); }
bool RuntimeSession::IsDcfLoadSuccess() const { return store_.isLoaded(CalibrationKind::Dcf); }
bool RuntimeSession::HasCalibration(CalibrationTable table) const {
  const auto held = store_.snapshot();
  switch (table) {
    case CalibrationTable::Corrections:
      return held->corrections != nullptr;
    case CalibrationTable::Firetimes:
      return held->firetimes != nullptr;
    case CalibrationTable::Dcf:
      return held->dcf != nullptr;
    case CalibrationTable::NonlinearMapping:
      return held->nonlinear != nullptr;
    case CalibrationTable::ChannelConfig:
      return held->channelConfig != nullptr;
  }
  return false;
}

void RuntimeSession::SetCorrectionLoadFlag(bool loaded) { store_.setCorrectionLoaded(loaded); }

int RuntimeSession::loadFile(CalibrationKind kind, const std::string &path) {
  const int result = store_.loadFile(kind, path);
  if (result == 0) standsIn_[static_cast<std::size_t>(kind)] = !asked_;
  return result;
}

int RuntimeSession::LoadCorrectionFile(const std::string &path) { return loadFile(CalibrationKind::Corrections, path); }
int RuntimeSession::LoadFiretimesFile(const std::string &path) { return loadFile(CalibrationKind::Firetimes, path); }
int RuntimeSession::LoadDcfConfigFile(const std::string &path) { return loadFile(CalibrationKind::Dcf, path); }
int RuntimeSession::LoadNonlinearMappingFile(const std::string &path) {
  return loadFile(CalibrationKind::NonlinearMapping, path);
}
int RuntimeSession::LoadChannelConfigFile(const std::string &path) {
  return loadFile(CalibrationKind::ChannelConfig, path);
}

int RuntimeSession::ExportCorrectionsFile(const std::string &path, int) {
  return store_.exportFile(CalibrationKind::Corrections, path);
}
int RuntimeSession::ExportFiretimesFile(const std::string &path, int) {
  return store_.exportFile(CalibrationKind::Firetimes, path);
}
int RuntimeSession::ExportDcfConfigFile(const std::string &path) {
  return store_.exportFile(CalibrationKind::Dcf, path);
}
int RuntimeSession::ExportNonlinearMappingFile(const std::string &path) {
  return store_.exportFile(CalibrationKind::NonlinearMapping, path);
}
int RuntimeSession::ExportChannelConfigFile(const std::string &path) {
  return store_.exportFile(CalibrationKind::ChannelConfig, path);
}

int RuntimeSession::GetCorrectionViewCapacity() const { return maxChannels; }

bool RuntimeSession::GetCorrectionView(float **azimuths, float **elevations, bool **displayed) {
  if (!IsCorrectionLoadSuccess() || !store_.snapshot()->corrections) return false;
  if (azimuths != nullptr) *azimuths = store_.azimuths();
  if (elevations != nullptr) *elevations = store_.elevations();
  if (displayed != nullptr) *displayed = store_.displayed();
  return true;
}

float *RuntimeSession::GetCorrectionAzimuthOdd() { return store_.azimuthsOdd(); }
std::vector<double> RuntimeSession::GetCorrectionFrameSpan() const { return store_.frameSpan(); }
void RuntimeSession::SetCorrectionFrameSpan(const std::vector<double> &span) { store_.setFrameSpan(span); }

int RuntimeSession::GetCorrectionChannelSection(int section, SvSdkCorrectionSectionView *view) {
  return store_.section(section, view);
}

SvSdkCorrectionSnapshot RuntimeSession::CaptureCorrectionSnapshot() const { return store_.correctionSnapshot(); }
bool RuntimeSession::GetLmqChannelLayout(std::vector<LmqChannelPosition> *) const { return false; }

void RuntimeSession::OpenLcpConnection(const std::string &host, std::uint16_t port) { device_.open(host, port); }
void RuntimeSession::CloseLcpConnection() { device_.close(); }
bool RuntimeSession::IsLcpOpen() const { return device_.isCommandOpen(); }
bool RuntimeSession::IsAuxLcpOpen() const { return device_.isConnected(); }

// Commands need a device that answers them, and no connection of ours has one yet.
int RuntimeSession::LcpSetReturnMode(int) { return -1; }
bool RuntimeSession::GetFpgaRegister(std::uint32_t, std::uint32_t &) { return false; }
bool RuntimeSession::SetFpgaRegister(std::uint32_t, std::uint32_t) { return false; }
bool RuntimeSession::SetLidarModeBySomeip(int) { return false; }
bool RuntimeSession::GetLidarStatusBySomeip(int &, int &) { return false; }

void RuntimeSession::ExecuteWithIspLock(const std::function<void()> &work) {
  const std::lock_guard lock(ispMutex_);
  work();
}

}  // namespace tarvo::lidar
