#include "runtime/capture/capture_recorder.h"

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <chrono>
#include <cstring>
#include <utility>

#include "contracts/host/log.h"
#include "runtime/capture/packet_records.h"

SKARN_LOG_SOURCE("runtime/capture");

namespace tarvo::lidar {

namespace {

using skarnvisor::LogLevel;

constexpr std::size_t chunkBytes = 1u << 20;  // the writer is woken for so much, or after flushMs

/// Bytes written before an error, whose number is left in errno; all of them without one.
std::size_t writeAll(int descriptor, std::span<const std::uint8_t> bytes) {
  std::size_t done = 0;
  while (done < bytes.size()) {
    const ssize_t count = ::write(descriptor, bytes.data() + done, bytes.size() - done);
    if (count < 0 && errno == EINTR) continue;
    if (count < 0) break;
    done += static_cast<std::size_t>(count);
  }
  return done;
}

std::string reasonOf(int error) {
  return error == ENOSPC || error == EDQUOT ? "the disk is full" : std::string(std::strerror(error));
}

}  // namespace

CaptureRecorder::~CaptureRecorder() { stop(); }

bool CaptureRecorder::start(const std::string &path, std::string &error) {
  stop();
  const std::lock_guard control(control_);
  descriptor_ = ::open(path.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0644);
  std::vector<std::uint8_t> head;
  appendCaptureHead(head, linkTypeEthernet);
  if (descriptor_ < 0 || writeAll(descriptor_, head) != head.size()) {
    error = "The recording \"" + path + "\" cannot be written: " + reasonOf(errno) + ".";
    if (descriptor_ >= 0) ::close(std::exchange(descriptor_, -1));
    return false;
  }
  path_ = path;
  const std::lock_guard lock(mutex_);
  waiting_.clear();
  waitingPackets_ = 0;
  ending_ = false;
  report_ = {};
  report_.running = true;
  report_.bytes = head.size();
  running_ = true;
  thread_ = std::thread([this] { serve(); });
  return true;
}

void CaptureRecorder::stop() {
  const std::lock_guard control(control_);
  if (!thread_.joinable()) return;
  running_ = false;
  {
    const std::lock_guard lock(mutex_);
    ending_ = true;
  }
  filled_.notify_one();
  thread_.join();
  ::close(std::exchange(descriptor_, -1));
  const std::lock_guard lock(mutex_);
  report_.running = false;
  SKARN_LOG(LogLevel::Notice, "recorded %llu packets to \"%s\", %llu left out",
            static_cast<unsigned long long>(report_.packets), path_.c_str(),
            static_cast<unsigned long long>(report_.missed));
}

void CaptureRecorder::add(const UdpDatagram &datagram) {
  if (!running_.load(std::memory_order_relaxed)) return;
  bool enough = false;
  {
    const std::lock_guard lock(mutex_);
    if (ending_ || !report_.running) return;
    if (waiting_.size() >= queueBytes) {
      if (report_.missed++ == 0)
        SKARN_LOG(LogLevel::Warning, "the disk is too slow for the recording \"%s\", packets are left out",
                  path_.c_str());
      return;
    }
    appendDatagram(waiting_, datagram);
    ++waitingPackets_;
    enough = waiting_.size() >= chunkBytes;
  }
  if (enough) filled_.notify_one();
}

void CaptureRecorder::serve() {
  std::vector<std::uint8_t> records;
  while (true) {
    std::uint64_t packets = 0;
    bool ending = false;
    {
      std::unique_lock lock(mutex_);
      filled_.wait_for(lock, std::chrono::milliseconds(flushMs),
                       [this] { return ending_ || waiting_.size() >= chunkBytes; });
      records.clear();
      records.swap(waiting_);
      packets = std::exchange(waitingPackets_, 0);
      ending = ending_;
    }
    if (!records.empty() && !write(records)) return;
    const std::lock_guard lock(mutex_);
    report_.packets += packets;
    report_.bytes += records.size();
    if (ending && waiting_.empty()) return;
  }
}

bool CaptureRecorder::write(const std::vector<std::uint8_t> &records) {
  const std::size_t written = writeAll(descriptor_, records);
  if (written == records.size()) return true;
  fail(errno, records, written);
  return false;
}

/// Takes the part of a record off the file's end and tells why the recording is over.
void CaptureRecorder::fail(int reason, const std::vector<std::uint8_t> &records, std::size_t written) {
  running_ = false;
  const std::lock_guard lock(mutex_);
  const RecordRun whole = wholeRecords(records, written);
  report_.bytes += whole.bytes;
  report_.packets += whole.records;
  if (::ftruncate(descriptor_, static_cast<off_t>(report_.bytes)) != 0)
    SKARN_LOG(LogLevel::Warning, "\"%s\" ends inside a packet: %s", path_.c_str(), std::strerror(errno));
  report_.running = false;
  report_.fault =
      "The recording \"" + path_ + "\" has ended: " + reasonOf(reason) + ". What was written until then can be read.";
  SKARN_LOG(LogLevel::Error, "%s", report_.fault.c_str());
}

RecordingReport CaptureRecorder::report() const {
  const std::lock_guard lock(mutex_);
  return report_;
}

}  // namespace tarvo::lidar
