#pragma once

#include <condition_variable>
#include <functional>
#include <mutex>
#include <thread>
#include <vector>

namespace tarvo::lidar {

/// A few threads of the decoder's own that share one piece of work with the caller.
class DecodeWorkers {
 public:
  /// `parts` at least 1: the caller and parts - 1 threads.
  explicit DecodeWorkers(unsigned parts);
  ~DecodeWorkers();
  DecodeWorkers(const DecodeWorkers &) = delete;
  DecodeWorkers &operator=(const DecodeWorkers &) = delete;

  [[nodiscard]] unsigned parts() const { return static_cast<unsigned>(threads_.size()) + 1; }
  /// Runs work(part) for every part from 0, part 0 on the calling thread, and returns when all are done. One caller at
  /// a time; `work` must not throw.
  void run(const std::function<void(unsigned part)> &work);

  /// As many parts as the machine's memory bandwidth feeds.
  [[nodiscard]] static unsigned usefulParts();

 private:
  void serve(unsigned part);

  std::mutex mutex_;  // guards every member below but the threads
  std::condition_variable begun_;
  std::condition_variable done_;
  const std::function<void(unsigned)> *work_ = nullptr;
  std::uint64_t round_ = 0;
  unsigned running_ = 0;
  bool stop_ = false;
  std::vector<std::thread> threads_;
};

}  // namespace tarvo::lidar
