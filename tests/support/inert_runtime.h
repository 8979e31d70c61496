#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "contracts/runtime/sv_sdk_runtime.h"

namespace tarvo::test {

// A runtime that holds nothing and refuses everything. A test derives from it and scripts the operations of the role it
// is about. The decode parameters and the frame are real.
class InertRuntime : public SvSdkRuntime {
 public:
  bool Init(const DriverParam &) override { return true; }
  bool GetInitFinish(SvSdkInitFinish question) const override { return question == SvSdkInitFinish::Ready; }

  std::string GetLidarType() const override { return lidarType; }
  int GetLidarNum() const override { return 0; }
  int GetChannelNum() const override { return 0; }
  int GetPcapPort() const override { return 0; }

  bool IsCorrectionLoadSuccess() const override { return false; }
  bool IsFiretimesLoadSuccess() const override { return false; }
  bool IsDcfLoadSuccess() const override { return false; }
  void SetCorrectionLoadFlag(bool) override {}

  bool Iterate(double, double) override { return false; }
  bool Iterate(int, int) override { return false; }
  int FindFrameId(double) const override { return -1; }
  int GetFrameCount() const override { return 0; }
  double GetFrameStartSeconds(int) const override { return 0.0; }
  bool HasPreParser() const override { return false; }
  DecodedFrame *DecodeFrame() override { return &frame; }
  DecodeParams &Params() override { return params; }
  void ApplyRemakeDefaultConfig() override {}

  bool CutPcap(const std::string &, double, double) override { return false; }
  bool CutPcap(const std::string &, int, int) override { return false; }
  bool StartRecordPcap(const std::string &) override { return false; }
  void StopRecordPcap() override {}
  void SetStopRecv(bool) override {}

  int LoadCorrectionFile(const std::string &) override { return -1; }
  int ExportCorrectionsFile(const std::string &, int) override { return -1; }
  int LoadFiretimesFile(const std::string &) override { return -1; }
  int ExportFiretimesFile(const std::string &, int) override { return -1; }
  int LoadDcfConfigFile(const std::string &) override { return -1; }
  int ExportDcfConfigFile(const std::string &) override { return -1; }
  int LoadNonlinearMappingFile(const std::string &) override { return -1; }
  int ExportNonlinearMappingFile(const std::string &) override { return -1; }
  int LoadChannelConfigFile(const std::string &) override { return -1; }
  int ExportChannelConfigFile(const std::string &) override { return -1; }

  int GetCorrectionViewCapacity() const override { return 0; }
  bool GetCorrectionView(float **, float **, bool **) override { return false; }
  float *GetCorrectionAzimuthOdd() override { return nullptr; }
  std::vector<double> GetCorrectionFrameSpan() const override { return {}; }
  void SetCorrectionFrameSpan(const std::vector<double> &) override {}
  int GetCorrectionChannelSection(int, SvSdkCorrectionSectionView *) override { return 0; }
  SvSdkCorrectionSnapshot CaptureCorrectionSnapshot() const override { return {}; }
  bool GetLmqChannelLayout(std::vector<LmqChannelPosition> *) const override { return false; }

  void OpenLcpConnection(const std::string &, std::uint16_t) override {}
  void CloseLcpConnection() override {}
  bool IsLcpOpen() const override { return false; }
  bool IsAuxLcpOpen() const override { return false; }
  int LcpSetReturnMode(int) override { return -1; }
  bool GetFpgaRegister(std::uint32_t, std::uint32_t &) override { return false; }
  bool SetFpgaRegister(std::uint32_t, std::uint32_t) override { return false; }
  bool SetLidarModeBySomeip(int) override { return false; }
  bool GetLidarStatusBySomeip(int &, int &) override { return false; }

  void ExecuteWithIspLock(const std::function<void()> &work) override { work(); }

  std::string lidarType = "KR2";
  DecodedFrame frame;
  DecodeParams params;
};

}  // namespace tarvo::test
