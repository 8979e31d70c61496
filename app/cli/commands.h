#pragma once

#include "app/cli/options.h"

namespace tarvo::skarnvisor::app {

class CaptureSession;

/// The commands without a window. Each works on an opened capture, prints its result to standard output and returns an
/// empty string, or one sentence saying why it failed.
QString runInfo(CaptureSession &session, const Options &options);
QString runRender(CaptureSession &session, const Options &options);
QString runPlay(CaptureSession &session, const Options &options);
QString runLivePlay(CaptureSession &session, const Options &options);
QString runConvert(CaptureSession &session, const Options &options);
QString runTelemetry(CaptureSession &session, const Options &options);
/// Work on a source of their own.
QString runCut(const Options &options);
QString runRecord(const Options &options);

}  // namespace tarvo::skarnvisor::app
