#pragma once

#include "tools/sim/options.h"
#include "tools/sim/packet_sink.h"

namespace tarvo::lidar::sim {

/// Start of every capture file, Unix time: 2024-05-14 08:00:00 UTC. A fixed time keeps equal runs equal.
inline constexpr std::uint64_t captureStartNs = 1'715'673'600'000'000'000ull;

/// Makes the frames that `options` ask for and hands their packets to `sink`, the first frame starting at `startNs`.
/// Blocks until the last packet has gone; `sink.finish()` has then been called. Throws what the sink throws.
void simulate(const Options &options, PacketSink &sink, std::uint64_t startNs);

/// All that the program does: captures, streams, corrections, as the options say. Throws `std::runtime_error`.
void run(const Options &options);

}  // namespace tarvo::lidar::sim
