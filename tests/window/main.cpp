// The window's tests have a display and a home of their own, made before the application object.
#include <gtest/gtest.h>

#include <QApplication>
#include <QDir>
#include <QTemporaryDir>
#include <cstdio>

#include "tests/window/complaints.h"
#include "tests/window/display.h"

int main(int argc, char **argv) {
  testing::InitGoogleTest(&argc, argv);
  const tarvo::skarnvisor::test::Display display;
  if (display.name().isEmpty()) {
    std::fputs("no display: Xvfb is missing (scripts/setup.sh installs it) or did not start\n", stderr);
    return 1;
  }
  QTemporaryDir own;
  for (const char *folder : {"/home/Documents", "/work", "/run"}) QDir().mkpath(own.path() + folder);
  qputenv("HOME", (own.path() + "/home").toLocal8Bit());
  qputenv("XDG_RUNTIME_DIR", (own.path() + "/run").toLocal8Bit());
  for (const char *name : {"XDG_CONFIG_HOME", "XDG_DATA_HOME", "XDG_CACHE_HOME", "WAYLAND_DISPLAY",
                           "XDG_CURRENT_DESKTOP", "QT_QPA_PLATFORMTHEME"})
    qunsetenv(name);
  QFile::setPermissions(own.path() + "/run", QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
  qputenv("DISPLAY", display.name());
  qputenv("QT_QPA_PLATFORM", "xcb");
  QDir::setCurrent(own.path() + "/work");
  tarvo::skarnvisor::test::collectComplaints();
  QApplication application(argc, argv);
  return RUN_ALL_TESTS();
}
