#include "runtime/device/device_session.h"

#include <netdb.h>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

#include <cerrno>
#include <chrono>
#include <cstring>
#include <memory>
#include <system_error>

#include "contracts/host/log.h"

namespace tarvo::lidar {

SKARN_LOG_SOURCE("runtime/device_session");

namespace {

using skarnvisor::LogLevel;
constexpr auto connectLimit = std::chrono::seconds(3);
constexpr int pollSliceMs = 50;  // how soon an attempt notices that it is to stop

// Waits for a connect in progress; 0 when it stands, else an errno value.
int awaitConnect(int socket, const std::atomic<bool> &stop) {
  const auto deadline = std::chrono::steady_clock::now() + connectLimit;
  while (!stop.load()) {
    pollfd waited{socket, POLLOUT, 0};
    const int ready = ::poll(&waited, 1, pollSliceMs);
    if (ready < 0 && errno != EINTR) return errno;
    if (ready > 0) {
      int error = 0;
      socklen_t size = sizeof error;
      return ::getsockopt(socket, SOL_SOCKET, SO_ERROR, &error, &size) == 0 ? error : errno;
    }
    if (std::chrono::steady_clock::now() >= deadline) return ETIMEDOUT;
  }
  return ECANCELED;
}

}  // namespace

DeviceSession::~DeviceSession() { close(); }

void DeviceSession::open(const std::string &host, std::uint16_t port) {
  const std::lock_guard lock(mutex_);
  if (connecting_.load() || isConnected()) return;
  if (worker_.joinable()) worker_.join();  // an attempt that has ended
  stop_ = false;
  connecting_ = true;
  try {
    worker_ = std::thread([this, host, port] {
      connectTo(host, port);
      connecting_ = false;
    });
  } catch (const std::system_error &error) {
    connecting_ = false;
    SKARN_LOG(LogLevel::Warning, "Unable to connect to %s port %u: %s", host.c_str(), unsigned(port), error.what());
  }
}

void DeviceSession::close() {
  const std::lock_guard lock(mutex_);
  stop_ = true;
  if (worker_.joinable()) worker_.join();
  const int open = socket_.exchange(-1);
  if (open >= 0) ::close(open);
}

void DeviceSession::connectTo(std::string host, std::uint16_t port) {
  const auto refused = [&](const char *reason) {
    SKARN_LOG(LogLevel::Warning, "Unable to connect to %s port %u: %s", host.c_str(), unsigned(port), reason);
  };
  // Addresses only: looking up a name could hold this thread beyond the limit above.
  addrinfo hints{};
  hints.ai_flags = AI_NUMERICHOST | AI_NUMERICSERV;
  hints.ai_socktype = SOCK_STREAM;
  addrinfo *found = nullptr;
  if (const int error = ::getaddrinfo(host.c_str(), std::to_string(port).c_str(), &hints, &found); error != 0)
    return refused(::gai_strerror(error));
  const std::unique_ptr<addrinfo, decltype(&::freeaddrinfo)> address(found, &::freeaddrinfo);

  const int socket = ::socket(address->ai_family, SOCK_STREAM | SOCK_NONBLOCK | SOCK_CLOEXEC, IPPROTO_TCP);
  if (socket < 0) return refused(std::strerror(errno));
  int error = ::connect(socket, address->ai_addr, address->ai_addrlen) == 0 ? 0 : errno;
  if (error == EINPROGRESS) error = awaitConnect(socket, stop_);
  if (error != 0) {
    ::close(socket);
    if (error != ECANCELED) refused(std::strerror(error));
    return;
  }
  SKARN_LOG(LogLevel::Information, "Connected to %s port %u", host.c_str(), unsigned(port));
  socket_ = socket;
}

}  // namespace tarvo::lidar
