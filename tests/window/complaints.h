#pragma once

#include <QString>

namespace tarvo::skarnvisor::test {

/// From now on keeps what Qt and the QML files warn of, beside printing it.
void collectComplaints();

/// The warnings since the last call, one a line; empty if there was none. Any thread.
QString takeComplaints();

}  // namespace tarvo::skarnvisor::test
