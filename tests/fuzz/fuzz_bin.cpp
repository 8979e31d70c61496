#include "default/point_files/readers/bin_reader.h"
#include "tests/fuzz/memory_file.h"

using namespace tarvo::skarnvisor;

extern "C" int LLVMFuzzerInitialize(int *, char ***) {
  fuzz::silenceReaders();
  return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size) {
  const fuzz::MemoryFile file(data, size);
  BinFrame frame;
  if (readBin(file.path(), frame) != BinResult::read) return 0;
  float sum = 0.0F;
  for (std::uint32_t i = 0; i < frame.count; ++i) sum += frame.point(i).x;
  return sum == 12345.0F ? -1 : 0;
}
