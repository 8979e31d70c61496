#pragma once

#include <cstddef>
#include <list>
#include <vector>

#include "runtime/capture/udp_dissector.h"

namespace tarvo::lidar {

/// Joins IP fragments. Holds a bounded number of unfinished datagrams and gives the oldest up for a new one. One
/// thread.
class FragmentJoiner {
 public:
  static constexpr std::size_t openLimit = 16;
  static constexpr std::uint32_t payloadLimit = 65'535;

  enum class Result { Incomplete, Complete, Refused };

  /// `recordOffset` and `recordEnd` place the fragment in the file. Complete: `datagram` is filled, its payload valid
  /// until the next call. Refused: the fragment is too long or overlaps another one of its datagram, which is given up.
  Result add(const IpFragment &fragment, std::uint64_t recordOffset, std::uint64_t recordEnd, UdpDatagram &datagram);

  /// Unfinished datagrams that were given up since the last call.
  [[nodiscard]] std::uint64_t takeAbandoned();
  [[nodiscard]] bool idle() const { return open_.empty(); }

 private:
  struct Part {
    std::uint32_t begin;
    std::uint32_t end;
  };
  struct Open {
    IpAddress sourceAddress;
    IpAddress destinationAddress;
    std::uint32_t identification;
    std::uint64_t recordOffset;
    std::uint32_t total = 0;  ///< 0: the last fragment has not come
    std::uint32_t held = 0;
    std::vector<Part> parts;
    std::vector<std::uint8_t> bytes;
  };

  std::list<Open>::iterator find(const IpFragment &fragment, std::uint64_t recordOffset);

  std::list<Open> open_;  // oldest first
  std::vector<std::uint8_t> joined_;
  std::uint64_t abandoned_ = 0;
};

}  // namespace tarvo::lidar
