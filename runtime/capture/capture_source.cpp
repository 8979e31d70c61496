#include "runtime/capture/capture_source.h"

#include <algorithm>
#include <limits>
#include <new>

#include "contracts/host/log.h"

SKARN_LOG_SOURCE("runtime/capture");

namespace tarvo::lidar {

namespace {

constexpr std::uint64_t wholeFile = std::numeric_limits<std::uint64_t>::max();
constexpr std::uint64_t smallWindow = 64u << 10;
constexpr std::size_t setupLimit = 100'000;
constexpr std::uint64_t longestRecord = 300'000;

std::string fileNameOf(const std::string &path) { return path.substr(path.find_last_of('/') + 1); }

}  // namespace

CaptureSource::CaptureSource(std::string path, int sensorPort, FrameSourceListener &listener)
    : path_(std::move(path)), sensorPort_(sensorPort), listener_(listener) {
  counters_.setName(fileNameOf(path_));
}

CaptureSource::~CaptureSource() { stop(); }

void CaptureSource::stop() {
  stop_.store(true);
  if (thread_.joinable()) thread_.join();
}

void CaptureSource::start() {
  thread_ = std::thread([this] { run(); });
}

void CaptureSource::run() {
  std::string error;
  if (!file_.open(path_, error)) {
    listener_.failed(error);
    return;
  }
  try {
    walkFile();
  } catch (const std::bad_alloc &) {
    listener_.failed("There is not enough memory to read the capture \"" + path_ + "\".");
  }
}

void CaptureSource::walkFile() {
  DatagramReader reader(file_, counters_, file_.firstRecord(), wholeFile);
  IndexBuilder builder(sensorPort_, {index_, counters_, census_, listener_, *this},
                       [this](const PacketDecoder &decoder, int port) {
                         port_.store(port);
                         decoder_.store(&decoder);
                       });
  UdpDatagram datagram;
  // What describes the lidar is looked for to the end: without it there would be nothing to show.
  const auto enough = [&] { return enough_.load(std::memory_order_relaxed) && builder.described(); };
  while (!stop_.load(std::memory_order_relaxed) && !enough() && reader.next(datagram)) {
    builder.take(datagram);
    lookedThrough_.store(datagram.recordEnd, std::memory_order_relaxed);
  }
  if (stop_.load()) return;
  stoppedShort_ = enough();
  builder.finish();
  if (builder.described()) {
    SKARN_LOG(skarnvisor::LogLevel::Information, "%s: %d frames, %llu packets lost", path_.c_str(), index_.count(),
              static_cast<unsigned long long>(counters_.get(InputFault::LostPacket)));
    listener_.finished();
    return;
  }
  const std::string file = "\"" + path_ + "\"";
  if (reader.records() == 0)
    listener_.failed("The capture " + file + " is empty: it holds no packet.");
  else if (builder.streamFound())
    listener_.failed("The capture " + file + " holds lidar packets, but none that describes the lidar.");
  else if (sensorPort_ != 0)
    listener_.failed("The capture " + file + " holds no packet of a known lidar on UDP port " +
                     std::to_string(sensorPort_) + ": " + builder.foreignSummary(reader.records()) + ".");
  else
    listener_.failed("The capture " + file +
                     " holds no packet of a known lidar: " + builder.foreignSummary(reader.records()) + ".");
}

bool CaptureSource::readFrame(int id, FramePackets &packets, const std::function<bool()> &stop) {
  const auto frame = index_.at(id);
  const PacketDecoder *decoder = decoder_.load();
  if (!frame || decoder == nullptr) return false;
  const std::uint64_t window = std::clamp<std::uint64_t>(frame->length, smallWindow, RecordCursor::indexWindow);
  DatagramReader reader(file_, counters_, frame->offset, frame->offset + frame->length, window, false);
  UdpDatagram datagram;
  std::optional<std::uint64_t> key;
  while (reader.next(datagram)) {
    if (stop()) return false;
    if (datagram.destinationPort != port_.load(std::memory_order_relaxed)) continue;
    const auto own = decoder->frameKey(datagram);
    if (!own || (key && *own != *key)) continue;
    key = own;
    if (!packets.add(datagram.payload)) {
      counters_.add(InputFault::OversizedFrame, static_cast<std::uint64_t>(id));
      break;
    }
  }
  return key.has_value();
}

void CaptureSource::keepSetup(const UdpDatagram &datagram, int) {
  // What came in fragments is left: other packets may lie between them.
  if (datagram.recordEnd - datagram.recordOffset > longestRecord) return;
  const std::lock_guard lock(setupMutex_);
  if (setup_.size() < setupLimit) setup_.push_back({datagram.recordOffset, datagram.recordEnd});
}

bool CaptureSource::cut(const std::string &path, int first, int last, CutWatch &watch, std::string &error) {
  const PacketDecoder *decoder = decoder_.load();
  if (decoder == nullptr) return false;
  if (file_.isAt(path)) {
    error = "A cut cannot take the place of the capture that it is made from.";
    return false;
  }
  std::vector<RecordPlace> setup;
  {
    const std::lock_guard lock(setupMutex_);
    setup = setup_;
  }
  return CaptureCutter(file_, *decoder, port_.load(), std::move(setup), watch).cut(path, index_, first, last, error);
}

bool CaptureSource::startRecord(const std::string &, std::string &error) {
  error = "Only a live source can be recorded; a part of a capture file can be cut out.";
  return false;
}

void CaptureSource::setReceiving(bool on) {
  if (!on) enough_ = true;
}

void CaptureSource::report(CaptureReport &report) const {
  report.stoppedShort = stoppedShort_;
  const double size = static_cast<double>(std::max<std::uint64_t>(file_.size(), 1));
  report.share = report.complete ? 1.0 : static_cast<double>(lookedThrough_) / size;
  counters_.fill(report);
  census_.fill(report);
}

}  // namespace tarvo::lidar
