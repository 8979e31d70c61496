#pragma once

#include <cstdint>

namespace tarvo::skarnvisor {

/// Expands one block of the LZF format. True when the input filled the output exactly; otherwise the reason is printed
/// to standard output. Reads and writes nothing outside the two blocks, which must not overlap.
bool lzfDecompress(const std::uint8_t *input, std::uint32_t inputSize, std::uint8_t *output, std::uint32_t outputSize);

}  // namespace tarvo::skarnvisor
