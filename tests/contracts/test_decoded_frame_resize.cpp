#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>

#include "contracts/runtime/decoded_frame_layout.h"
#include "contracts/runtime/decoded_frame_resize.h"

namespace {

using tarvo::DecodedFrame;

struct Shape {
  std::uint16_t packetsPerFrame;
  std::uint32_t pointsPerPacket;
  int frames;
  std::uint32_t capacity;
};

class ResizedFrame : public testing::TestWithParam<Shape> {};

TEST_P(ResizedFrame, HoldsHeadsPointsAndTailsOneAfterTheOtherAllZero) {
  const Shape shape = GetParam();
  DecodedFrame frame;
  frame.packetsPerFrame = shape.packetsPerFrame;
  frame.pointsPerPacket = shape.pointsPerPacket;
  frame.pointCount = 7;
  ASSERT_TRUE(resizeDecodedFrame(frame, shape.frames));

  EXPECT_EQ(frame.packetCapacity, shape.capacity);
  EXPECT_EQ(frame.pointCount, 0U);
  const auto *points = reinterpret_cast<std::byte *>(frame.points);
  const std::size_t pointBytes = std::size_t(shape.capacity) * shape.pointsPerPacket * 88;
  EXPECT_EQ(points - frame.packetHeads, std::ptrdiff_t(shape.capacity) * 12);
  EXPECT_EQ(frame.packetTails - points, std::ptrdiff_t(pointBytes));
  EXPECT_EQ(reinterpret_cast<std::uintptr_t>(points) % alignof(tarvo::SDKPointInfo), 0U);
  EXPECT_TRUE(std::all_of(frame.packetHeads, frame.packetTails + shape.capacity * 6,
                          [](std::byte b) { return b == std::byte{}; }));
  EXPECT_TRUE(std::all_of(frame.packetWords.get(), frame.packetWords.get() + shape.capacity,
                          [](std::uint32_t w) { return w == 0; }));
  // The last byte of everything can be written (the address sanitizer watches).
  frame.packetTails[shape.capacity * 6 - 1] = std::byte{1};
  frame.points[std::size_t(shape.capacity) * shape.pointsPerPacket - 1].channel = 9;
}

INSTANTIATE_TEST_SUITE_P(Shapes, ResizedFrame,
                         testing::Values(Shape{10, 32, 1, 10}, Shape{7, 3, 1, 7}, Shape{7, 3, 5, 35}, Shape{1, 1, 1, 1},
                                         Shape{10, 32, 0, 10}, Shape{10, 32, -4, 10}));

TEST(ResizedFrameFailure, FallsBackToOneFrameWhenTheStackDoesNotFit) {
  DecodedFrame frame;
  frame.packetsPerFrame = 60000;
  frame.pointsPerPacket = 128;
  EXPECT_FALSE(resizeDecodedFrame(frame, 100000));
  EXPECT_EQ(frame.packetCapacity, 60000U);
  EXPECT_NE(frame.points, nullptr);
}

TEST(ResizedFrameFailure, WithoutAPacketCountHasNoRoom) {
  DecodedFrame frame;
  frame.pointsPerPacket = 32;
  EXPECT_TRUE(resizeDecodedFrame(frame, 3));
  EXPECT_EQ(frame.packetCapacity, 0U);
  EXPECT_EQ(frame.points, nullptr);
}

}  // namespace
