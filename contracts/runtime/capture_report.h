#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace tarvo::lidar {

// A sensor whose packets a source holds.
struct CaptureSensor {
  int port = 0;      // UDP port that it sends to
  std::string type;  // lidar type string; empty while none of its packets told
  std::uint64_t packets = 0;
  bool shown = false;  // the one that the frames come from
};

// A stretch without frames, longer than two periods.
struct CaptureGap {
  int afterFrame = 0;  // id of the last frame in front of it
  double seconds = 0;  // from that frame's start to the next one's
};

struct RecordingReport {
  bool running = false;
  std::uint64_t packets = 0;  // written
  std::uint64_t bytes = 0;    // size of the file
  std::uint64_t missed = 0;   // left out because the disk was too slow
  std::string fault;          // why it ended by itself, one sentence for the user; empty: it did not
};

// What a source met between cable or file and frame, counted from its start. A copy, taken at one moment.
struct CaptureReport {
  bool complete = false;               // a capture file: no more of it will be looked through
  double share = 0;                    // of a capture file, as far as it has been looked through, 0 to 1
  bool stoppedShort = false;           // the looking through was ended before the end of the file
  std::uint64_t packets = 0;           // of the shown sensor
  std::uint64_t lost = 0;              // missing by their numbers, whoever lost them
  std::uint64_t kernelDrops = 0;       // of a live source: thrown away by this machine because nobody read them in time
  std::uint64_t disordered = 0;        // came behind a later one
  std::uint64_t repeated = 0;          // came twice
  std::uint64_t late = 0;              // of a frame that was over
  std::uint64_t damaged = 0;           // contradict themselves
  std::uint64_t foreign = 0;           // of other sensors
  std::uint64_t unreadable = 0;        // cut, of an unknown link type or interface, or with a fragment missing
  std::uint64_t clockJumps = 0;        // of the sensor's clock, forward or back
  std::uint64_t shapeChanges = 0;      // frames with other numbers of columns, channels or returns than the one before
  bool truncated = false;              // the file ends inside a record, or cannot be read to its end
  std::vector<CaptureSensor> sensors;  // by port
  std::uint64_t gapCount = 0;
  std::vector<CaptureGap> gaps;  // the first ones
  int oldestFrame = 0;           // frames below it have left a live source's memory
  std::uint64_t heldBytes = 0;   // memory of the packets that a live source keeps
  RecordingReport recording;
};

}  // namespace tarvo::lidar
