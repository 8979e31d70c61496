#pragma once

#include <QString>
#include <optional>

#include "host/core/host_core.h"

namespace tarvo::skarnvisor::app {

/// Whether a source is named as a live one: "udp://...".
bool namesLiveSource(const QString &name);

/// "udp://:2368" for every interface, "udp://192.168.1.20:2368" for the one with that address,
/// "udp://239.1.1.1:2368" for a multicast group, "udp://[ff02::1]:2368" likewise in IPv6. None for anything else.
std::optional<LiveOptions> parseLiveAddress(const QString &name);

}  // namespace tarvo::skarnvisor::app
