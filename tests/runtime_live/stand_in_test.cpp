// A calibration file and the calibration that the lidar sends: which of the two holds.
#include <gtest/gtest.h>

#include <string>

#include "tests/runtime_live/live_fixture.h"

namespace tarvo::lidar::test {
namespace {

/// Corrections of another lidar of the type: all channels at 1 degree.
std::string otherCorrections() {
  std::string text = "channel,elevation,azimuth\n";
  for (int channel = 1; channel <= 16; ++channel) text += std::to_string(channel) + ",1,0\n";
  return writeFile("other.csv", Bytes(text.begin(), text.end()));
}

float firstElevation(LiveSession &live) {
  float *elevations = nullptr;
  return live.runtime().GetCorrectionView(nullptr, &elevations, nullptr) ? elevations[0] : 0.0F;
}

/// A lidar that sends its calibration once a second, joined in between.
class StandIn : public testing::Test {
 protected:
  StandIn() : packets(packetsOf(smallLidar(16))), sender(live.port) {
    sender.send(framesOf(packets, 1, 6));
    EXPECT_TRUE(live.hasFrames(4));
    EXPECT_FALSE(live.runtime().IsCorrectionLoadSuccess());
  }
  void sendCalibration() {
    sender.send(framesOf(packets, 6, 15));
    EXPECT_TRUE(live.hasFrames(13));
  }

  std::vector<PacketLog::Packet> packets;
  LiveSession live;
  Sender sender;
};

TEST_F(StandIn, AFileOfBeforeTheFirstFrameGivesWayToTheLidarsOwn) {
  ASSERT_EQ(live.runtime().LoadCorrectionFile(otherCorrections()), 0);
  EXPECT_EQ(firstElevation(live), 1.0F);
  sendCalibration();
  EXPECT_TRUE(Session::poll([this] { return live.source->correctionExportPending.load(); }));
  EXPECT_NE(firstElevation(live), 1.0F);
}

TEST_F(StandIn, AFileChosenWhileFramesAreShownStays) {
  ASSERT_TRUE(live.decode(0));
  ASSERT_EQ(live.runtime().LoadCorrectionFile(otherCorrections()), 0);
  sendCalibration();
  EXPECT_TRUE(Session::poll([this] { return live.source->firetimesExportPending.load(); }))
      << "of which there was none";
  EXPECT_FALSE(live.source->correctionExportPending);
  EXPECT_EQ(firstElevation(live), 1.0F);
}

}  // namespace
}  // namespace tarvo::lidar::test
