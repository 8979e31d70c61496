#pragma once

#include <functional>
#include <optional>
#include <string>

#include "contracts/runtime/capture_report.h"
#include "runtime/capture/cut_watch.h"
#include "runtime/capture/frame_index.h"
#include "runtime/decode/packet_decoder.h"

namespace tarvo::lidar {

/// What a source tells while it finds its frames. Called on the source's own thread.
class FrameSourceListener {
 public:
  virtual ~FrameSourceListener() = default;
  /// The lidar is known; once, before the first `framesGrew`.
  virtual void described(const StreamDescription &description, const PacketDecoder &decoder, int port) = 0;
  virtual void calibrationFound(const CalibrationBlob &blob) = 0;
  /// The index has more frames than before.
  virtual void framesGrew() = 0;
  /// The source cannot give a single frame; `reason` is one sentence for the user. Nothing follows.
  virtual void failed(const std::string &reason) = 0;
  /// Nothing more will come.
  virtual void finished() = 0;
};

/// Where frames come from: a capture file, or (with the live receiver) a socket.
class FrameSource {
 public:
  virtual ~FrameSource() = default;
  /// Ends the source's thread; the listener is not called any more when this returns. Its owner calls it before it lets
  /// go.
  virtual void stop() = 0;
  /// Frames found so far; any thread.
  [[nodiscard]] virtual const FrameIndex &index() const = 0;
  /// Collects the packets of a frame; false when there is no such frame (any more). `stop` is asked now and then and
  /// ends the reading with false. Decoder thread.
  virtual bool readFrame(int id, FramePackets &packets, const std::function<bool()> &stop) = 0;
  /// The decode of a frame met damaged packets.
  virtual void reportDamage(int id, unsigned packets) = 0;
  /// Frames below this id have left the source's memory.
  [[nodiscard]] virtual int oldest() const { return 0; }
  /// Writes frames `first` to `last`, which the source has, to a capture of their own. False, with one sentence for the
  /// user in `error`; false also when the watch gave it up. What was at `path` is then as it was. Paths in the local
  /// 8-bit code page; any thread.
  virtual bool cut(const std::string &path, int first, int last, CutWatch &watch, std::string &error) = 0;
  /// Writes everything that arrives from now on to a capture. False, likewise.
  virtual bool startRecord(const std::string &path, std::string &error) = 0;
  virtual void stopRecord() {}
  /// Off: a live source lets go what arrives; a capture ends the looking through, and keeps the frames found so far.
  virtual void setReceiving(bool /*on*/) {}
  /// Fills what the source knows of `report`; any thread.
  virtual void report(CaptureReport &report) const = 0;
};

}  // namespace tarvo::lidar
