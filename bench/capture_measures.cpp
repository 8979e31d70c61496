// Captures as they come: index and cut of half a gigabyte, and a live source on loopback.

#include <arpa/inet.h>
#include <fcntl.h>
#include <netinet/in.h>
#include <sys/mman.h>
#include <sys/socket.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <numeric>
#include <stdexcept>
#include <thread>
#include <vector>

#include "bench/measure.h"
#include "contracts/runtime/parallel_isp_engine.h"
#include "contracts/runtime/runtime_factory.h"
#include "contracts/runtime/sv_sdk_runtime.h"
#include "runtime/wire/format.h"
#include "tools/sim/packet_sink.h"
#include "tools/sim/simulator.h"

namespace tarvo::skarnvisor::bench {

namespace {

using Clock = std::chrono::steady_clock;
using Packet = std::vector<std::uint8_t>;

constexpr std::size_t captureBytes = 500'000'000;
constexpr std::uint64_t frameNs = 100'000'000;

class PacketLog final : public lidar::sim::PacketSink {
 public:
  void take(std::span<const std::uint8_t> payload, std::uint64_t) override {
    packets.emplace_back(payload.begin(), payload.end());
  }
  void finish() override {}
  std::vector<Packet> packets;
};

/// The packets of a few frames, which `renumber` turns into as many as are wanted.
std::vector<Packet> somePackets(unsigned columns, unsigned frames) {
  lidar::sim::Options options;
  options.channels = 128;
  options.columns = columns;
  options.frames = frames;
  PacketLog log;
  lidar::sim::simulate(options, log, lidar::sim::captureStartNs);
  return log.packets;
}

template <class Value>
void patch(Packet &packet, std::size_t at, Value value) {
  std::memcpy(packet.data() + at, &value, sizeof value);
}

/// Makes the packet that of a later round through the frames.
void renumber(Packet &packet, unsigned frame, std::uint32_t sequence, std::uint64_t firstNs) {
  patch(packet, lidar::wire::header_offset::sequence, sequence);
  patch(packet, lidar::wire::header_offset::frame, frame);
  patch(packet, lidar::wire::header_offset::frameTimeNs, firstNs + frame * frameNs);
}

std::string temporary(const char *name) {
  const char *shared = "/dev/shm";
  const auto folder = std::filesystem::exists(shared) && std::filesystem::space(shared).available > 4 * captureBytes
                          ? std::filesystem::path(shared)
                          : std::filesystem::temp_directory_path();
  return (folder / ("skarnvisor-" + std::to_string(::getpid()) + name)).string();
}

/// A nanosecond pcap of `captureBytes`, gone with this object.
struct BigCapture {
  std::string path = temporary("-big.pcap");
  std::string cutPath = temporary("-cut.pcap");

  BigCapture() {
    constexpr unsigned frames = 8;
    auto packets = somePackets(1800, frames);
    std::ofstream file(path, std::ios::binary);
    const std::uint32_t head[6] = {0xA1B23C4D, 0x00040002, 0, 0, 262'144, 1};
    file.write(reinterpret_cast<const char *>(head), sizeof head);
    std::uint8_t framing[42] = {};
    framing[12] = 0x08;
    framing[14] = 0x45;
    framing[23] = 17;
    framing[36] = 0x09;
    framing[37] = 0x40;
    std::size_t size = sizeof head;
    std::uint32_t sequence = 0;
    for (unsigned round = 0; size < captureBytes; ++round)
      for (Packet &packet : packets) {
        const unsigned frame = lidar::wire::parseHeader(packet)->frame % frames + round * frames;
        renumber(packet, frame, sequence++, lidar::sim::captureStartNs);
        const std::uint64_t ns = lidar::sim::captureStartNs + frame * frameNs;
        const auto length = static_cast<std::uint32_t>(sizeof framing + packet.size());
        const std::uint32_t record[4] = {static_cast<std::uint32_t>(ns / 1'000'000'000),
                                         static_cast<std::uint32_t>(ns % 1'000'000'000), length, length};
        file.write(reinterpret_cast<const char *>(record), sizeof record);
        file.write(reinterpret_cast<const char *>(framing), sizeof framing);
        file.write(reinterpret_cast<const char *>(packet.data()), static_cast<std::streamsize>(packet.size()));
        size += sizeof record + length;
      }
    if (!file.flush()) throw std::runtime_error("no room for the capture " + path);
  }
  ~BigCapture() {
    std::filesystem::remove(path);
    std::filesystem::remove(cutPath);
  }
};

QSharedPointer<SDKSource> indexed(const std::string &path) {
  auto source = createSdkSource();
  source->driverParam.sourceKind = static_cast<std::int32_t>(SourceKind::CaptureFile);
  source->driverParam.capturePath = path;
  source->runtime->Init(source->driverParam);
  while (!source->runtime->GetCaptureReport().complete) std::this_thread::sleep_for(std::chrono::microseconds(200));
  return source;
}

/// The least that any index pass does: touch each record's head, and each byte once.
void walkMap(const std::string &path) {
  const int file = ::open(path.c_str(), O_RDONLY | O_CLOEXEC);
  const auto size = static_cast<std::size_t>(std::filesystem::file_size(path));
  void *const map = ::mmap(nullptr, size, PROT_READ, MAP_PRIVATE | MAP_POPULATE, file, 0);
  ::close(file);
  if (map == MAP_FAILED) throw std::runtime_error("the capture cannot be mapped");
  const auto *bytes = static_cast<const std::uint8_t *>(map);
  std::uint64_t sum = 0;
  for (std::size_t at = 24; at + 16 <= size;) {
    std::uint32_t length;
    std::memcpy(&length, bytes + at + 8, sizeof length);
    const std::uint8_t *word = bytes + at + 16;
    for (std::uint32_t i = 0; i + 8 <= length; i += 8, word += 8) {
      std::uint64_t value;
      std::memcpy(&value, word, sizeof value);
      sum += value;
    }
    at += 16 + length;
  }
  volatile std::uint64_t kept = sum;
  (void)kept;
  ::munmap(map, size);
}

void copyFile(const std::string &from, const std::string &to) {
  std::vector<char> window(1u << 20);
  const int source = ::open(from.c_str(), O_RDONLY | O_CLOEXEC);
  const int target = ::open(to.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0644);
  for (ssize_t count = 0; (count = ::read(source, window.data(), window.size())) > 0;)
    if (::write(target, window.data(), static_cast<std::size_t>(count)) != count) break;
  ::close(target);
  ::close(source);
}

// ---- live_receive
// ----------------------------------------------------------------------------------------------------

constexpr std::uint16_t livePort = 23'681;
constexpr unsigned liveColumns = 3'125;  // with 128 channels and 10 frames a second: 4 million points a second

/// The second process: frames in real time, their packets spread over the frame as a lidar sends them.
[[noreturn]] void sendFrames(std::vector<Packet> packets, unsigned frames, unsigned count) {
  const int socket = ::socket(AF_INET, SOCK_DGRAM, 0);
  sockaddr_in to{};
  to.sin_family = AF_INET;
  to.sin_port = htons(livePort);
  to.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
  const auto start = Clock::now();
  const double perFrame = static_cast<double>(packets.size()) / frames;
  std::uint32_t sequence = 0;
  for (unsigned sent = 0; sent < count; sent += frames)
    for (Packet &packet : packets) {
      const unsigned frame = lidar::wire::parseHeader(packet)->frame % frames + sent;
      renumber(packet, frame, sequence, lidar::sim::captureStartNs);
      const double due = static_cast<double>(sequence++) / perFrame * static_cast<double>(frameNs);
      // A lidar has a small buffer of its own: packets leave in runs of a millisecond.
      const auto when = start + std::chrono::milliseconds(static_cast<std::int64_t>(due / 1e6));
      if (Clock::now() < when) std::this_thread::sleep_until(when);
      ::sendto(socket, packet.data(), packet.size(), 0, reinterpret_cast<const sockaddr *>(&to), sizeof to);
    }
  ::_exit(0);
}

long residentKib() {
  std::ifstream file("/proc/self/statm");
  long total = 0;
  long resident = 0;
  file >> total >> resident;
  return resident * (::sysconf(_SC_PAGESIZE) / 1024);
}

bool receiveLive() {
  const char *wanted = std::getenv("SKARN_LIVE_SECONDS");
  const int seconds = wanted != nullptr ? std::atoi(wanted) : 60;
  constexpr unsigned frames = 4;
  auto packets = somePackets(liveColumns, frames);
  auto source = createSdkSource();
  source->driverParam.liveUdpPort = livePort;
  if (!source->runtime->Init(source->driverParam)) {
    std::fprintf(stderr, "live_receive: %s\n", source->runtime->InitError().c_str());
    return false;
  }
  const pid_t child = ::fork();
  if (child == 0) sendFrames(std::move(packets), frames, static_cast<unsigned>(seconds) * 10);
  packets = {};
  long filled = 0;
  for (int second = 0; second <= seconds; ++second) {
    std::this_thread::sleep_for(std::chrono::seconds(1));
    // By then the ring is full.
    if (second == std::min(20, seconds / 2)) filled = residentKib();
  }
  ::waitpid(child, nullptr, 0);
  const lidar::CaptureReport report = source->runtime->GetCaptureReport();
  const double points = static_cast<double>(source->runtime->GetFrameCount()) * 128 * liveColumns;
  std::printf(
      "%-26s %10.2f million points a second for %d s, %llu packets, %llu lost, %llu of them in the kernel, "
      "memory %ld MiB after 20 s, %ld MiB at the end\n",
      "live_receive", points / seconds / 1e6, seconds, static_cast<unsigned long long>(report.packets),
      static_cast<unsigned long long>(report.lost), static_cast<unsigned long long>(report.kernelDrops), filled / 1024,
      residentKib() / 1024);
  return report.packets != 0;
}

}  // namespace

void addCaptureMeasures(std::vector<Measure> &measures) {
  measures.push_back({"index_capture", "500 MB in page cache; floor: a memory map walked, its bytes summed", [] {
                        auto capture = std::make_shared<BigCapture>();
                        return Bodies{[capture] { indexed(capture->path); }, [capture] { walkMap(capture->path); }};
                      }});
  measures.push_back({"cut_capture", "500 MB; floor: copying the same bytes", [] {
                        auto capture = std::make_shared<BigCapture>();
                        auto source = indexed(capture->path);
                        const int last = source->runtime->GetFrameCount() - 1;
                        return Bodies{[=] { source->runtime->CutPcap(capture->cutPath, 0, last); },
                                      [=] { copyFile(capture->path, capture->cutPath); }};
                      }});
  measures.push_back({"live_receive", "", {}, receiveLive});
}

}  // namespace tarvo::skarnvisor::bench
