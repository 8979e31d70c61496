#pragma once

#include <atomic>
#include <chrono>
#include <condition_variable>
#include <functional>
#include <mutex>
#include <optional>
#include <thread>

namespace tarvo::lidar {

struct DecodeRequest {
  int first = 0;  ///< frame id
  int count = 0;
};

/// Runs decodes one after the other; of the requests that wait, only the newest counts, and it cuts short the decode in
/// progress.
class DecoderThread {
 public:
  /// `work` is told through its second argument whether to give up. It runs on this object's thread and must not throw
  /// anything but std::exception.
  using Work = std::function<void(const DecodeRequest &, const std::function<bool()> &giveUp)>;

  /// `idle` runs on this object's thread after a request, when no other waits: work that may make the next one shorter.
  DecoderThread(Work work, std::function<void()> idle);
  ~DecoderThread();
  DecoderThread(const DecoderThread &) = delete;
  DecoderThread &operator=(const DecoderThread &) = delete;

  /// Any thread.
  void post(const DecodeRequest &request);
  /// Waits until every request is done, idle work apart; at most `limit`. Any thread but this object's.
  void awaitIdle(std::chrono::milliseconds limit);
  /// Ends the thread; later requests are not run.
  void stop();

 private:
  void serve();

  const Work work_;
  const std::function<void()> idleWork_;
  std::mutex mutex_;  // guards waiting_ and busy_
  std::condition_variable arrived_;
  std::condition_variable idle_;
  std::optional<DecodeRequest> waiting_;
  bool busy_ = false;
  std::atomic<bool> newer_{false};
  std::atomic<bool> stop_{false};
  std::thread thread_;
};

}  // namespace tarvo::lidar
