#include "contracts/host/log.h"
#include "runtime/session/runtime_session.h"

SKARN_LOG_SOURCE("runtime/session");

namespace tarvo::lidar {

using skarnvisor::LogLevel;

bool RuntimeSession::CutPcap(const std::string &path, double begin, double end) {
  if (!ready_ || !(begin <= end)) return false;
  const FrameIndex &index = frames_->index();
  const int last = index.find(end);
  const int first = index.firstFrom(begin);
  return first <= last && CutPcap(path, first, last);
}

bool RuntimeSession::CutPcap(const std::string &path, int first, int last) {
  if (!ready_) return false;
  if (frames_->canCut()) return frames_->cut(path, first, last);
  SKARN_LOG(LogLevel::Error, "\"%s\" is not written: cutting comes with the live receiver", path.c_str());
  return false;
}

bool RuntimeSession::StartRecordPcap(const std::string &path) {
  if (ready_ && frames_->canRecord()) return frames_->startRecord(path);
  SKARN_LOG(LogLevel::Error, "\"%s\" is not recorded: live capture comes with the live receiver", path.c_str());
  return false;
}

void RuntimeSession::StopRecordPcap() {
  if (ready_) frames_->stopRecord();
}

void RuntimeSession::SetStopRecv(bool stop) {
  if (ready_) frames_->setReceiving(!stop);
}

bool RuntimeSession::IsCorrectionLoadSuccess() const { return store_.isLoaded(CalibrationKind::Corrections); }
bool RuntimeSession::IsFiretimesLoadSuccess() const { return store_.isLoaded(CalibrationKind::Firetimes); }
bool RuntimeSession::IsDcfLoadSuccess() const { return store_.isLoaded(CalibrationKind::Dcf); }
void RuntimeSession::SetCorrectionLoadFlag(bool loaded) { store_.setCorrectionLoaded(loaded); }

int RuntimeSession::LoadCorrectionFile(const std::string &path) {
  return store_.loadFile(CalibrationKind::Corrections, path);
}
int RuntimeSession::LoadFiretimesFile(const std::string &path) {
  return store_.loadFile(CalibrationKind::Firetimes, path);
}
int RuntimeSession::LoadDcfConfigFile(const std::string &path) { return store_.loadFile(CalibrationKind::Dcf, path); }
int RuntimeSession::LoadNonlinearMappingFile(const std::string &path) {
  return store_.loadFile(CalibrationKind::NonlinearMapping, path);
}
int RuntimeSession::LoadChannelConfigFile(const std::string &path) {
  return store_.loadFile(CalibrationKind::ChannelConfig, path);
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
  if (!IsCorrectionLoadSuccess()) return false;
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
