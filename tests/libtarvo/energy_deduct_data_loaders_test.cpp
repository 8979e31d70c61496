#include "libtarvo/UdpParser/energy_deduct_data_loaders.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <cstring>
#include <fstream>
#include <sstream>

namespace {

using namespace tarvo::lidar;
using Floats = std::vector<float>;

std::string fileWith(const std::string &name, const std::string &text) {
  std::ofstream(name, std::ios::binary | std::ios::trunc) << text;
  return name;
}

TEST(EnergyDistanceCoefficients, TakeTheirColumnByNameOrPlaceAndPassOverBadRows) {
  struct Case {
    const char *text;
    bool good;
    Floats values;
  };
  for (const Case &c : {Case{"\xEF\xBB\xBFid, dist_coef_a,x\n1,0.5,9\n\n2\n3,word,9\n4, 1.5,9\n", true, {0.5F, 1.5F}},
                        Case{"a,b\n7,0.25\n", true, {0.25F}}, Case{"only\r\n3\r\n-2e-1\r\n", true, {3.0F, -0.2F}},
                        Case{"dist_coef\n", false, {}}, Case{"", false, {}}}) {
    Floats values = {9};
    EXPECT_EQ(loadEnergyDistCoefCsv(fileWith("dist.csv", c.text), values), c.good) << c.text;
    if (*c.text != '\0') {
      EXPECT_EQ(values, c.values) << c.text;
    }
  }
  Floats values;
  EXPECT_FALSE(loadEnergyDistCoefCsv("nowhere.csv", values));
}

TEST(ReflectivityMapping, ReadsBothFormsAndKeepsItsDefaultOtherwise) {
  std::uint8_t bytes[256];
  float floats[64];
  bool loaded = false;
  const std::string high =
      fileWith("high.csv", "reflectivity_raw,reflectivity_nonlinear_mapped\n100,300\n101,-5\n256,7\nx,1\n");
  EXPECT_FALSE(loadReflectivityFloatLut(high, floats, loaded));
  EXPECT_FALSE(loaded);
  EXPECT_EQ(floats[1], 0.015625F);
  EXPECT_EQ(floats[9], 7.0F);
  EXPECT_EQ(floats[10], 10.0F);
  EXPECT_TRUE(loadReflectivityByteLut(high, bytes, loaded));
  EXPECT_TRUE(loaded);
  EXPECT_EQ(bytes[100], 255);
  EXPECT_EQ(bytes[101], 0);
  EXPECT_EQ(bytes[102], 102);

  const std::string gbk =
      fileWith("gbk.csv", "\xD5\xE6\xCA\xB5\xB7\xB4\xC9\xE4\xC2\xCA,reflectivity_raw\n0.5,63\n2,64\n");
  EXPECT_TRUE(loadReflectivityFloatLut(gbk, floats, loaded));
  EXPECT_EQ(floats[63], 0.5F);
  EXPECT_FALSE(loadReflectivityByteLut(gbk, bytes, loaded));
  EXPECT_EQ(bytes[255], 255);
}

TEST(EnergyKernel, WorksOutItsShapeFromWhatTheFileSays) {
  struct Case {
    const char *text;
    bool good;
    int rows, cols;
  };
  for (const Case &c :
       {Case{"ROWS,2\ncols , 2\n1,2\n3,4\n", true, 2, 2}, Case{"1\n2\n3\n4\n5\n6\n7\n8\n9\n", true, 3, 3},
        Case{"1\n2\n3\n4\n5\n6\n7\n8\n", false, 0, 0}, Case{"cols,4\n1,2,3,4\n5,6,7,8\n9,10,11,12\n", true, 3, 4},
        Case{"2,3\n1,2,3\n4,5,6\n", true, 2, 3}, Case{"cols,5\n1,2,3\n", false, 0, 5},
        Case{"rows,2\ncols,2\n1,2\n3,x\n", false, 2, 2},
        Case{"rows,2000000000\ncols,2000000000\n1\n", false, 2000000000, 2000000000}, Case{"# empty\n", false, 0, 0}}) {
    int rows = -1;
    int cols = -1;
    Floats values;
    EXPECT_EQ(loadEnergyKernelCsv(fileWith("kernel.csv", c.text), rows, cols, values), c.good) << c.text;
    EXPECT_EQ(rows, c.rows) << c.text;
    EXPECT_EQ(cols, c.cols) << c.text;
  }
}

TEST(EnergyKernel, TheDefaultIsWrittenAndReadBackAndAWrongSizeLeavesTheFileAlone) {
  int rows = 0;
  int cols = 0;
  Floats kernel;
  defaultEnergyKernel(rows, cols, kernel);
  ASSERT_TRUE(saveEnergyKernelCsv("saved.csv", rows, cols, kernel));
  EXPECT_FALSE(saveEnergyKernelCsv("saved.csv", 3, 3, Floats(8)));
  std::stringstream text;
  text << std::ifstream("saved.csv").rdbuf();
  EXPECT_EQ(text.str().substr(0, 65), "# Energy deduct convolution kernel (row-major)\nrows,17\ncols,17\n0,");
  EXPECT_NE(text.str().find("\n0,0,0,0,0,-0.0002,-0.008,-0.008,1,-0.008,-0.008,-0.0002,0,0,0,0,0\n"),
            std::string::npos);
  EXPECT_NE(text.str().find("\n0,0,0,0,0,-0.0002,-0.001,-0.001,-0.001,-0.001,-0.001,-0.0002,"), std::string::npos);
  int readRows = 0;
  int readCols = 0;
  Floats read;
  ASSERT_TRUE(loadEnergyKernelCsv("saved.csv", readRows, readCols, read));
  EXPECT_EQ(readRows, rows);
  EXPECT_EQ(readCols, cols);
  EXPECT_EQ(read, kernel);
}

std::string arrayFile(int rows, int columns, const std::string &order, std::size_t floats) {
  const std::string header = "{'descr': '<f4', 'fortran_order': " + order + ", 'shape': (" + std::to_string(rows) +
                             ", " + std::to_string(columns) + "), }\n";
  std::string bytes("\x93NUMPY\x01\x00", 8);
  bytes += static_cast<char>(header.size());
  bytes += '\0';
  bytes += header;
  for (std::size_t i = 0; i < floats; ++i) {
    const float value = static_cast<float>(i) + 0.5F;
    bytes.append(reinterpret_cast<const char *>(&value), sizeof value);
  }
  return bytes;
}

TEST(ChannelEqualisationGains, ReadTextAndArrayFilesAndRefuseOtherShapes) {
  Floats r;
  Floats g;
  Floats b;
  EXPECT_TRUE(loadChannelEqGains(
      fileWith("gains.csv", "channel_index,r,g,b\n# note\n0,1.5,2,3\n9,1,1,1\n1,1,2\n3 4 5 6\n"), 4, r, g, b));
  EXPECT_EQ(r, (Floats{1.5F, 1, 1, 4}));
  EXPECT_EQ(b, (Floats{3, 1, 1, 6}));
  EXPECT_FALSE(loadChannelEqGains("gains.csv", 6, r, g, b));
  EXPECT_EQ(lastChannelOfEqGains("gains.csv"), 9);
  EXPECT_EQ(lastChannelOfEqGains("none.csv"), -1);
  EXPECT_FALSE(loadChannelEqGains(fileWith("gains.txt", "0,1,1,1\n"), 1, r, g, b));
  EXPECT_FALSE(loadChannelEqGains("csv", 1, r, g, b));

  ASSERT_TRUE(loadChannelEqGains(fileWith("gains.npy", arrayFile(2, 3, "False", 6)), 2, r, g, b));
  EXPECT_EQ(r, (Floats{0.5F, 3.5F}));
  EXPECT_EQ(b, (Floats{2.5F, 5.5F}));
  for (const std::string &bad : {arrayFile(2, 3, "False", 5), arrayFile(2, 3, "True", 6), arrayFile(3, 2, "False", 6),
                                 arrayFile(2, 3, "False", 6).substr(0, 9), std::string("\x93NUMPY\x02")}) {
    EXPECT_FALSE(loadChannelEqGains(fileWith("bad.npy", bad), 2, r, g, b));
    EXPECT_EQ(r, (Floats{1, 1}));
  }
}

}  // namespace
