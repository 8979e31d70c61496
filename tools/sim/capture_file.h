#pragma once

#include <cstdio>
#include <memory>

#include "tools/sim/options.h"
#include "tools/sim/packet_sink.h"

namespace tarvo::lidar::sim {

/// Writes payloads as Ethernet, IPv4 and UDP frames to a capture file. The file appears under its name when `finish()`
/// has written all of it; without that nothing is left behind.
class CaptureFile final : public PacketSink {
 public:
  /// Throws `std::runtime_error` when the folder cannot be written.
  CaptureFile(std::string path, CaptureForm form, std::uint16_t port, std::uint16_t sensorId);
  ~CaptureFile() override;
  CaptureFile(const CaptureFile &) = delete;
  CaptureFile &operator=(const CaptureFile &) = delete;

  void take(std::span<const std::uint8_t> payload, std::uint64_t stampNs) override;
  void finish() override;

 private:
  struct Close {
    void operator()(std::FILE *file) const noexcept { std::fclose(file); }
  };

  void write(std::span<const std::uint8_t> bytes);
  void writeFileHead();
  [[noreturn]] void fail(const char *action) const;

  std::string path_, temporary_;
  CaptureForm form_;
  std::uint16_t port_, sensorId_;
  std::uint16_t datagram_ = 0;  ///< IPv4 identification
  std::unique_ptr<std::FILE, Close> file_;
};

/// Writes `text` to `path` through a temporary file beside it. Throws `std::runtime_error`.
void writeTextFile(const std::string &path, const std::string &text);

}  // namespace tarvo::lidar::sim
