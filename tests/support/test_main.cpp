// The main function of every test binary: a home, documents folder and working directory of the process's own, an
// application object for what needs one, then the tests.
#include "tests/support/test_environment.h"

#include <gtest/gtest.h>
#include <QApplication>
#include <QDir>
#include <QTemporaryDir>

namespace {

QString &folder() {
  static QString path;
  return path;
}

}  // namespace

namespace tarvo::skarnvisor::test {

QString processFolder() { return folder(); }
QString documentsFolder() { return folder() + "/home/Documents"; }

}  // namespace tarvo::skarnvisor::test

int main(int argc, char **argv) {
  QTemporaryDir own;
  if (!own.isValid()) {
    qCritical("no temporary folder for the tests: %s", qPrintable(own.errorString()));
    return 1;
  }
  folder() = own.path();
  QDir(own.path()).mkpath("home/Documents");
  QDir(own.path()).mkpath("work");
  const QByteArray home = (own.path() + "/home").toLocal8Bit();
  qputenv("HOME", home);
  qputenv("XDG_CONFIG_HOME", home + "/.config");
  qputenv("XDG_DATA_HOME", home + "/.local/share");
  qputenv("XDG_CACHE_HOME", home + "/.cache");
  if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM")) qputenv("QT_QPA_PLATFORM", "offscreen");
  QDir::setCurrent(own.path() + "/work");
  testing::InitGoogleTest(&argc, argv);
  QApplication application(argc, argv);
  return RUN_ALL_TESTS();
}
