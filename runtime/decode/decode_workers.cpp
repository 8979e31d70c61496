#include "runtime/decode/decode_workers.h"

#include <algorithm>

namespace tarvo::lidar {

unsigned DecodeWorkers::usefulParts() { return std::clamp(std::thread::hardware_concurrency(), 1U, 4U); }

DecodeWorkers::DecodeWorkers(unsigned parts) {
  for (unsigned part = 1; part < parts; ++part) threads_.emplace_back([this, part] { serve(part); });
}

DecodeWorkers::~DecodeWorkers() {
  {
    const std::lock_guard lock(mutex_);
    stop_ = true;
  }
  begun_.notify_all();
  for (std::thread &thread : threads_) thread.join();
}

void DecodeWorkers::run(const std::function<void(unsigned)> &work) {
  if (!threads_.empty()) {
    const std::lock_guard lock(mutex_);
    work_ = &work;
    running_ = static_cast<unsigned>(threads_.size());
    ++round_;
  }
  begun_.notify_all();
  work(0);
  std::unique_lock lock(mutex_);
  done_.wait(lock, [this] { return running_ == 0; });
}

void DecodeWorkers::serve(unsigned part) {
  std::uint64_t seen = 0;
  std::unique_lock lock(mutex_);
  while (true) {
    begun_.wait(lock, [&] { return stop_ || round_ != seen; });
    if (stop_) return;
    seen = round_;
    const auto *work = work_;
    lock.unlock();
    (*work)(part);
    lock.lock();
    if (--running_ == 0) done_.notify_all();
  }
}

}  // namespace tarvo::lidar
