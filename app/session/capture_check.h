#pragma once

#include <QString>

namespace tarvo::skarnvisor::app {

/// Looks at the file before a pipeline is built for it.
/// @return empty if it is a readable capture (pcap or pcapng) with at least one packet, else one sentence for the user
QString captureFault(const QString &path);

}  // namespace tarvo::skarnvisor::app
