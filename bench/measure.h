#pragma once

#include <functional>
#include <string>
#include <vector>

namespace tarvo::skarnvisor::bench {

/// Our code and the least that any code must do for the same result, on the same data.
struct Bodies {
  std::function<void()> ours;
  std::function<void()> floor;
};

/// One line of the output: how long our code takes beside its floor.
struct Measure {
  std::string name;
  std::string workingSet;           ///< what one call works on, printed at the line's end
  std::function<Bodies()> prepare;  ///< makes the data; called once, when the measure runs
  std::function<bool()>
      run{};  ///< in its place, for a measure without a floor: prints its line itself, false on failure
};

/// Measures of the per-point work.
void addFrameMeasures(std::vector<Measure> &measures);

/// Measures of filter, selection and the rows of the point table.
void addPointMeasures(std::vector<Measure> &measures);

/// Measures of the runtime on a capture: decode and index.
void addDecodeMeasures(std::vector<Measure> &measures);

/// Measures of the decoder's filters.
void addFilterMeasures(std::vector<Measure> &measures);

/// Measures of captures as they come: big, cut, live.
void addCaptureMeasures(std::vector<Measure> &measures);

/// Measures of what is written to files.
void addExportMeasures(std::vector<Measure> &measures);

/// The program as a whole: play from end to end, and the memory of a frame.
void addProgramMeasures(std::vector<Measure> &measures);

/// Measures of the readers of point files.
void addPointFileMeasures(std::vector<Measure> &measures);

/// Measures of the status block and the fault packets.
void addTelemetryMeasures(std::vector<Measure> &measures);

/// Measures of a stack of frames.
void addStackMeasures(std::vector<Measure> &measures);

/// Measures of the window, where there is a display.
void addUploadMeasures(std::vector<Measure> &measures);

}  // namespace tarvo::skarnvisor::bench
