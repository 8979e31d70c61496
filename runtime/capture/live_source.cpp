#include "runtime/capture/live_source.h"

#include <exception>
#include <utility>

#include "contracts/host/log.h"
#include "runtime/capture/packet_records.h"
#include "runtime/capture/replacing_file.h"

SKARN_LOG_SOURCE("runtime/capture");

namespace tarvo::lidar {

namespace {

constexpr int lookAroundMs = 50;  // without packets: how often the source passes on what it has

}  // namespace

LiveSource::LiveSource(std::uint32_t ringFrames, FrameSourceListener &listener)
    : listener_(listener),
      ring_(LiveRing::defaultBytes, ringFrames != 0 ? ringFrames : LiveRing::defaultFrames),
      builder_(0, {index_, counters_, census_, listener, *this}, [](const PacketDecoder &, int) {}) {}

LiveSource::~LiveSource() { stop(); }

bool LiveSource::start(const UdpSocket::Settings &settings, std::string &error) {
  counters_.setName("UDP port " + std::to_string(settings.port));
  if (!socket_.open(settings, error)) return false;
  thread_ = std::thread([this] { run(); });
  return true;
}

void LiveSource::stop() {
  stop_ = true;
  if (!thread_.joinable()) return;
  socket_.wake();
  thread_.join();
  recorder_.stop();
}

void LiveSource::run() {
  try {
    while (!stop_.load(std::memory_order_relaxed)) {
      socket_.receive(lookAroundMs, [this](const UdpDatagram &datagram) { take(datagram); });
      lookAround();
    }
  } catch (const std::exception &failure) {
    SKARN_LOG(skarnvisor::LogLevel::Error, "reception has ended: %s", failure.what());
    if (!builder_.described()) listener_.failed(std::string("The reception has ended: ") + failure.what() + ".");
  }
}

void LiveSource::take(const UdpDatagram &datagram) {
  if (!receiving_.load(std::memory_order_relaxed)) {
    skipped_ = true;
    return;
  }
  if (std::exchange(skipped_, false)) builder_.skip();
  recorder_.add(datagram);
  builder_.take(datagram);
}

void LiveSource::lookAround() {
  if (const std::uint32_t drops = socket_.takeKernelDrops(); drops != 0 && receiving_)
    counters_.add(InputFault::KernelDrop, static_cast<std::uint64_t>(index_.count()), drops);
  builder_.flush();
}

void LiveSource::keep(const UdpDatagram &datagram, int id) {
  if (!ring_.add(datagram, id)) counters_.add(InputFault::OversizedFrame, static_cast<std::uint64_t>(id));
}

void LiveSource::keepSetup(const UdpDatagram &datagram, int id) {
  const std::lock_guard lock(setupMutex_);
  if (setupHeld_ + datagram.payload.size() > setupBytes) return;
  setupHeld_ += datagram.payload.size();
  setup_.push_back({datagram, {datagram.payload.begin(), datagram.payload.end()}, id});
  setup_.back().head.payload = {};
}

bool LiveSource::readFrame(int id, FramePackets &packets, const std::function<bool()> &) {
  return ring_.copy(id, packets);
}

void LiveSource::reportDamage(int id, unsigned packets) {
  counters_.add(InputFault::DamagedPacket, static_cast<std::uint64_t>(id), packets);
}

bool LiveSource::cut(const std::string &path, int first, int last, CutWatch &watch, std::string &error) {
  watch.begin(static_cast<std::uint64_t>(last - first + 1), 1);
  ReplacingFile to;
  std::vector<std::uint8_t> records;
  appendCaptureHead(records, linkTypeEthernet);
  {
    const std::lock_guard lock(setupMutex_);
    for (const Setup &setup : setup_) {
      if (setup.id >= first && setup.id <= last) continue;
      UdpDatagram datagram = setup.head;
      datagram.payload = setup.payload;
      appendDatagram(records, datagram);
    }
  }
  bool good = !watch.givenUp() && to.open(path) && to.append(records);
  for (int id = first; good && id <= last; ++id) {
    records.clear();
    const bool held = ring_.visit(id, [&records](const UdpDatagram &datagram) { appendDatagram(records, datagram); });
    if (!held) {
      error = "Frame " + std::to_string(id) + " has left the memory of the live source.";
      return false;
    }
    good = to.append(records) && watch.advance(1);
  }
  if (good && watch.finish() && to.commit()) return true;
  error = to.error();
  return false;
}

bool LiveSource::startRecord(const std::string &path, std::string &error) {
  if (!recorder_.start(path, error)) return false;
  // Calibration that came before serves the recording too.
  const std::lock_guard lock(setupMutex_);
  for (const Setup &setup : setup_) {
    UdpDatagram datagram = setup.head;
    datagram.payload = setup.payload;
    recorder_.add(datagram);
  }
  return true;
}

void LiveSource::report(CaptureReport &report) const {
  counters_.fill(report);
  census_.fill(report);
  report.oldestFrame = ring_.oldest();
  report.heldBytes = ring_.memoryBytes();
  report.recording = recorder_.report();
}

}  // namespace tarvo::lidar
