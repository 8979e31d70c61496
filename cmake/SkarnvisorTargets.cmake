# What every target shares: language, warnings, sanitizers, output folders, compiler cache, source globs.
set(CMAKE_CXX_STANDARD 20)
set(CMAKE_CXX_STANDARD_REQUIRED ON)
set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_POSITION_INDEPENDENT_CODE ON)
set(CMAKE_EXPORT_COMPILE_COMMANDS ON)
# The plug-in is looked for beside the program, so everything that runs lies in one folder.
set(CMAKE_RUNTIME_OUTPUT_DIRECTORY ${CMAKE_BINARY_DIR}/bin)
set(CMAKE_LIBRARY_OUTPUT_DIRECTORY ${CMAKE_BINARY_DIR}/bin)

find_program(SKARN_CCACHE ccache)
if(SKARN_CCACHE)
  set(CMAKE_CXX_COMPILER_LAUNCHER ${CMAKE_COMMAND} -E env CCACHE_BASEDIR=${CMAKE_SOURCE_DIR}
      CCACHE_SLOPPINESS=pch_defines,time_macros,include_file_mtime,include_file_ctime ${SKARN_CCACHE})
endif()

add_compile_definitions(QT_NO_KEYWORDS QT_NO_CAST_TO_ASCII _FILE_OFFSET_BITS=64)
if(SKARNVISOR_SANITIZE)
  add_compile_options(-fsanitize=${SKARNVISOR_SANITIZE} -fno-omit-frame-pointer -fno-sanitize-recover=undefined)
  add_link_options(-fsanitize=${SKARNVISOR_SANITIZE})
endif()

# skarn_sources(<out> <folder>... [EXCLUDE <path prefix>...]): sources and headers below the folders.
function(skarn_sources out)
  cmake_parse_arguments(ARG "" "" "EXCLUDE" ${ARGN})
  set(found)
  foreach(folder ${ARG_UNPARSED_ARGUMENTS})
    file(GLOB_RECURSE files CONFIGURE_DEPENDS RELATIVE ${CMAKE_SOURCE_DIR}
         ${CMAKE_SOURCE_DIR}/${folder}/*.cpp ${CMAKE_SOURCE_DIR}/${folder}/*.h)
    list(APPEND found ${files})
  endforeach()
  foreach(prefix ${ARG_EXCLUDE})
    list(FILTER found EXCLUDE REGEX "^${prefix}")
  endforeach()
  list(TRANSFORM found PREPEND ${CMAKE_SOURCE_DIR}/)
  set(${out} ${found} PARENT_SCOPE)
endfunction()

# skarn_target(<target> [PCH] [HEADERS <header>...]): settings of our own targets; PCH precompiles the Qt and standard
# headers, and those that are named.
function(skarn_target target)
  cmake_parse_arguments(ARG "PCH" "" "HEADERS" ${ARGN})
  target_compile_options(${target} PRIVATE -Wall -Wextra $<$<BOOL:${SKARNVISOR_WERROR}>:-Werror>)
  if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
    # GCC 12 misjudges the bounds of inlined std::string code: seen, but no reason to fail.
    target_compile_options(${target} PRIVATE -Wno-error=stringop-overflow -Wno-error=array-bounds -Wno-error=restrict)
  endif()
  set_target_properties(${target} PROPERTIES AUTOMOC ON LINKER_LANGUAGE CXX)
  if(ARG_PCH)
    target_precompile_headers(${target} PRIVATE ${CMAKE_SOURCE_DIR}/cmake/precompiled.h ${ARG_HEADERS})
  endif()
endfunction()
