#pragma once

#include <QString>
#include <functional>
#include <string>

namespace tarvo::lidar {
class SvSdkRuntime;
}

namespace tarvo::skarnvisor::app {

/// "cut" and "record" need a runtime, and neither plug-in nor picture: what both wait for.

QString fromRuntime(const std::string &text);

/// Looks every now and then until `done`; false when the user interrupted.
bool waitUntil(const std::function<bool()> &done);

/// Waits until the runtime knows its lidar. An empty string, or why it never will; `silence`, if there is any, is said
/// when nothing came for `silenceLimitMs`.
QString waitForLidar(const lidar::SvSdkRuntime &runtime, const QString &silence = {});

inline constexpr qint64 silenceLimitMs = 30'000;

}  // namespace tarvo::skarnvisor::app
