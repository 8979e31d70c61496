#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>

namespace tarvo::skarnvisor {

/// How many parts `bytes` of input are worth: 1 below half a megabyte, else the workers of the pool.
[[nodiscard]] std::size_t partCountFor(std::uint64_t bytes);

/// Runs `work(part)` for each part below `parts` on the host's pool and waits. An exception of the lowest failing part
/// is thrown again here, after every part has ended. Not from inside a pool task.
void runParts(std::size_t parts, const std::function<void(std::size_t part)> &work);

/// First element of part `part` when `count` elements are cut into `parts` of nearly equal length.
[[nodiscard]] constexpr std::uint64_t partBegin(std::uint64_t count, std::size_t parts, std::size_t part) {
  return count / parts * part + count % parts * part / parts;
}

}  // namespace tarvo::skarnvisor
