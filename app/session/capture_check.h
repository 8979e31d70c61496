#pragma once

#include <QString>

namespace tarvo::skarnvisor::app {

/// Looks at the file before a pipeline is built for it.
/// @return empty if it is a readable capture (pcap or pcapng) with at least one packet, else one sentence for the user
QString captureFault(const QString &path);

/// Whether the path is a folder or by its suffix a file of points (ply, bin, pcd): no capture, whatever it holds.
bool namesPointFiles(const QString &path);

}  // namespace tarvo::skarnvisor::app
