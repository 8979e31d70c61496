// The parser's point step on a frame of a million points, as the parser runs it, and the fast path.

#include <memory>
#include <vector>

#include "bench/measure.h"
#include "bench/sweep.h"
#include "default/frame/frame_loops.h"

namespace tarvo::skarnvisor::bench {

Measure parseMeasure(const char *name, const PointPassSettings &settings) {
  return {name, "1,000,000 points of 88 bytes read and stored, 12-byte vertices: 188 MB", [settings] {
            const auto frame = std::make_shared<Frame>();
            return Bodies{
                [frame, settings] { runPointPass(frame->executor, PointPass(settings), frame->target()); },
                [frame] { copyAndPack(*frame); },
            };
          }};
}

void addFrameMeasures(std::vector<Measure> &measures) {
  PointPassSettings rgb;
  rgb.useRgbMode = true;
  PointPassSettings remake;
  remake.remakeEnabled = true;
  remake.remake = RemakeFold(static_cast<int>(columns), 1, static_cast<int>(pointCount));

  measures.push_back(parseMeasure("parse_frame_default", {}));
  measures.push_back(parseMeasure("parse_frame_rgb", rgb));
  measures.push_back(parseMeasure("parse_frame_remake", remake));
  measures.push_back(
      {"fill_vertices_fast_path", "1,000,000 points of 88 bytes read, 12-byte vertices written: 100 MB", [] {
         const auto frame = std::make_shared<Frame>();
         return Bodies{
             [frame] { fillVertices(frame->executor, {}, {}, frame->points, frame->vertices); },
             [frame] { packOnly(frame->executor, frame->points, frame->vertices); },
         };
       }});
}

}  // namespace tarvo::skarnvisor::bench
