#pragma once

#include <string>

#include "contracts/runtime/capture_report.h"
#include "contracts/runtime/decode_params.h"
#include "contracts/runtime/decoded_frame_layout.h"

namespace tarvo::lidar {

// Frames of the source: finding and decoding them. Frame ids start at 0; times are seconds since the epoch.
class FrameRole {
 public:
  virtual ~FrameRole() = default;
  // Starts a decode of the window or the run of frames and returns within a few milliseconds; true: frameReady of the
  // source will follow, or is there already.
  // False: nothing to do, also for a window or run that holds no frame.
  virtual bool Iterate(double begin, double end) = 0;
  virtual bool Iterate(int first, int count) = 0;
  // Frame under a time; negative: none.
  [[nodiscard]] virtual int FindFrameId(double seconds) const = 0;
  // Valid while HasPreParser is true; grows while the capture is being indexed.
  [[nodiscard]] virtual int GetFrameCount() const = 0;
  [[nodiscard]] virtual double GetFrameStartSeconds(int frame) const = 0;
  [[nodiscard]] virtual bool HasPreParser() const = 0;
  // The single current frame; never freed by the caller, lives as long as the runtime. Null before a start.
  [[nodiscard]] virtual DecodedFrame *DecodeFrame() = 0;

  // Decode parameters with their lock; see DecodeParams.
  [[nodiscard]] virtual DecodeParams &Params() = 0;
  [[nodiscard]] FrameDecodeParam *FrameParam() { return Params().live(); }
  // Sets the default grid of the 2D remake.
  virtual void ApplyRemakeDefaultConfig() = 0;
};

// Writing captures. Paths in the local 8-bit code page.
class CaptureRole {
 public:
  virtual ~CaptureRole() = default;
  // True: the file was written whole. Times in seconds; frames by first and last id, both included.
  virtual bool CutPcap(const std::string &path, double begin, double end) = 0;
  virtual bool CutPcap(const std::string &path, int first, int last) = 0;
  virtual bool StartRecordPcap(const std::string &path) = 0;
  virtual void StopRecordPcap() = 0;
  virtual void SetStopRecv(bool stop) = 0;
  [[nodiscard]] virtual CaptureReport GetCaptureReport() const { return {}; }
  // Why the last cut or start of a recording failed, one sentence for the user; empty when it did not.
  [[nodiscard]] virtual std::string CaptureError() const { return {}; }
};

}  // namespace tarvo::lidar
