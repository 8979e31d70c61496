#pragma once

#include <array>
#include <atomic>
#include <memory>
#include <mutex>

#include "contracts/runtime/sdk_source.h"
#include "contracts/runtime/sv_sdk_runtime.h"
#include "runtime/calibration/calibration_store.h"
#include "runtime/capture/frame_source.h"
#include "runtime/decode/scene_decoder.h"
#include "runtime/device/device_session.h"
#include "runtime/filters/filter_settings.h"
#include "runtime/session/decoder_thread.h"

namespace tarvo::lidar {

/// The runtime of one source: puts capture, decoder, calibration and device together. Its operations may be called from
/// any thread. Destruction ends its threads, in the middle of an index pass or of a decode too.
class RuntimeSession final : public SvSdkRuntime, private FrameSourceListener {
 public:
  /// `source` owns the session and is what it fills.
  explicit RuntimeSession(SDKSource &source);
  ~RuntimeSession() override;

  // Start. Once a session.
  bool Init(const DriverParam &param) override;
  [[nodiscard]] bool GetInitFinish(SvSdkInitFinish question) const override;
  [[nodiscard]] std::string InitError() const override;

  // Identity.
  [[nodiscard]] std::string GetLidarType() const override;
  [[nodiscard]] int GetLidarNum() const override;
  [[nodiscard]] int GetChannelNum() const override;
  [[nodiscard]] int GetPcapPort() const override;

  // Frames.
  bool Iterate(double begin, double end) override;
  bool Iterate(int first, int count) override;
  [[nodiscard]] int FindFrameId(double seconds) const override;
  [[nodiscard]] int GetFrameCount() const override;
  [[nodiscard]] double GetFrameStartSeconds(int frame) const override;
  [[nodiscard]] bool HasPreParser() const override;
  [[nodiscard]] DecodedFrame *DecodeFrame() override;
  [[nodiscard]] DecodeParams &Params() override { return params_; }
  void ApplyRemakeDefaultConfig() override;

  // Capture.
  bool CutPcap(const std::string &path, double begin, double end) override;
  bool CutPcap(const std::string &path, int first, int last) override;
  void WatchCuts(CutTell tell) override;
  bool StartRecordPcap(const std::string &path) override;
  void StopRecordPcap() override;
  void SetStopRecv(bool stop) override;
  [[nodiscard]] CaptureReport GetCaptureReport() const override;
  [[nodiscard]] std::string CaptureError() const override;

  // Calibration.
  [[nodiscard]] bool IsCorrectionLoadSuccess() const override;
  [[nodiscard]] bool IsFiretimesLoadSuccess() const override;
  [[nodiscard]] bool IsDcfLoadSuccess() const override;
  [[nodiscard]] bool HasCalibration(CalibrationTable table) const override;
  void SetCorrectionLoadFlag(bool loaded) override;
  int LoadCorrectionFile(const std::string &path) override;
  int ExportCorrectionsFile(const std::string &path, int channelCount) override;
  int LoadFiretimesFile(const std::string &path) override;
  int ExportFiretimesFile(const std::string &path, int channelCount) override;
  int LoadDcfConfigFile(const std::string &path) override;
  int ExportDcfConfigFile(const std::string &path) override;
  int LoadNonlinearMappingFile(const std::string &path) override;
  int ExportNonlinearMappingFile(const std::string &path) override;
  int LoadChannelConfigFile(const std::string &path) override;
  int ExportChannelConfigFile(const std::string &path) override;
  [[nodiscard]] int GetCorrectionViewCapacity() const override;
  bool GetCorrectionView(float **azimuths, float **elevations, bool **displayed) override;
  [[nodiscard]] float *GetCorrectionAzimuthOdd() override;
  [[nodiscard]] std::vector<double> GetCorrectionFrameSpan() const override;
  void SetCorrectionFrameSpan(const std::vector<double> &span) override;
  int GetCorrectionChannelSection(int section, SvSdkCorrectionSectionView *view) override;
  [[nodiscard]] SvSdkCorrectionSnapshot CaptureCorrectionSnapshot() const override;
  bool GetLmqChannelLayout(std::vector<LmqChannelPosition> *layout) const override;

  // Device.
  void OpenLcpConnection(const std::string &host, std::uint16_t port) override;
  void CloseLcpConnection() override;
  [[nodiscard]] bool IsLcpOpen() const override;
  [[nodiscard]] bool IsAuxLcpOpen() const override;
  int LcpSetReturnMode(int mode) override;
  bool GetFpgaRegister(std::uint32_t address, std::uint32_t &value) override;
  bool SetFpgaRegister(std::uint32_t address, std::uint32_t value) override;
  bool SetLidarModeBySomeip(int mode) override;
  bool GetLidarStatusBySomeip(int &runMode, int &heatStatus) override;

  // Filters of the decoder.
  void SetPopoutFilterFlag(bool on) override;
  void SetPopoutFilterHighlight(bool on) override;
  void SetPopoutFilterConfig(int window, float tolerance, float toleranceOfRange, float greatestRange) override;
  void SetOfflineFilterFlag(bool on) override;
  void SetVd8OfflineFilterFlag(bool on) override;
  void SetPointCloudSmoothingFlag(bool on) override;
  [[nodiscard]] bool GetPointCloudSmoothingFlag() const override;
  void SetPointCloudSmoothingConfig(const SmoothingConfig &config, float last) override;
  void SetYfnNoiseFilterFlag(bool on) override;
  void SetYfnNoiseFilterMode(int mode) override;
  void SetYfnNoiseFilterParams(float radius, float radiusOfRange, int leastNeighbours) override;

  // Image signal.
  void ExecuteWithIspLock(const std::function<void()> &work) override;

 private:
  // What the frame source tells, on its thread.
  void described(const StreamDescription &description, const PacketDecoder &decoder, int port) override;
  void calibrationFound(const CalibrationBlob &blob) override;
  void framesGrew() override;
  void failed(const std::string &reason) override;
  void finished() override;

  bool openCapture(const DriverParam &param);
  bool openLive(const DriverParam &param);
  bool refuse(const std::string &reason);
  int loadFile(CalibrationKind kind, const std::string &path);
  void decodeFrames(const DecodeRequest &request, const std::function<bool()> &giveUp);
  int framesInside(double seconds, int last) const;
  bool start(int first, int count);
  bool settle(bool done, const std::string &error);
  [[nodiscard]] const StreamDescription *lidar() const { return ready_ ? &description_ : nullptr; }

  SDKSource &source_;
  DecodeParams params_;
  DecodedFrame frame_;
  CalibrationStore store_;
  // By kind: a file loaded before anybody asked for a frame stands in until the source brings its own.
  std::array<std::atomic<bool>, wire::calibrationKinds> standsIn_{};
  std::atomic<bool> asked_{false};  // a frame has been asked for
  FilterControls filters_;
  DeviceSession device_;
  std::mutex ispMutex_;  // held while image-signal work runs or its files change
  std::atomic<bool> begun_{false};
  std::atomic<bool> ready_{false};  // from then on what the frame source has told is read without a lock
  std::atomic<bool> failed_{false};
  std::atomic<bool> finished_{false};  // nothing more will come
  mutable std::mutex errorMutex_;      // guards the three members below
  std::string initError_;
  std::string captureError_;
  CutTell cutTell_;
  std::string captureName_;
  bool live_ = false;                    // written before the source's thread begins
  StreamDescription description_;        // written once, before ready_
  int port_ = 0;                         // written once, before ready_
  std::unique_ptr<SceneDecoder> scene_;  // written once, before ready_; used by the decoder thread alone
  std::unique_ptr<FrameSource> frames_;
  DecoderThread decoder_;
};

}  // namespace tarvo::lidar
