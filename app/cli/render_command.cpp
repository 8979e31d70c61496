#include <QDir>
#include <cstdio>

#include "app/cli/commands.h"
#include "app/cli/picture_maker.h"
#include "app/session/capture_session.h"

namespace tarvo::skarnvisor::app {

QString runRender(CaptureSession &session, const Options &options) {
  QString fault = session.showFrame(options.frame);
  if (fault.isEmpty()) fault = session.frameFault();
  PictureMaker maker(session, options.look);
  if (fault.isEmpty()) fault = maker.selectColor();
  if (fault.isEmpty()) fault = maker.write(options.out);
  if (fault.isEmpty()) std::printf("%s\n", qPrintable(QDir::toNativeSeparators(options.out)));
  return fault;
}

}  // namespace tarvo::skarnvisor::app
