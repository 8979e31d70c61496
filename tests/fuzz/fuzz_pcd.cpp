#include <stdexcept>

#include "default/point_files/readers/pcd_file_reader.h"
#include "tests/fuzz/memory_file.h"

using namespace tarvo::skarnvisor;

extern "C" int LLVMFuzzerInitialize(int *, char ***) {
  fuzz::silenceReaders();
  return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size) {
  const fuzz::MemoryFile file(data, size);
  PcdFileReader reader;
  try {
    if (reader.read(file.path())) return 0;
  } catch (const std::runtime_error &) {
    return 0;
  }
  // A refused file leaves no points.
  if (!reader.points().empty()) __builtin_trap();
  return 0;
}
