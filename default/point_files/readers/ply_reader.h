#pragma once

#include <cstdint>
#include <string>

#include "default/point_files/readers/raw_vector.h"

namespace tarvo::skarnvisor {

/// One vertex of a PLY file as the pipeline uses it; every property is converted to float.
struct PlyPoint {
  float x, y, z, intensity, confidence;
};

using PlyPoints = RawVector<PlyPoint>;

/// Reads the "vertex" element of a PLY file into `points`, whose room is used again: ascii or binary in either byte
/// order, any number types, list properties and other elements passed over. `path` in the local code page. Large files
/// are read on all cores; no count of the header sizes an allocation. A file that ends early gives the whole vertices
/// that it holds and a line in the log. Throws std::runtime_error, text starting "PLY parser: ": no such file, a broken
/// header, no element "vertex", one of the properties x, y, z, intensity, confidence missing, text that is no number.
void readPly(const std::string &path, PlyPoints &points);
[[nodiscard]] PlyPoints readPly(const std::string &path);

}  // namespace tarvo::skarnvisor
