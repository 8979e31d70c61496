#include <QDir>
#include <cstdio>

#include "app/cli/commands.h"
#include "app/cli/picture_maker.h"
#include "app/session/capture_session.h"
#include "app/session/frame_stack.h"

namespace tarvo::skarnvisor::app {

namespace {

QString showStack(CaptureSession &session, const Options &options) {
  FrameStack stack(session);
  QString fault = stack.request(options.stack);
  if (!fault.isEmpty()) return fault;
  std::printf("%s\n", qPrintable(stack.message()));
  // The frames of the whole capture count as far as they can be reached.
  fault = session.waitForIndex();
  return fault.isEmpty() ? stack.showBefore(options.frame) : fault;
}

}  // namespace

QString runRender(CaptureSession &session, const Options &options) {
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

}  // namespace tarvo::skarnvisor::app
