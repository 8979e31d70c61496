// Files that other programs wrote. They lie beside the sources, not among them; SKARNVISOR_TEST_DATA names another
// place.
#include <gtest/gtest.h>

#include <QFile>
#include <cmath>

#include "default/point_files/readers/pcd_file_reader.h"
#include "tests/default_point_files/point_file_fixture.h"

namespace tarvo::skarnvisor {
namespace {

using namespace test;

std::string realFile(const char *name) { return QFile::encodeName(realDataFolder() + "/" + name).toStdString(); }

class RealFiles : public testing::Test {
 protected:
  void SetUp() override {
    if (realDataFolder().isEmpty()) GTEST_SKIP() << "no folder of real files: set SKARNVISOR_TEST_DATA";
  }
};

TEST_F(RealFiles, PcdOfEveryKind) {
  struct Case {
    const char *name;
    std::size_t points;
    std::size_t finite;
  };
  const Case cases[] = {{"pcd/bun0.pcd", 397, 397},
                        {"pcd/nhood_test.pcd", 36, 36},
                        {"pcd/colored_cloud.pcd", 1000, 1000},
                        {"pcd/curve_close.pcd", 110, 110},
                        {"pcd/cturtle.pcd", 167198, 0},
                        {"pcd/missingheader.pcd", 0, 0},
                        {"folder/frame_20121214T142255.814212.pcd", 307200, 0}};
  for (const Case &c : cases) {
    PcdFileReader reader;
    ASSERT_TRUE(reader.read(realFile(c.name))) << c.name;
    EXPECT_EQ(reader.points().size(), c.points) << c.name;
    std::size_t finite = 0;
    for (const PcdPoint &point : reader.points())
      if (std::isfinite(point.x) && std::isfinite(point.y) && std::isfinite(point.z) && std::abs(point.x) < 1000.0F)
        ++finite;
    if (c.finite != 0) {
      EXPECT_EQ(finite, c.finite) << c.name;
    } else if (c.points != 0) {
      EXPECT_GT(finite, c.points / 10) << c.name;
      EXPECT_LE(finite, c.points) << c.name;
    }
  }
}

}  // namespace
}  // namespace tarvo::skarnvisor
