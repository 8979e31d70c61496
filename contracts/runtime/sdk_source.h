#pragma once

#include <QtCore/QObject>
#include <QtCore/QString>
#include <array>
#include <atomic>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <mutex>
#include <string>
#include <vector>

#include "contracts/runtime/decoded_frame.h"
#include "contracts/runtime/driver_param.h"
#include "contracts/runtime/imu_sample.h"
#include "contracts/runtime/point_info.h"

namespace tarvo::lidar {

class ParallelIspEngine;
class SvSdkRuntime;

struct PlayState {
  std::atomic<bool> playing{false};
};

// Ties one runtime to one track and carries the current frame from the runtime's decoder to the parser. The offsets are
// fixed on x86-64 with libstdc++.
//
// Hand-over: the producer clears `frameReady` and calls Iterate; the decoder fills the frame members under `frameLock`
// and sets `frameReady`. Who reads or changes `points`, `overlayPoints` or `imuSamples` holds `frameLock`; the scalars
// are atomics. Status packets have a lock of their own.
class SDKSource : public QObject {
 public:
  explicit SDKSource(QObject *parent = nullptr);
  // Deletes the runtime, whose threads use the engine, then the engine.
  ~SDKSource() override;

  // Refills overlayPoints, overlayColumns and overlayRows from `frame`; null empties them. Caller holds frameLock and
  // not frame->mutex, which this takes.
  void CopyRgbOverlayFromFrame(const LidarDecodedFrame<SDKPointInfo> *frame);

  std::atomic<bool> clipLoading{false};
  std::atomic<bool> clipActive{false};
  std::atomic<bool> clipStopped{false};
  std::array<std::byte, 5> reserved19{};
  std::shared_ptr<PlayState> playState;  // never null after construction
  std::array<std::byte, 56> reserved40{};
  QString sourceTitle;
  std::atomic<bool> correctionFailed{false};
  std::atomic<bool> firetimesFailed{false};
  std::atomic<bool> dcfFailed{false};
  std::atomic<bool> correctionExportPending{false};
  std::atomic<bool> firetimesExportPending{false};
  std::atomic<bool> dcfExportPending{false};
  std::array<std::byte, 2> reserved110{};
  std::atomic<bool> frameReady{false};
  std::array<std::byte, 7> reserved113{};
  std::atomic<double> beginSeconds{-1.0};  // negative: unknown
  std::atomic<double> endSeconds{-1.0};
  std::array<std::byte, 4> reserved136{};
  std::atomic<std::int32_t> laserPointCount{0};
  std::atomic<std::int32_t> remakeWidth{1};
  std::atomic<std::int32_t> mergedFrames{1};
  std::atomic<std::int32_t> pointCount{0};
  std::atomic<std::int32_t> rgbMode{0};  // 0: point cloud
  std::atomic<bool> fastPathDone{false};
  std::array<std::byte, 7> reserved161{};
  std::string fastPathReason;  // written by the decoder thread under frameLock
  void *renderBuffer = nullptr;
  // (points, count, mode): true when the render buffer took the points as its picture. Called by the decoder with
  // frameLock held. Installed before the first frame.
  std::function<bool(const SDKPointInfo *, unsigned, int)> tryFillVertices;
  std::array<std::byte, 32> reserved240{};
  std::int32_t statusPacketCount = 0;
  std::array<std::byte, 4> reserved276{};
  std::atomic<double> frameTimestamp{0.0};  // seconds
  std::atomic<double> fmcwTime0{0.0};
  std::atomic<double> fmcwTime1{0.0};
  std::vector<SDKPointInfo> points;
  std::vector<SDKPointInfo> overlayPoints;
  std::int32_t overlayColumns = 0;
  std::int32_t overlayRows = 0;
  unsigned char *statusPackets = nullptr;  // statusPacketCount records of statusPacketStride bytes
  std::array<std::byte, 16> reserved368{};
  std::vector<ImuSample> imuSamples;
  mutable std::mutex statusMutex;  // guards statusPackets, statusPacketCount, statusPacketBytes, statusPacketStride
  std::vector<unsigned char> statusPacketBytes;  // what statusPackets points into
  std::int32_t statusPacketStride = 0;           // bytes of one record, see status_packet.h
  std::array<std::byte, 12> reserved476{};
  DriverParam driverParam;
  SvSdkRuntime *runtime = nullptr;  // owned
  std::string familyLabel;
  std::atomic<bool> lidarPositionChanged{false};
  std::array<std::byte, 7> reserved2257{};
  ParallelIspEngine *ispEngine = nullptr;  // owned
  mutable std::mutex frameLock;            // guards points, overlayPoints, its sizes, imuSamples and fastPathReason
};

#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Winvalid-offsetof"
static_assert(sizeof(std::atomic<bool>) == 1 && sizeof(std::atomic<double>) == 8);
static_assert(offsetof(SDKSource, clipLoading) == 16);
static_assert(offsetof(SDKSource, clipActive) == 17);
static_assert(offsetof(SDKSource, clipStopped) == 18);
static_assert(offsetof(SDKSource, playState) == 24);
static_assert(offsetof(SDKSource, sourceTitle) == 96);
static_assert(offsetof(SDKSource, correctionFailed) == 104);
static_assert(offsetof(SDKSource, firetimesFailed) == 105);
static_assert(offsetof(SDKSource, dcfFailed) == 106);
static_assert(offsetof(SDKSource, correctionExportPending) == 107);
static_assert(offsetof(SDKSource, firetimesExportPending) == 108);
static_assert(offsetof(SDKSource, dcfExportPending) == 109);
static_assert(offsetof(SDKSource, frameReady) == 112);
static_assert(offsetof(SDKSource, beginSeconds) == 120);
static_assert(offsetof(SDKSource, endSeconds) == 128);
static_assert(offsetof(SDKSource, laserPointCount) == 140);
static_assert(offsetof(SDKSource, remakeWidth) == 144);
static_assert(offsetof(SDKSource, mergedFrames) == 148);
static_assert(offsetof(SDKSource, pointCount) == 152);
static_assert(offsetof(SDKSource, rgbMode) == 156);
static_assert(offsetof(SDKSource, fastPathDone) == 160);
static_assert(offsetof(SDKSource, fastPathReason) == 168);
static_assert(offsetof(SDKSource, renderBuffer) == 200);
static_assert(offsetof(SDKSource, tryFillVertices) == 208);
static_assert(offsetof(SDKSource, statusPacketCount) == 272);
static_assert(offsetof(SDKSource, frameTimestamp) == 280);
static_assert(offsetof(SDKSource, fmcwTime0) == 288);
static_assert(offsetof(SDKSource, fmcwTime1) == 296);
static_assert(offsetof(SDKSource, points) == 304);
static_assert(offsetof(SDKSource, overlayPoints) == 328);
static_assert(offsetof(SDKSource, overlayColumns) == 352);
static_assert(offsetof(SDKSource, overlayRows) == 356);
static_assert(offsetof(SDKSource, statusPackets) == 360);
static_assert(offsetof(SDKSource, imuSamples) == 384);
static_assert(offsetof(SDKSource, statusMutex) == 408);
static_assert(offsetof(SDKSource, driverParam) == 488);
static_assert(offsetof(SDKSource, runtime) == 2216);
static_assert(offsetof(SDKSource, familyLabel) == 2224);
static_assert(offsetof(SDKSource, lidarPositionChanged) == 2256);
static_assert(offsetof(SDKSource, ispEngine) == 2264);
#pragma GCC diagnostic pop

}  // namespace tarvo::lidar

namespace tarvo {
using lidar::PlayState;
using lidar::SDKPointInfo;
using lidar::SDKSource;
}  // namespace tarvo
