#pragma once

#include <optional>
#include <string_view>
#include <vector>

#include "default/models/filter_model.h"
#include "default/pipeline/type_traits.h"

namespace tarvo::skarnvisor {

/// A capability by the name of its property on the chain's render buffer.
struct CapabilityChange {
  std::string_view property;
  bool on = true;
};

/// An optional point attribute: its name and its place in the spreadsheet, -1 for the end.
struct ColumnPlace {
  std::string_view name;
  int position = -1;
};

/// Which default files a type has; calibration_file_names.h makes the paths.
struct CalibrationFileKinds {
  std::string_view spelling{};             ///< the type as the file names spell it; empty: the type itself
  std::string_view correctionExtension{};  ///< "csv", "dat" or "bin"; empty: no angle correction file
  bool factoryCorrection = false;          ///< a factory file stands in while the default file is missing
  bool firetimes = false;
  bool factoryFiretimes = false;
  bool dcf = false;
  std::string_view
      channelEqFile{};  ///< image-signal types: its file name; the image-signal file replaces the firetimes
};

/// All that is special about a lidar type. What a row leaves out stays as the render buffer's constructor made it.
struct LidarTypeRow {
  std::vector<std::string_view> types;  ///< each compared as a whole, byte for byte
  std::vector<CapabilityChange> capabilities{};
  std::vector<FilterSlot> offeredFilters{};
  CalibrationFileKinds files{};
  std::vector<ColumnPlace> columns{};
  std::vector<std::string_view> colorModes{};
  std::string_view currentColorMode{};
  std::optional<int> distanceCorrection{};
  std::optional<double> frameSeconds{};
  std::optional<bool> intensityMapping{};
  std::optional<bool> blindChannelsCheck{};
  std::optional<bool> elevationFovFilter{};
  std::optional<bool> dcfCorrection{};
  std::optional<TypeScales> scales{};
  std::optional<float> areaFullScale{};  ///< top of the type's area values
  std::optional<int> glslType{};
  bool firstBeforeLast = false;      ///< the echo selector names "first" before "last"
  bool rgbDisplayUseRowCol = false;  ///< the camera picture is laid out by row and column
  bool needsNoCorrection = false;    ///< the points come corrected: nobody is asked to load a correction file
  std::string_view label{};          ///< family label, written on the source
};

/// When a chain brings a type's corrections in step with their default file.
enum class CorrectionsStep { Never, WhenNamed, Always };

/// What one family callback configures from: its rows, in order, and what holds for every type of the chain.
struct LidarTypeChain {
  std::vector<CapabilityChange> everyTypeFirst{};  ///< before the rows
  std::vector<LidarTypeRow> rows;
  std::vector<ColumnPlace> everyTypeColumns{};  ///< behind those of the row
  std::vector<std::string_view> everyTypeColorModes{};
  std::vector<CapabilityChange> everyTypeLast{};  ///< after the rows
  CorrectionsStep corrections = CorrectionsStep::Always;
  bool dcf = true;                ///< a type with a DCF file has it brought in step
  bool energyDeduct = false;  ///< a lidar of the KR pipeline with that filter gets its data files read
  bool nonlinearMapping = false;  ///< a type with `nonlinearMappingUseful` gets its mapping file named

  /// The first row that names the type; null for a type without one.
  [[nodiscard]] const LidarTypeRow *find(std::string_view type) const;
};

}  // namespace tarvo::skarnvisor
