#pragma once

#include <functional>
#include <memory>
#include <vector>

#include "contracts/runtime/decode_params.h"
#include "contracts/runtime/decoded_frame_layout.h"
#include "contracts/runtime/sdk_source.h"
#include "runtime/capture/frame_source.h"
#include "runtime/decode/channel_table.h"
#include "runtime/decode/decode_workers.h"
#include "runtime/decode/point_loan.h"
#include "runtime/filters/filter_chain.h"

namespace tarvo::lidar {

/// Decodes frames into the runtime's decoded frame and hands the result to the source. One thread, the decoder's.
class SceneDecoder {
 public:
  struct Parts {
    SDKSource &source;
    DecodedFrame &frame;
    DecodeParams &params;
    CalibrationStore &calibration;
    const FilterControls &filters;
  };
  /// `decoder` and `description` tell the stream's format and lidar.
  SceneDecoder(Parts parts, const PacketDecoder &decoder, StreamDescription description);

  /// Decodes frames [first, first + count) of `from` as one scene and sets the source's `frameReady`. False when none
  /// of the frames could be read, with the source as it was, or when `stop` ended it, with the source's points gone.
  bool decode(FrameSource &from, int first, int count, const std::function<bool()> &stop);

  /// Collects the packets of the frame behind the last one, when frames were asked for one after the other: the next
  /// decode need not.
  void readAhead(FrameSource &from);

  /// Gives the decoded frame the shape of the stream and room for one frame. Call before the first decode.
  void prepareFrame();

 private:
  bool readPackets(FrameSource &from, int id, const std::function<bool()> &stop);
  bool decodePoints(FrameSource &from, int first, int count, PointLoan &points, DecodedParts &parts,
                    const std::function<bool()> &stop);
  void addFrame(const FrameHead &head, SDKPointInfo *points, DecodedParts &parts);
  void makeRoom(const StreamDescription &shape, int frames);
  void finishFrame(int first, DecodedParts &parts);
  void publish(int first, PointLoan &points, DecodedParts &parts);
  void publishFaults(const DecodedParts &parts);
  void filterFrame(SDKPointInfo *slots);
  void refreshIntensityMap(const CalibrationSnapshot &calibration);
  [[nodiscard]] int affordableFrames(int count);
  void share(std::uint64_t points, const std::function<void(unsigned part, unsigned parts)> &work);

  SDKSource &source_;
  DecodedFrame &frame_;
  DecodeParams &params_;
  CalibrationStore &store_;
  const FilterControls &filterControls_;
  const StreamDescription description_;
  const bool keepsEchoes_;
  std::unique_ptr<FrameDecoder> decoder_;
  DecodeWorkers workers_;
  FramePackets packets_;
  FramePackets ahead_;
  int aheadId_ = -1;      // the frame of ahead_; -1: none
  int lastId_ = -1;       // the newest frame of the last decode
  bool forward_ = false;  // which went on where the one before had ended
  ChannelTable channels_;
  FilterChain filters_;

  // Of the decode in hand.
  FrameDecodeParam use_;
  std::shared_ptr<const CalibrationSnapshot> calibration_;
  StreamDescription shape_;
  int merged_ = 0;
  std::vector<std::uint16_t> intensityMap_;
  std::uint64_t intensityMapGeneration_ = 0;
  bool memoryWarned_ = false;
  bool faultsWarned_ = false;
};

}  // namespace tarvo::lidar
