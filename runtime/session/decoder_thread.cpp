#include "runtime/session/decoder_thread.h"

#include <utility>

namespace tarvo::lidar {

DecoderThread::DecoderThread(Work work, std::function<void()> idle)
    : work_(std::move(work)), idleWork_(std::move(idle)), thread_([this] { serve(); }) {}

DecoderThread::~DecoderThread() { stop(); }

void DecoderThread::post(const DecodeRequest &request) {
  {
    const std::lock_guard lock(mutex_);
    waiting_ = request;
    newer_ = true;
  }
  arrived_.notify_one();
}

void DecoderThread::awaitIdle(std::chrono::milliseconds limit) {
  std::unique_lock lock(mutex_);
  idle_.wait_for(lock, limit, [this] { return !busy_ && !waiting_; });
}

void DecoderThread::stop() {
  {
    const std::lock_guard lock(mutex_);
    stop_ = true;
  }
  arrived_.notify_one();
  if (thread_.joinable()) thread_.join();
}

void DecoderThread::serve() {
  const std::function<bool()> giveUp = [this] { return stop_.load() || newer_.load(); };
  while (true) {
    DecodeRequest request;
    {
      std::unique_lock lock(mutex_);
      arrived_.wait(lock, [this] { return stop_.load() || waiting_.has_value(); });
      if (stop_) return;
      request = *waiting_;
      waiting_.reset();
      newer_ = false;
      busy_ = true;
    }
    work_(request, giveUp);
    {
      const std::lock_guard lock(mutex_);
      busy_ = false;
    }
    idle_.notify_all();
    if (!giveUp()) idleWork_();
  }
}

}  // namespace tarvo::lidar
