#include <stdexcept>

#include "contracts/host/log.h"
#include "default/point_files/readers/ply_reader.h"
#include "tests/fuzz/memory_file.h"

using namespace tarvo::skarnvisor;

extern "C" int LLVMFuzzerInitialize(int *, char ***) {
  fuzz::silenceReaders();
  Logger::GetInstance().setConsoleMask(0);
  return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size) {
  const fuzz::MemoryFile file(data, size);
  try {
    // Each vertex takes at least a byte of the file.
    if (readPly(file.path()).size() > size) __builtin_trap();
  } catch (const std::runtime_error &) {
  }
  return 0;
}
