#include "runtime/capture/capture_counters.h"

#include "contracts/host/log.h"

SKARN_LOG_SOURCE("runtime/capture");

namespace tarvo::lidar {

namespace {

using skarnvisor::LogLevel;

struct FaultText {
  LogLevel level;
  const char *text;
};

constexpr std::array<FaultText, static_cast<unsigned>(InputFault::count_)> faultTexts{{
    {LogLevel::Warning, "the file ends inside a record, what came before it is used"},
    {LogLevel::Error, "damaged record header, the rest of the file cannot be read"},
    {LogLevel::Warning, "packet of an interface that the file does not describe, skipped"},
    {LogLevel::Warning, "packet of a link type that is not read, skipped"},
    {LogLevel::Warning, "packet cut short by the capture, skipped"},
    {LogLevel::Warning, "incomplete IP datagram, skipped"},
    {LogLevel::Warning, "damaged lidar packet, skipped"},
    {LogLevel::Warning, "lidar packet of a frame that is over, skipped"},
    {LogLevel::Warning, "lidar packets are missing"},
    {LogLevel::Information, "packets of another sensor, skipped"},
    {LogLevel::Warning, "calibration data in the capture cannot be used"},
    {LogLevel::Warning, "frame larger than can be shown, its rest is left out"},
    {LogLevel::Information, "lidar packets come out of order"},
    {LogLevel::Information, "lidar packets come twice"},
    {LogLevel::Warning, "the sensor's clock jumped, the timeline goes on without the jump"},
    {LogLevel::Information, "the size of the frames changed"},
    {LogLevel::Warning, "this machine did not read the socket in time, packets are dropped"},
    {LogLevel::Information, "frames are missing for a while"},
}};

}  // namespace

void CaptureCounters::add(InputFault fault, std::uint64_t where, std::uint64_t times) {
  const auto index = static_cast<unsigned>(fault);
  if (counts_[index].fetch_add(times, std::memory_order_relaxed) != 0) return;
  const FaultText &row = faultTexts[index];
  SKARN_LOG(row.level, "%s: %s (at %llu; further ones are counted)", name_.c_str(), row.text,
            static_cast<unsigned long long>(where));
}

void CaptureCounters::fill(CaptureReport &report) const {
  report.lost = get(InputFault::LostPacket);
  report.kernelDrops = get(InputFault::KernelDrop);
  report.disordered = get(InputFault::DisorderedPacket);
  report.repeated = get(InputFault::RepeatedPacket);
  report.late = get(InputFault::LatePacket);
  report.damaged = get(InputFault::DamagedPacket);
  report.foreign = get(InputFault::ForeignSensor);
  report.unreadable = get(InputFault::CutPacket) + get(InputFault::LostFragment) + get(InputFault::UnknownInterface) +
                      get(InputFault::UnknownLinkType);
  report.clockJumps = get(InputFault::ClockJump);
  report.shapeChanges = get(InputFault::ShapeChange);
  report.truncated = get(InputFault::TruncatedFile) + get(InputFault::DamagedRecord) != 0;
}

}  // namespace tarvo::lidar
