// The decoder's filters on a capture, through the runtime's own operations.
#include <gtest/gtest.h>

#include <algorithm>
#include <functional>

#include "tests/runtime/session_fixture.h"

namespace tarvo::lidar::test {
namespace {

std::ptrdiff_t count(const SDKSource &source, const std::function<bool(const SDKPointInfo &)> &wanted) {
  return std::count_if(source.points.begin(), source.points.end(), wanted);
}
bool isReturn(const SDKPointInfo &point) { return point.channel != 0; }

TEST(DecoderFilters, AreTakenUpByTheNextDecodeOfEveryFrameOfARun) {
  Session session(writeCapture("filters.pcap", packetsOf(smallLidar(4))));
  ASSERT_TRUE(session.indexed(4));
  ASSERT_TRUE(session.decode(1, 2));
  const auto whole = count(*session.source, isReturn);
  const auto isNear = [](const SDKPointInfo &p) { return isReturn(p) && p.distance < 8.0F; };
  const auto near = count(*session.source, isNear);
  ASSERT_GT(near, 0);
  ASSERT_GT(whole, near);

  session.runtime().Params().write([](FrameDecodeParam &params) {
    params.vd2DistanceThreshold = 8.0F;
    params.elevationFovFilter = true;
  });
  ASSERT_TRUE(session.decode(1, 2));
  EXPECT_EQ(count(*session.source, isReturn), whole - near) << "the field of view holds every channel";
  session.runtime().Params().write([](FrameDecodeParam &params) { params.vd2DistanceThreshold = 0.0F; });

  session.runtime().SetPopoutFilterConfig(1, 0.05F, 0.0F, 0.0F);
  session.runtime().SetPopoutFilterFlag(true);
  ASSERT_TRUE(session.decode(1, 2));
  const auto left = count(*session.source, isReturn);
  EXPECT_LT(left, whole);
  session.runtime().SetPopoutFilterHighlight(true);
  ASSERT_TRUE(session.decode(1, 2));
  EXPECT_EQ(count(*session.source, isReturn), whole);
  EXPECT_EQ(count(*session.source, [](const SDKPointInfo &p) { return p.confidence == 255; }), whole - left);
  session.runtime().SetPopoutFilterFlag(false);
  ASSERT_TRUE(session.decode(1, 2));
  EXPECT_EQ(count(*session.source, [](const SDKPointInfo &p) { return p.confidence == 255; }), 0);

  session.runtime().SetPointCloudSmoothingFlag(true);
  EXPECT_TRUE(session.runtime().GetPointCloudSmoothingFlag());
}

}  // namespace
}  // namespace tarvo::lidar::test
