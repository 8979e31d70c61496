// The window's tests have a display and a home of their own, made before the application object.
#include <gtest/gtest.h>

#include <QApplication>

#include "tests/window/stage.h"

int main(int argc, char **argv) {
  testing::InitGoogleTest(&argc, argv);
  const tarvo::skarnvisor::test::Stage stage;
  if (!stage.isReady()) return 1;
  QApplication application(argc, argv);
  return RUN_ALL_TESTS();
}
