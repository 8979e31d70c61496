#pragma once

#include <QString>
#include <string>

namespace tarvo::skarnvisor {

/// A path as the runtime and the log take it: in the local 8-bit code page.
inline std::string localPath(const QString &path) { return path.toLocal8Bit().toStdString(); }

/// Logs a calibration file that could not be taken in or written, at level 8; `format` names it with one %s. Returns
/// false, as the operation does. Any thread.
bool refuseFile(const char *format, const QString &path);

}  // namespace tarvo::skarnvisor
