#pragma once

#include <cstdint>
#include <map>
#include <mutex>
#include <span>
#include <string>
#include <vector>

namespace tarvo::lidar {

/// How packets of one interface of a capture are to be read.
struct CaptureInterface {
  std::uint64_t offset = 0;    ///< of the block that describes it, in the file
  std::uint32_t linkType = 0;  ///< LINKTYPE number
  std::uint64_t ticksPerSecond = 1'000'000;
  std::int64_t offsetSeconds = 0;  ///< added to every stamp
};

/// A run of the file with one byte order and one list of interfaces. A classic pcap is one section with one interface.
struct CaptureSection {
  std::uint64_t offset = 0;
  bool swapped = false;  ///< numbers are in the other byte order than ours
  std::vector<CaptureInterface> interfaces;
};

/// A pcap or pcapng file, opened for reading by position. libpcap judges whether it is a capture at all; records are
/// read by `RecordCursor`, which needs to start anywhere. All operations after `open` may be called from any thread.
class CaptureFile {
 public:
  enum class Form { Pcap, PcapNg };

  CaptureFile() = default;
  ~CaptureFile();
  CaptureFile(const CaptureFile &) = delete;
  CaptureFile &operator=(const CaptureFile &) = delete;

  /// False, with one sentence for the user in `error`, when `path` (local 8-bit) is no readable capture.
  bool open(const std::string &path, std::string &error);

  [[nodiscard]] Form form() const { return form_; }
  [[nodiscard]] std::uint64_t size() const { return size_; }
  [[nodiscard]] std::uint64_t firstRecord() const { return firstRecord_; }

  /// Whether `path` names this very file.
  [[nodiscard]] bool isAt(const std::string &path) const;

  /// Bytes read into `to` from `offset` on; fewer than asked only at the end of the file or after a read error.
  [[nodiscard]] std::size_t read(std::uint64_t offset, std::span<std::uint8_t> to) const;

  /// The section at `offset` with the interfaces that are described before it, as far as cursors have walked.
  [[nodiscard]] CaptureSection sectionAt(std::uint64_t offset) const;
  /// A cursor reports what it met on its way; repeats are ignored.
  void noteSection(const CaptureSection &section);
  void noteInterface(std::uint64_t sectionOffset, const CaptureInterface &description);

 private:
  int descriptor_ = -1;
  Form form_ = Form::Pcap;
  std::uint64_t size_ = 0;
  std::uint64_t firstRecord_ = 0;
  mutable std::mutex mutex_;                          // guards sections_
  std::map<std::uint64_t, CaptureSection> sections_;  // by offset
};

}  // namespace tarvo::lidar
