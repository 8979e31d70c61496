#include <gtest/gtest.h>

#include <functional>
#include <stdexcept>
#include <string>

#include "runtime/calibration/calibration_tables.h"

namespace {

using namespace tarvo::lidar;

TEST(CorrectionReader, TakesColumnsAndRowsInAnyOrderAndForgivesLayout) {
  const auto table = parseCorrections(
      "\xEF\xBB\xBF# bench lidar\r\n\r\nframe_span, -60, 60.5\r\n azimuth ,channel,elevation\r\n-0.2, 2 "
      ",+1.5\r\n0.25,1,-1.5");
  EXPECT_EQ(table.elevations, (std::vector<float>{-1.5F, 1.5F}));
  EXPECT_EQ(table.azimuths, (std::vector<float>{0.25F, -0.2F}));
  EXPECT_EQ(table.frameSpan, (std::vector<double>{-60.0, 60.5}));
  EXPECT_TRUE(table.azimuthsOdd.empty());
}

TEST(CorrectionReader, ReadsBackWhatItWroteBitForBit) {
  CorrectionTable table;
  table.frameSpan = {0.1, -33.333333333};
  for (int i = 0; i < 40; ++i) {
    table.elevations.push_back(-20.0F + float(i) / 3.0F);
    table.azimuths.push_back(float(i) * 0.0001F);
    table.azimuthsOdd.push_back(-float(i) / 7.0F);
  }
  table.sections[0] = {0, 10};
  table.sections[2] = {10, 30};
  const auto back = parseCorrections(formatTable(table));
  EXPECT_EQ(back.elevations, table.elevations);
  EXPECT_EQ(back.azimuths, table.azimuths);
  EXPECT_EQ(back.azimuthsOdd, table.azimuthsOdd);
  EXPECT_EQ(back.frameSpan, table.frameSpan);
  EXPECT_EQ(back.sections[1].count, 0);
  EXPECT_EQ(back.sections[2].first, 10);
  EXPECT_EQ(back.sections[2].count, 30);
}

TEST(OtherReaders, KeepValuesThroughTheirOwnTextAndUnits) {
  EXPECT_EQ(parseFiretimes("channel,firetime_us\n1,1.5\n2,-2").nanoseconds, (std::vector<float>{1500.0F, -2000.0F}));
  const FiretimeTable firetimes{{12.25F, 1.0F / 3.0F}};
  EXPECT_EQ(parseFiretimes(formatTable(firetimes)).nanoseconds, firetimes.nanoseconds);
  const DcfTable dcf{{0.012F, -0.5F}};
  EXPECT_EQ(parseDcf(formatTable(dcf)).distanceOffsets, dcf.distanceOffsets);
  const NonlinearTable mapping{{0, 100, 65535}, {5, 3, 65535}};
  EXPECT_EQ(parseNonlinear(formatTable(mapping)).inputs, mapping.inputs);
  EXPECT_EQ(parseNonlinear(formatTable(mapping)).outputs, mapping.outputs);
  const ChannelConfigTable config{{true, false, true}};
  EXPECT_EQ(parseChannelConfig(formatTable(config)).enabled, config.enabled);
}

struct Refusal {
  const char *what;
  std::function<void(std::string_view)> read;
  std::string text;
  std::string message;  // that the error must hold
};

TEST(CalibrationReaders, RefuseWithLineExpectationAndWhatCame) {
  const auto corrections = [](std::string_view t) { (void)parseCorrections(t); };
  const auto firetimes = [](std::string_view t) { (void)parseFiretimes(t); };
  const auto dcf = [](std::string_view t) { (void)parseDcf(t); };
  const auto ofFour = [](std::string_view t) { (void)parseCorrections(t, 4); };
  const auto offsetsOfFour = [](std::string_view t) { (void)parseDcf(t, 4); };
  const auto configOfFour = [](std::string_view t) { (void)parseChannelConfig(t, 4); };
  const auto nonlinear = [](std::string_view t) { (void)parseNonlinear(t); };
  const auto config = [](std::string_view t) { (void)parseChannelConfig(t); };
  const std::string head = "channel,elevation,azimuth\n";
  const std::vector<Refusal> cases = {
      {"empty", corrections, "", "end of file"},
      {"header alone", corrections, head, "at least one channel"},
      {"no header", corrections, "1,2,3\n", "line 1: expected a header with channel, elevation, azimuth"},
      {"unknown column", corrections, "channel,elevation,azimuth,colour\n", "\"channel,elevation,azimuth,colour\""},
      {"column twice", corrections, "channel,channel,elevation,azimuth\n", "header"},
      {"short row", corrections, head + "1,2\n", "line 2: expected 3 fields"},
      {"long row", corrections, head + "1,2,3,4\n", "line 2: expected 3 fields"},
      {"text", corrections, head + "1,abc,0\n", "line 2: expected elevation from -90 to 90, got \"abc\""},
      {"trailing text", corrections, head + "1,1x,0\n", "got \"1x\""},
      {"empty field", corrections, head + "1,,0\n", "got \"\""},
      {"not a number", corrections, head + "1,nan,0\n", "got \"nan\""},
      {"infinite", corrections, head + "1,0,inf\n", "got \"inf\""},
      {"two signs", corrections, head + "1,+-4,0\n", "got \"+-4\""},
      {"elevation too large", corrections, head + "1,90.5,0\n", "got \"90.5\""},
      {"channel 0", corrections, head + "0,1,0\n", "from 1 to 262144"},
      {"channel too large", corrections, head + "262145,1,0\n", "from 1 to 262144"},
      {"channel beyond an int", corrections, head + "99999999999,1,0\n", "from 1 to 262144"},
      {"channel with a fraction", corrections, head + "1.5,1,0\n", "whole channel"},
      {"channel twice", corrections, head + "1,1,0\n1,2,0\n", "line 3: expected each channel once"},
      {"channel missing", corrections, head + "1,1,0\n3,1,0\n", "no channel 2"},
      {"section out of range", corrections, "channel,elevation,azimuth,section\n1,0,0,4\n", "from 0 to 3"},
      {"section in two runs", corrections, "channel,elevation,azimuth,section\n1,0,0,0\n2,0,0,1\n3,0,0,0\n", "one run"},
      {"cut off behind a row", ofFour, head + "1,1,0\n2,1,0\n", "line 3: expected the lidar's 4 channels, got \"2\""},
      {"longer lidar", ofFour, head + "1,1,0\n2,1,0\n3,1,0\n4,1,0\n5,1,0\n", "line 6: expected the lidar's 4"},
      {"offsets cut off", offsetsOfFour, "channel,distance_offset\n1,1\n", "the lidar's 4 channels"},
      {"switches cut off", configOfFour, "channel,enabled\n1,1\n", "the lidar's 4 channels"},
      {"bad span", corrections, "frame_span,x\n" + head + "1,0,0\n", "line 1: expected frame_span"},
      {"binary", corrections, std::string("\x00\x01\x02\n\xff\xfe", 6), "header"},
      {"firetime without a unit", firetimes, "channel\n1\n", "firetime_ns"},
      {"firetime too long", firetimes, "channel,firetime_us\n1,1000001\n", "from -1000000 to 1000000"},
      {"offset too long", dcf, "channel,distance_offset\n1,1000.5\n", "from -1000 to 1000"},
      {"inputs falling", nonlinear, "input,output\n5,0\n5,1\n", "line 3: expected an input above 5"},
      {"one node", nonlinear, "input,output\n5,0\n", "two rows"},
      {"output too large", nonlinear, "input,output\n5,65536\n", "from 0 to 65535"},
      {"neither on nor off", config, "channel,enabled\n1,2\n", "from 0 to 1"},
  };
  for (const auto &refusal : cases) {
    SCOPED_TRACE(refusal.what);
    try {
      refusal.read(refusal.text);
      ADD_FAILURE() << "accepted";
    } catch (const std::invalid_argument &error) {
      EXPECT_NE(std::string(error.what()).find(refusal.message), std::string::npos) << error.what();
    }
  }
}

}  // namespace
