#include "app/session/live_address.h"

namespace tarvo::skarnvisor::app {
namespace {

const QString scheme = QStringLiteral("udp://");

bool isGroup(const QString &address) {
  const int first = address.section('.', 0, 0).toInt();
  return first >= 224 && first <= 239;
}

}  // namespace

bool namesLiveSource(const QString &name) { return name.startsWith(scheme); }

std::optional<LiveOptions> parseLiveAddress(const QString &name) {
  if (!namesLiveSource(name)) return std::nullopt;
  const QString rest = name.mid(scheme.size());
  const QString address = rest.section(':', 0, -2);
  bool good = false;
  const int port = rest.section(':', -1).toInt(&good);
  if (!good || port < 1 || port > 65535 || !rest.contains(':')) return std::nullopt;
  LiveOptions options;
  options.udpPort = static_cast<std::uint16_t>(port);
  (isGroup(address) ? options.multicastGroup : options.bindAddress) = address;
  return options;
}

}  // namespace tarvo::skarnvisor::app
