#include <algorithm>
#include <memory>

#include "default/point_files/readers/lzf.h"
#include "tests/fuzz/memory_file.h"

using namespace tarvo::skarnvisor;

extern "C" int LLVMFuzzerInitialize(int *, char ***) {
  fuzz::silenceReaders();
  return 0;
}

/// The first two bytes are the size of the output block.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size) {
  if (size < 2) return -1;
  const std::size_t outputSize = data[0] | data[1] << 8;
  const std::size_t inputSize = size - 2;
  // Blocks of exactly that size, so that a step past an end is seen.
  const std::unique_ptr<std::uint8_t[]> input(new std::uint8_t[inputSize]);
  const std::unique_ptr<std::uint8_t[]> output(new std::uint8_t[outputSize]);
  std::copy(data + 2, data + size, input.get());
  lzfDecompress(input.get(), static_cast<std::uint32_t>(inputSize), output.get(),
                static_cast<std::uint32_t>(outputSize));
  return 0;
}
