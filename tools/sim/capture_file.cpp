#include "tools/sim/capture_file.h"

#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <stdexcept>
#include <vector>

namespace tarvo::lidar::sim {
namespace {

using wire::storeLittle;

constexpr std::size_t ethernetSize = 14, ipSize = 20, udpSize = 8;
constexpr std::size_t framingSize = ethernetSize + ipSize + udpSize;
constexpr std::uint16_t sourcePort = 10000;
constexpr std::uint32_t snapLength = 262144;
constexpr std::uint16_t linkEthernet = 1;

void storeBig16(std::uint8_t *at, std::size_t value) noexcept {
  at[0] = static_cast<std::uint8_t>(value >> 8);
  at[1] = static_cast<std::uint8_t>(value);
}

/// Sum of big-endian 16-bit words, an odd last byte padded with zero, as the internet checksum wants it.
std::uint32_t sumWords(std::span<const std::uint8_t> bytes, std::uint32_t sum) noexcept {
  for (std::size_t i = 0; i + 1 < bytes.size(); i += 2) sum += static_cast<std::uint32_t>(bytes[i] << 8 | bytes[i + 1]);
  if (bytes.size() % 2 != 0) sum += static_cast<std::uint32_t>(bytes.back() << 8);
  return sum;
}

std::uint16_t checksum(std::uint32_t sum) noexcept {
  while (sum >> 16 != 0) sum = (sum & 0xFFFF) + (sum >> 16);
  return static_cast<std::uint16_t>(~sum);
}

/// Headers for one datagram from the sensor to everyone on its net.
std::array<std::uint8_t, framingSize> framing(std::span<const std::uint8_t> payload, std::uint16_t port,
                                              std::uint16_t sensorId, std::uint16_t datagram) {
  std::array<std::uint8_t, framingSize> out{};
  std::uint8_t *ethernet = out.data();
  std::fill_n(ethernet, 6, std::uint8_t{0xFF});
  ethernet[6] = 0x02;  // locally administered
  storeBig16(ethernet + 10, sensorId);
  storeBig16(ethernet + 12, 0x0800);

  std::uint8_t *ip = ethernet + ethernetSize;
  ip[0] = 0x45;
  storeBig16(ip + 2, ipSize + udpSize + payload.size());
  storeBig16(ip + 4, datagram);
  ip[6] = 0x40;  // don't fragment
  ip[8] = 64;
  ip[9] = 17;
  const std::uint8_t source[] = {192, 168, 1, static_cast<std::uint8_t>(200 + sensorId % 50)};
  std::copy(std::begin(source), std::end(source), ip + 12);
  std::fill_n(ip + 16, 4, std::uint8_t{0xFF});
  storeBig16(ip + 10, checksum(sumWords({ip, ipSize}, 0)));

  std::uint8_t *udp = ip + ipSize;
  const std::size_t length = udpSize + payload.size();
  storeBig16(udp, sourcePort);
  storeBig16(udp + 2, port);
  storeBig16(udp + 4, length);
  std::uint32_t sum = sumWords({ip + 12, 8}, 17 + static_cast<std::uint32_t>(length));
  sum = sumWords(payload, sumWords({udp, udpSize}, sum));
  const std::uint16_t check = checksum(sum);
  storeBig16(udp + 6, check == 0 ? 0xFFFFu : check);
  return out;
}

}  // namespace

CaptureFile::CaptureFile(std::string path, CaptureForm form, std::uint16_t port, std::uint16_t sensorId)
    : path_(std::move(path)),
      temporary_(path_ + ".part-" + std::to_string(::getpid())),
      form_(form),
      port_(port),
      sensorId_(sensorId),
      file_(std::fopen(temporary_.c_str(), "wb")) {
  if (!file_) fail("create");
  std::setvbuf(file_.get(), nullptr, _IOFBF, 1u << 20);
  writeFileHead();
}

CaptureFile::~CaptureFile() {
  if (file_) {
    file_.reset();
    std::remove(temporary_.c_str());
  }
}

void CaptureFile::fail(const char *action) const {
  throw std::runtime_error(std::string("cannot ") + action + " " + path_ + ": " + std::strerror(errno));
}

void CaptureFile::write(std::span<const std::uint8_t> bytes) {
  if (std::fwrite(bytes.data(), 1, bytes.size(), file_.get()) != bytes.size()) fail("write");
}

void CaptureFile::writeFileHead() {
  if (form_ != CaptureForm::PcapNg) {
    std::array<std::uint8_t, 24> head{};
    storeLittle(head.data(), form_ == CaptureForm::Pcap ? 0xA1B23C4Du : 0xA1B2C3D4u);
    storeLittle(head.data() + 4, std::uint16_t{2});
    storeLittle(head.data() + 6, std::uint16_t{4});
    storeLittle(head.data() + 16, snapLength);
    storeLittle(head.data() + 20, std::uint32_t{linkEthernet});
    write(head);
    return;
  }
  std::array<std::uint8_t, 28> section{};
  storeLittle(section.data(), 0x0A0D0D0Au);
  storeLittle(section.data() + 4, std::uint32_t{section.size()});
  storeLittle(section.data() + 8, 0x1A2B3C4Du);
  storeLittle(section.data() + 12, std::uint16_t{1});
  storeLittle(section.data() + 16, std::int64_t{-1});  // section length not given
  storeLittle(section.data() + 24, std::uint32_t{section.size()});
  write(section);
  std::array<std::uint8_t, 32> link{};
  storeLittle(link.data(), 1u);
  storeLittle(link.data() + 4, std::uint32_t{link.size()});
  storeLittle(link.data() + 8, linkEthernet);
  storeLittle(link.data() + 12, snapLength);
  storeLittle(link.data() + 16, std::uint16_t{9});  // option: resolution of the stamps
  storeLittle(link.data() + 18, std::uint16_t{1});
  link[20] = 9;  // 10 to the power of -9 s; then the end of options
  storeLittle(link.data() + 28, std::uint32_t{link.size()});
  write(link);
}

void CaptureFile::take(std::span<const std::uint8_t> payload, std::uint64_t stampNs) {
  const auto head = framing(payload, port_, sensorId_, datagram_++);
  const auto length = static_cast<std::uint32_t>(head.size() + payload.size());
  if (form_ == CaptureForm::PcapNg) {
    constexpr std::uint32_t fixed = 32;
    const std::uint32_t padding = (4 - length % 4) % 4;
    std::array<std::uint8_t, 28> packet{};
    storeLittle(packet.data(), 6u);
    storeLittle(packet.data() + 4, fixed + length + padding);
    storeLittle(packet.data() + 12, static_cast<std::uint32_t>(stampNs >> 32));
    storeLittle(packet.data() + 16, static_cast<std::uint32_t>(stampNs));
    storeLittle(packet.data() + 20, length);
    storeLittle(packet.data() + 24, length);
    write(packet);
    write(head);
    write(payload);
    std::array<std::uint8_t, 8> tail{};
    storeLittle(tail.data() + padding, fixed + length + padding);
    write(std::span(tail).first(padding + 4));
    return;
  }
  const std::uint64_t fraction = stampNs % 1'000'000'000;
  std::array<std::uint8_t, 16> record{};
  storeLittle(record.data(), static_cast<std::uint32_t>(stampNs / 1'000'000'000));
  storeLittle(record.data() + 4, static_cast<std::uint32_t>(form_ == CaptureForm::Pcap ? fraction : fraction / 1000));
  storeLittle(record.data() + 8, length);
  storeLittle(record.data() + 12, length);
  write(record);
  write(head);
  write(payload);
}

void CaptureFile::finish() {
  if (std::fclose(file_.release()) != 0 || std::rename(temporary_.c_str(), path_.c_str()) != 0) {
    const int reason = errno;
    std::remove(temporary_.c_str());
    errno = reason;
    fail("write");
  }
}

void writeTextFile(const std::string &path, const std::string &text) {
  const std::string temporary = path + ".part-" + std::to_string(::getpid());
  std::FILE *file = std::fopen(temporary.c_str(), "wb");
  bool written = file != nullptr && std::fwrite(text.data(), 1, text.size(), file) == text.size();
  if (file != nullptr) written = std::fclose(file) == 0 && written;
  if (!written || std::rename(temporary.c_str(), path.c_str()) != 0) {
    const std::string reason = std::strerror(errno);
    std::remove(temporary.c_str());
    throw std::runtime_error("cannot write " + path + ": " + reason);
  }
}

}  // namespace tarvo::lidar::sim
