#pragma once

#include <QStringList>

#include "app/cli/report.h"

namespace tarvo::skarnvisor::app {

class CaptureSession;

/// The files that an opened folder of point files plays, or the one that was opened, in the order of time; empty for
/// any other source.
QStringList pointFilesOf(CaptureSession &session);

/// Kind and number of the files, time span and duration where their names tell a time.
void addPointFileRows(Report &report, CaptureSession &session, const QStringList &files);

/// Bytes that they take together.
qint64 sizeOf(const QStringList &files);

}  // namespace tarvo::skarnvisor::app
