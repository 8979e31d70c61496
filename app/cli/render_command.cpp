#include <CLI/CLI.hpp>
#include <QDir>
#include <cstdio>

#include "app/cli/picture_maker.h"
#include "app/cli/point_options.h"
#include "app/cli/source_command.h"
#include "app/cli/stack_option.h"
#include "app/session/capture_session.h"
#include "app/session/frame_stack.h"

namespace tarvo::skarnvisor::app {
namespace {

struct RenderOptions : SourceOptions {
  int frame = 0;
  int stack = 1;  ///< frames shown at once
  QString out;
  LookOptions look;
  PointOptions points;
};

QString showStack(CaptureSession &session, const RenderOptions &options) {
  FrameStack stack(session);
  QString fault = stack.request(options.stack);
  if (!fault.isEmpty()) return fault;
  std::printf("%s\n", qPrintable(stack.message()));
  // The frames of the whole capture count as far as they can be reached.
  fault = session.waitForIndex();
  return fault.isEmpty() ? stack.showBefore(options.frame) : fault;
}

QString run(CaptureSession &session, const RenderOptions &options) {
  const auto choosePoints = [&] {
    const QString fault = applyPointOptions(session, options.points);
    return fault.isEmpty() && !session.waitForPicture() ? QStringLiteral("the frame could not be shown") : fault;
  };
  // The frames of a stack are decoded once each, so what is to show of them has to stand before.
  const bool stacked = options.stack > 1;
  QString fault = stacked && options.points.any() ? session.showFrame(0) : QString();
  if (fault.isEmpty() && stacked) fault = choosePoints();
  if (fault.isEmpty()) fault = stacked ? showStack(session, options) : session.showFrame(options.frame);
  if (fault.isEmpty()) fault = session.frameFault();
  if (fault.isEmpty() && !stacked) fault = choosePoints();
  PictureMaker maker(session, options.look);
  if (fault.isEmpty()) fault = maker.selectColor();
  if (fault.isEmpty()) fault = maker.write(options.out);
  if (fault.isEmpty()) std::printf("%s\n", qPrintable(QDir::toNativeSeparators(options.out)));
  return fault;
}

}  // namespace

void addRenderCommand(CommandLine &line) {
  const auto options = std::make_shared<RenderOptions>();
  CLI::App &command =
      addSourceCommand(line, "render", "Draw one frame into a picture file; needs no window and no GPU", options, run);
  addFile(command, options->file, Sources::Files)->required();
  addSensorPort(command, options->sensorPort);
  command.add_option("--frame", options->frame, "Frame, counted from 0 (0)")->check(wholeFrom(0));
  addStackOption(command, options->stack);
  addText(command, "--out", options->out, "Picture file, .png or .jpg")->required();
  addLook(command, options->look);
  addPointOptions(command, options->points);
}

}  // namespace tarvo::skarnvisor::app
