#include "runtime/capture/capture_file.h"

#include <fcntl.h>
#include <pcap/pcap.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <bit>
#include <cerrno>
#include <cstring>
#include <memory>

#include "contracts/host/log.h"

SKARN_LOG_SOURCE("runtime/capture");

namespace tarvo::lidar {

namespace {

constexpr std::uint32_t pcapMagicMicro = 0xA1B2C3D4;
constexpr std::uint32_t pcapMagicNano = 0xA1B23C4D;
constexpr std::uint32_t pcapNgSectionBlock = 0x0A0D0D0A;  // reads the same in both byte orders
constexpr std::size_t pcapHeaderSize = 24;
constexpr std::uint64_t nanoPerSecond = 1'000'000'000;
constexpr std::uint64_t microPerSecond = 1'000'000;
constexpr std::uint32_t linkTypeMask = 0x03FFFFFF;  // the bits above tell the length of a frame check sequence

std::string quoted(const std::string &path) { return "\"" + path + "\""; }

/// Asks libpcap; empty when it takes the file.
std::string libraryVerdict(const std::string &path) {
  std::array<char, PCAP_ERRBUF_SIZE> reason{};
  const std::unique_ptr<pcap_t, void (*)(pcap_t *)> handle(
      pcap_open_offline_with_tstamp_precision(path.c_str(), PCAP_TSTAMP_PRECISION_NANO, reason.data()), [](pcap_t *p) {
        if (p != nullptr) pcap_close(p);
      });
  if (handle) return {};
  const std::string text = reason.data();
  return text.empty() ? "unreadable header" : text;
}

}  // namespace

CaptureFile::~CaptureFile() {
  if (descriptor_ >= 0) ::close(descriptor_);
}

bool CaptureFile::open(const std::string &path, std::string &error) {
  // A pipe that nobody writes to would hold up the opening, and with it the end of the program.
  descriptor_ = ::open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK);
  if (descriptor_ < 0) {
    error = errno == ENOENT || errno == ENOTDIR
                ? "There is no file " + quoted(path) + "."
                : "The file " + quoted(path) + " cannot be opened: " + std::strerror(errno) + ".";
    return false;
  }
  struct stat status {};
  if (::fstat(descriptor_, &status) != 0 || !S_ISREG(status.st_mode)) {
    error = quoted(path) + " is not a file; a capture in pcap or pcapng form was expected.";
    return false;
  }
  size_ = static_cast<std::uint64_t>(status.st_size);
  if (size_ == 0) {
    error = "The file " + quoted(path) + " is empty; a capture in pcap or pcapng form was expected.";
    return false;
  }
  std::array<std::uint8_t, pcapHeaderSize> head{};
  const std::size_t got = read(0, head);
  std::array<std::uint32_t, pcapHeaderSize / 4> words{};
  std::memcpy(words.data(), head.data(), sizeof words);
  const std::uint32_t magic = words[0];
  const bool swapped = magic == __builtin_bswap32(pcapMagicMicro) || magic == __builtin_bswap32(pcapMagicNano);
  const std::uint32_t straight = swapped ? __builtin_bswap32(magic) : magic;
  const bool classic = straight == pcapMagicMicro || straight == pcapMagicNano;
  const std::string verdict = classic || magic == pcapNgSectionBlock ? libraryVerdict(path) : "unknown file form";
  if (!verdict.empty() || (classic && got < pcapHeaderSize)) {
    error = "The file " + quoted(path) + " is not a capture in pcap or pcapng form (" +
            (verdict.empty() ? "cut header" : verdict) + ").";
    return false;
  }
  if (!classic) {
    form_ = Form::PcapNg;
    return true;
  }
  form_ = Form::Pcap;
  firstRecord_ = pcapHeaderSize;
  CaptureInterface only;
  only.linkType = (swapped ? __builtin_bswap32(words[5]) : words[5]) & linkTypeMask;
  only.ticksPerSecond = straight == pcapMagicNano ? nanoPerSecond : microPerSecond;
  noteSection({0, swapped, {only}});
  return true;
}

bool CaptureFile::isAt(const std::string &path) const {
  struct stat own {};
  struct stat other {};
  return ::fstat(descriptor_, &own) == 0 && ::stat(path.c_str(), &other) == 0 && own.st_dev == other.st_dev &&
         own.st_ino == other.st_ino;
}

std::size_t CaptureFile::read(std::uint64_t offset, std::span<std::uint8_t> to) const {
  std::size_t done = 0;
  while (done < to.size()) {
    const ssize_t got = ::pread(descriptor_, to.data() + done, to.size() - done, static_cast<off_t>(offset + done));
    if (got < 0 && errno == EINTR) continue;
    if (got < 0)
      SKARN_LOG(skarnvisor::LogLevel::Error, "cannot read the capture at %llu: %s",
                static_cast<unsigned long long>(offset + done), std::strerror(errno));
    if (got <= 0) break;
    done += static_cast<std::size_t>(got);
  }
  return done;
}

CaptureSection CaptureFile::sectionAt(std::uint64_t offset) const {
  const std::lock_guard lock(mutex_);
  auto after = sections_.upper_bound(offset);
  if (after == sections_.begin()) return {};
  CaptureSection section = std::prev(after)->second;
  if (form_ == Form::PcapNg)
    std::erase_if(section.interfaces, [offset](const CaptureInterface &i) { return i.offset >= offset; });
  return section;
}

void CaptureFile::noteSection(const CaptureSection &section) {
  const std::lock_guard lock(mutex_);
  sections_.try_emplace(section.offset, section);
}

void CaptureFile::noteInterface(std::uint64_t sectionOffset, const CaptureInterface &description) {
  const std::lock_guard lock(mutex_);
  auto &known = sections_[sectionOffset].interfaces;
  if (known.empty() || known.back().offset < description.offset) known.push_back(description);
}

}  // namespace tarvo::lidar
