#pragma once

#include <cstdint>
#include <cstdio>
#include <fstream>
#include <span>
#include <string>
#include <vector>

#include "tests/support/test_environment.h"
#include "tools/sim/packet_sink.h"
#include "tools/sim/simulator.h"

namespace tarvo::lidar::test {

using Bytes = std::vector<std::uint8_t>;

inline Bytes operator+(Bytes a, const Bytes &b) {
  a.insert(a.end(), b.begin(), b.end());
  return a;
}
inline Bytes big16(std::size_t v) { return {static_cast<std::uint8_t>(v >> 8), static_cast<std::uint8_t>(v)}; }

inline Bytes udp(const Bytes &payload, std::uint16_t port = 2368) {
  return big16(10000) + big16(port) + big16(8 + payload.size()) + big16(0) + payload;
}
/// `place`: the flags and fragment offset word.
inline Bytes ipv4(const Bytes &body, std::uint16_t place = 0, std::uint16_t id = 7, std::uint8_t protocol = 17) {
  return Bytes{0x45, 0} + big16(20 + body.size()) + big16(id) + big16(place) + Bytes{64, protocol, 0, 0} +
         Bytes{10, 0, 0, 1, 10, 0, 0, 2} + body;
}
inline Bytes ethernet(const Bytes &body, std::uint16_t type = 0x0800) { return Bytes(12, 2) + big16(type) + body; }

/// A capture file, packet by packet. `swapped`: in the other byte order than this machine's.
class CaptureMaker {
 public:
  enum class Form { Micro, Nano, Ng };
  explicit CaptureMaker(Form form = Form::Nano, bool swapped = false, std::uint32_t linkType = 1)
      : form_(form), swapped_(swapped) {
    if (form == Form::Ng) {
      block(0x0A0D0D0A, w32(0x1A2B3C4D) + w16(1) + w16(0) + w32(0xFFFFFFFF) + w32(0xFFFFFFFF));
      block(1, w16(linkType) + w16(0) + w32(0) + w16(9) + w16(1) + Bytes{9, 0, 0, 0} + w16(0) + w16(0));
    } else {
      bytes = w32(form == Form::Nano ? 0xA1B23C4D : 0xA1B2C3D4) + w16(2) + w16(4) + w32(0) + w32(0) + w32(262144) +
              w32(linkType);
    }
  }
  void add(const Bytes &packet, std::uint64_t ns) {
    if (form_ == Form::Ng) {
      const std::size_t pad = (4 - packet.size() % 4) % 4;
      block(6, w32(0) + w32(ns >> 32) + w32(ns) + w32(packet.size()) + w32(packet.size()) + packet + Bytes(pad, 0));
      return;
    }
    const std::uint64_t part = ns % 1'000'000'000;
    bytes = std::move(bytes) + w32(ns / 1'000'000'000) + w32(form_ == Form::Nano ? part : part / 1000) +
            w32(packet.size()) + w32(packet.size());
    bytes.insert(bytes.end(), packet.begin(), packet.end());
  }
  void block(std::uint32_t type, const Bytes &body) {
    bytes = std::move(bytes) + w32(type) + w32(body.size() + 12) + body + w32(body.size() + 12);
  }
  [[nodiscard]] Bytes w32(std::uint64_t v) const { return word(v, 4); }
  [[nodiscard]] Bytes w16(std::uint64_t v) const { return word(v, 2); }

  Bytes bytes;

 private:
  [[nodiscard]] Bytes word(std::uint64_t v, unsigned size) const {
    Bytes out(size);
    for (unsigned i = 0; i < size; ++i) out[swapped_ ? size - 1 - i : i] = static_cast<std::uint8_t>(v >> (8 * i));
    return out;
  }
  Form form_;
  bool swapped_;
};

/// Writes a file into the test's folder and gives its path.
inline std::string writeFile(const std::string &name, const Bytes &bytes) {
  const std::string path = skarnvisor::test::processFolder().toStdString() + "/" + name;
  std::ofstream(path, std::ios::binary)
      .write(reinterpret_cast<const char *>(bytes.data()), static_cast<std::streamsize>(bytes.size()));
  return path;
}

/// Keeps the simulator's packets.
class PacketLog final : public sim::PacketSink {
 public:
  struct Packet {
    Bytes payload;
    std::uint64_t ns;
  };
  void take(std::span<const std::uint8_t> payload, std::uint64_t ns) override {
    packets.push_back({Bytes(payload.begin(), payload.end()), ns});
  }
  void finish() override {}
  std::vector<Packet> packets;
};

/// A small lidar: 16 channels, 60 columns, 10 frames a second.
inline sim::Options smallLidar(unsigned frames = 5) {
  sim::Options options;
  options.channels = 16;
  options.columns = 60;
  options.frames = frames;
  options.threads = 1;
  return options;
}

inline std::vector<PacketLog::Packet> packetsOf(const sim::Options &options) {
  PacketLog log;
  sim::simulate(options, log, sim::captureStartNs);
  return log.packets;
}

inline std::string writeCapture(const std::string &name, const std::vector<PacketLog::Packet> &packets,
                                CaptureMaker maker = CaptureMaker()) {
  for (const auto &packet : packets) maker.add(ethernet(ipv4(udp(packet.payload))), packet.ns);
  return writeFile(name, maker.bytes);
}

}  // namespace tarvo::lidar::test
