#include "app/session/live_address.h"

namespace tarvo::skarnvisor::app {
namespace {

const QString scheme = QStringLiteral("udp://");

bool isGroup(const QString &address) {
  if (address.contains(':')) return address.startsWith(QStringLiteral("ff"), Qt::CaseInsensitive);
  const int first = address.section('.', 0, 0).toInt();
  return first >= 224 && first <= 239;
}

}  // namespace

bool namesLiveSource(const QString &name) { return name.startsWith(scheme); }

std::optional<LiveOptions> parseLiveAddress(const QString &name) {
  if (!namesLiveSource(name)) return std::nullopt;
  const QString rest = name.mid(scheme.size());
  QString address = rest.section(':', 0, -2);
  // An IPv6 address stands in brackets: its colons are not the port's.
  const bool bracketed = address.startsWith('[') && address.endsWith(']');
  if (bracketed) address = address.mid(1, address.size() - 2);
  if (bracketed != address.contains(':')) return std::nullopt;
  bool good = false;
  const int port = rest.section(':', -1).toInt(&good);
  if (!good || port < 1 || port > 65535 || !rest.contains(':')) return std::nullopt;
  LiveOptions options;
  options.udpPort = static_cast<std::uint16_t>(port);
  (isGroup(address) ? options.multicastGroup : options.bindAddress) = address;
  return options;
}

}  // namespace tarvo::skarnvisor::app
