# libFuzzer targets of the lidar runtime: its packet decoder and its capture reader.
find_package(Qt5 5.15 REQUIRED COMPONENTS Core)
pkg_check_modules(PCAP REQUIRED IMPORTED_TARGET libpcap)
skarn_sources(fuzzed_runtime_sources runtime/capture runtime/decode runtime/calibration
              EXCLUDE runtime/decode/scene_decoder)
add_library(skarnvisor_fuzzed_runtime STATIC ${fuzzed_runtime_sources})
target_link_libraries(skarnvisor_fuzzed_runtime PUBLIC skarnvisor_fuzzed Qt5::Core PkgConfig::PCAP)
target_compile_options(skarnvisor_fuzzed_runtime PRIVATE -fPIC)

foreach(part packet capture)
  add_executable(fuzz_${part} fuzz_${part}.cpp)
  target_link_libraries(fuzz_${part} PRIVATE skarnvisor_fuzzed_runtime)
  target_link_options(fuzz_${part} PRIVATE -fsanitize=fuzzer,address,undefined)
endforeach()
