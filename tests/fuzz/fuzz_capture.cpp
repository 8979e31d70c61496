// The capture reader as a whole: the input is a capture file; its index is built, its frames are read, and all of them
// are cut out again.

#include <sys/mman.h>
#include <unistd.h>

#include <chrono>
#include <string>
#include <thread>

#include "runtime/capture/capture_source.h"

using namespace tarvo::lidar;

namespace {

class Quiet final : public FrameSourceListener {
 public:
  void described(const StreamDescription &, const PacketDecoder &, int) override {}
  void calibrationFound(const CalibrationBlob &) override {}
  void framesGrew() override {}
  void failed(const std::string &) override { over = true; }
  void finished() override { over = true; }
  std::atomic<bool> over{false};
};

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size) {
  static const int file = ::memfd_create("capture", 0);
  static const std::string path = "/proc/self/fd/" + std::to_string(file);
  static const std::string cutPath = "/tmp/skarnvisor-fuzz-" + std::to_string(::getpid()) + ".pcap";
  if (::ftruncate(file, 0) != 0 || ::pwrite(file, data, size, 0) != static_cast<ssize_t>(size)) return 0;
  Quiet listener;
  CaptureSource source(path, 0, listener);
  source.start();
  while (!listener.over) std::this_thread::sleep_for(std::chrono::microseconds(50));
  const int frames = source.index().count();
  FramePackets packets;
  for (int id = 0; id < std::min(frames, 20); ++id) {
    packets.clear();
    (void)source.readFrame(id, packets, [] { return false; });
  }
  std::string error;
  if (frames != 0) (void)source.cut(cutPath, frames / 3, frames - 1, error);
  ::unlink(cutPath.c_str());
  return 0;
}
