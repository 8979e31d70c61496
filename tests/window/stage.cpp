#include "tests/window/stage.h"

#include <QDir>
#include <QFile>
#include <cstdio>

#include "tests/window/complaints.h"

namespace tarvo::skarnvisor::test {

Stage::Stage() {
  if (!isReady()) {
    std::fputs("no display: Xvfb is missing (scripts/setup.sh installs it) or did not start\n", stderr);
    return;
  }
  const QString own = m_folder.path();
  for (const char *folder : {"/home/Documents", "/work", "/run"}) QDir().mkpath(own + folder);
  qputenv("HOME", (own + "/home").toLocal8Bit());
  qputenv("XDG_RUNTIME_DIR", (own + "/run").toLocal8Bit());
  for (const char *name : {"XDG_CONFIG_HOME", "XDG_DATA_HOME", "XDG_CACHE_HOME", "WAYLAND_DISPLAY",
                           "XDG_CURRENT_DESKTOP", "QT_QPA_PLATFORMTHEME"})
    qunsetenv(name);
  QFile::setPermissions(own + "/run", QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
  qputenv("DISPLAY", m_display.name());
  qputenv("QT_QPA_PLATFORM", "xcb");
  QDir::setCurrent(own + "/work");
  collectComplaints();
}

}  // namespace tarvo::skarnvisor::test
