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
  QString fault = options.stack > 1 ? showStack(session, options) : session.showFrame(options.frame);
  if (fault.isEmpty()) fault = session.frameFault();
  PictureMaker maker(session, options.look);
  if (fault.isEmpty()) fault = maker.selectColor();
  if (fault.isEmpty()) fault = maker.write(options.out);
  if (fault.isEmpty()) std::printf("%s\n", qPrintable(QDir::toNativeSeparators(options.out)));
  return fault;
}

}  // namespace tarvo::skarnvisor::app
