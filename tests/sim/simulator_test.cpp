#include "tools/sim/simulator.h"

#include <arpa/inet.h>
#include <gtest/gtest.h>
#include <sys/socket.h>
#include <unistd.h>

#include <cmath>
#include <filesystem>
#include <map>
#include <numbers>
#include <set>
#include <sstream>

#include "tests/sim/capture_reader.h"
#include "tools/sim/capture_file.h"
#include "tools/sim/sensor.h"
#include "tools/sim/udp_stream.h"

namespace {

using namespace tarvo::lidar::sim;
using capture_reader::at;
using capture_reader::Bytes;
using capture_reader::Packet;

class MemorySink final : public PacketSink {
 public:
  void take(std::span<const std::uint8_t> payload, std::uint64_t stampNs) override {
    packets.push_back({stampNs, 2368, Bytes(payload.begin(), payload.end())});
  }
  void finish() override { finished = true; }

  std::vector<Packet> packets;
  bool finished = false;
};

Options small() {
  Options options;
  options.channels = 16;
  options.columns = 90;
  options.frames = 3;
  return options;
}

std::vector<Packet> packetsOf(const Options &options) {
  MemorySink sink;
  simulate(options, sink, captureStartNs);
  EXPECT_TRUE(sink.finished);
  return std::move(sink.packets);
}

std::vector<Bytes> payloadsOf(const std::vector<Packet> &packets) {
  std::vector<Bytes> out;
  for (const Packet &packet : packets) out.push_back(packet.payload);
  return out;
}

unsigned kindOf(const Packet &packet) { return packet.payload.at(5); }
std::uint32_t sequenceOf(const Packet &packet) { return at<std::uint32_t>(packet.payload, 8); }
std::uint32_t frameOf(const Packet &packet) { return at<std::uint32_t>(packet.payload, 12); }

struct ReadPoint {
  unsigned channel = 0, column = 0, echo = 0;
  double azimuthDeg = 0, distance = 0;
  unsigned intensity = 0;
};

/// Points of all packets, by the offsets of docs/capture-format.md.
std::vector<ReadPoint> pointsOf(const std::vector<Packet> &packets) {
  std::vector<ReadPoint> points;
  for (const Packet &packet : packets) {
    if (kindOf(packet) != 2) continue;
    const Bytes &p = packet.payload;
    const unsigned records = at<std::uint16_t>(p, 36), blocks = at<std::uint16_t>(p, 38), recordSize = p.at(44);
    const double unit = at<std::uint16_t>(p, 40) * 1e-6;
    for (unsigned b = 0; b < blocks; ++b) {
      const std::size_t block = 48 + b * (16 + records * recordSize);
      const unsigned count = at<std::uint16_t>(p, block + 12);
      for (unsigned i = 0; i < count; ++i) {
        const std::size_t record = block + 16 + i * recordSize;
        points.push_back({at<std::uint16_t>(p, block + 10) + i, at<std::uint16_t>(p, block + 8), p.at(block + 14),
                          at<std::int32_t>(p, block) * 1e-6, at<std::uint16_t>(p, record) * unit, p.at(record + 2)});
      }
    }
  }
  return points;
}

/// The text that the runs of one calibration kind join to.
std::string calibrationText(const std::vector<Packet> &packets, unsigned kind) {
  std::string text;
  for (const Packet &packet : packets) {
    if (kindOf(packet) != 9 || packet.payload.at(32) != kind || frameOf(packet) != 0) continue;
    text.resize(at<std::uint32_t>(packet.payload, 36));
    text.replace(at<std::uint32_t>(packet.payload, 40), at<std::uint16_t>(packet.payload, 34),
                 std::string(packet.payload.begin() + 52, packet.payload.end()));
  }
  return text;
}

class SimulatorFiles : public testing::Test {
 protected:
  SimulatorFiles()
      : folder(std::filesystem::temp_directory_path() / ("skarnvisor-sim-test-" + std::to_string(::getpid()))) {
    std::filesystem::create_directories(folder);
  }
  ~SimulatorFiles() override { std::filesystem::remove_all(folder); }

  [[nodiscard]] std::size_t fileCount() const {
    return static_cast<std::size_t>(std::distance(std::filesystem::directory_iterator(folder), {}));
  }

  std::filesystem::path folder;
};

TEST(Simulator, GivesTheSameBytesForTheSameOptionsOnAnyNumberOfThreads) {
  Options options = small();
  options.telemetry = options.faults = options.imu = options.overlay = true;
  options.threads = 1;
  const auto one = payloadsOf(packetsOf(options));
  options.threads = 3;
  EXPECT_EQ(one, payloadsOf(packetsOf(options)));
  options.seed = 2;
  EXPECT_NE(one, payloadsOf(packetsOf(options)));
}

TEST(Simulator, FramesHaveADescriptorFirstAllTheirPointsAndAnEnd) {
  for (const unsigned channels : {16u, 300u}) {
    Options options = small();
    options.channels = channels;
    options.echoes = 2;
    const auto packets = packetsOf(options);
    std::map<std::uint32_t, std::vector<Packet>> frames;
    for (std::size_t i = 0; i < packets.size(); ++i) {
      EXPECT_EQ(sequenceOf(packets[i]), i);
      EXPECT_LE(packets[i].payload.size(), 1206u);
      if (i > 0) {
        EXPECT_GT(packets[i].stampNs, packets[i - 1].stampNs);
      }
      frames[frameOf(packets[i])].push_back(packets[i]);
    }
    ASSERT_EQ(frames.size(), 3u);
    for (const auto &[number, frame] : frames) {
      const Bytes &first = frame.front().payload;
      ASSERT_EQ(kindOf(frame.front()), 1u);
      EXPECT_EQ(at<std::uint16_t>(first, 32), channels);
      EXPECT_EQ(std::string(first.begin() + 96, first.begin() + 96 + first.at(83)), "KR2");
      EXPECT_EQ(at<std::uint64_t>(first, 16), captureStartNs + number * 100'000'000ull);
      unsigned pointPackets = 0;
      for (const Packet &packet : frame) {
        pointPackets += kindOf(packet) == 2;
        EXPECT_EQ(packet.payload.at(30), &packet == &frame.back() ? 1 : 0) << "only the last packet ends the frame";
      }
      EXPECT_EQ(pointPackets, at<std::uint16_t>(first, 46));
      std::set<std::tuple<unsigned, unsigned, unsigned>> seen;
      for (const ReadPoint &point : pointsOf(frame)) seen.insert({point.column, point.echo, point.channel});
      EXPECT_EQ(seen.size(), std::size_t{channels} * options.columns * 2) << "each channel once a column and return";
    }
  }
}

TEST(Simulator, AWallStandsWhereItIsWithTheCorrectionsOfTheCapture) {
  Options options = small();
  options.scene = "wall";
  options.columns = 720;
  options.frames = 1;
  options.noiseMetres = 0;
  const auto packets = packetsOf(options);
  std::map<unsigned, std::pair<double, double>> angles;
  std::istringstream lines(calibrationText(packets, 0));
  std::string line;
  std::getline(lines, line);
  ASSERT_EQ(line, "channel,elevation,azimuth");
  while (std::getline(lines, line)) {
    unsigned channel = 0;
    double elevation = 0, azimuth = 0;
    ASSERT_EQ(std::sscanf(line.c_str(), "%u,%lf,%lf", &channel, &elevation, &azimuth), 3);
    angles[channel] = {elevation, azimuth};
  }
  ASSERT_EQ(angles.size(), 16u);
  unsigned onWall = 0, onGround = 0;
  for (const ReadPoint &point : pointsOf(packets)) {
    if (point.distance <= 0) continue;
    const double elevation = angles[point.channel].first * std::numbers::pi / 180;
    const double azimuth = (point.azimuthDeg + angles[point.channel].second) * std::numbers::pi / 180;
    const double y = point.distance * std::cos(elevation) * std::cos(azimuth);
    const double z = point.distance * std::sin(elevation);
    const bool wall = std::abs(y - 20.0) < 0.003;
    const bool ground = std::abs(z + 1.8) < 0.003;
    EXPECT_TRUE(wall || ground) << "channel " << point.channel << " at " << point.azimuthDeg << ": y " << y << ", z "
                                << z;
    onWall += wall;
    onGround += ground;
  }
  EXPECT_GT(onWall, 1000u);
  EXPECT_GT(onGround, 1000u);
}

TEST(Simulator, SecondReturnsLieBehindTheFirst) {
  Options options = small();
  options.columns = 720;
  options.channels = 32;
  options.frames = 1;
  options.echoes = 2;
  options.returnMode = 58;  // first and second
  options.noiseMetres = 0;
  std::map<std::pair<unsigned, unsigned>, double> first;
  unsigned pairs = 0;
  for (const ReadPoint &point : pointsOf(packetsOf(options))) {
    if (point.echo == 1)
      first[{point.column, point.channel}] = point.distance;
    else if (point.distance > 0) {
      EXPECT_GE(point.distance, (first[{point.column, point.channel}]));
      ++pairs;
    }
  }
  EXPECT_GT(pairs, 100u);
}

TEST(Simulator, LossLeavesGapsAndDisorderLosesNothing) {
  Options options = small();
  options.frames = 20;
  const std::size_t all = packetsOf(options).size();
  options.loss = 0.2;
  const auto lossy = packetsOf(options);
  EXPECT_NEAR(static_cast<double>(lossy.size()), 0.8 * static_cast<double>(all), 0.08 * static_cast<double>(all));
  options.loss = 0;
  options.reorder = 0.2;
  std::set<std::uint32_t> seen;
  unsigned stepsBack = 0;
  std::uint64_t stamp = 0;
  std::uint32_t last = 0;
  for (const Packet &packet : packetsOf(options)) {
    stepsBack += !seen.empty() && sequenceOf(packet) < last;
    last = sequenceOf(packet);
    seen.insert(last);
    EXPECT_GE(packet.stampNs, stamp);
    stamp = packet.stampNs;
  }
  EXPECT_EQ(seen.size(), all);
  EXPECT_GT(stepsBack, all / 20);
}

TEST(Simulator, TypesSendWhatTheirFamilyReads) {
  struct Case {
    const char *type;
    unsigned recordSize;
    std::set<unsigned> kinds;  ///< beside descriptor and points
    unsigned faultSize;
    int rgbMode;
  };
  const Case cases[] = {
      {"KR2", 6, {3, 4, 5, 6, 9}, 210, 0},         {"Ornika210", 9, {3, 4, 5, 6, 9}, 6, 0},
      {"NBQ_TU_410", 20, {3, 4, 5, 6, 9}, 210, 0}, {"NBQ_COLOR_V3", 20, {3, 4, 5, 6, 9}, 210, 1},
      {"FMCW_V3", 20, {3, 4, 5, 6, 9}, 6, 0},      {"OrnikaQS5", 10, {3, 4, 5, 6, 8, 9}, 6, 0},
  };
  for (const Case &c : cases) {
    Options options = small();
    options.type = c.type;
    options.frames = 1;
    options.telemetry = options.faults = options.imu = true;
    std::set<unsigned> kinds;
    for (const Packet &packet : packetsOf(options)) {
      kinds.insert(kindOf(packet));
      if (kindOf(packet) == 1) {
        EXPECT_EQ(at<std::int32_t>(packet.payload, 60), c.rgbMode) << c.type;
      } else if (kindOf(packet) == 2) {
        EXPECT_EQ(packet.payload.at(44), c.recordSize) << c.type;
      } else if (kindOf(packet) == 4) {
        EXPECT_EQ(at<std::uint16_t>(packet.payload, 32), c.faultSize) << c.type;
      }
    }
    std::set<unsigned> expected = c.kinds;
    expected.insert({1, 2});
    EXPECT_EQ(kinds, expected) << c.type;
  }
}

TEST(Simulator, LeavesOutWhatIsNotAskedFor) {
  Options options = small();
  options.calibrationInside = false;
  for (const Packet &packet : packetsOf(options)) EXPECT_LE(kindOf(packet), 2u);
}

TEST_F(SimulatorFiles, EveryFormHoldsTheSamePacketsWithRightChecksumsAndStamps) {
  const Options options = small();
  const auto expected = packetsOf(options);
  struct Case {
    CaptureForm form;
    std::uint64_t resolutionNs;
  };
  for (const Case &c : {Case{CaptureForm::Pcap, 1}, {CaptureForm::PcapMicroseconds, 1000}, {CaptureForm::PcapNg, 1}}) {
    Options asked = options;
    asked.form = c.form;
    asked.port = 5000;
    asked.out = folder / "capture";
    run(asked);
    EXPECT_EQ(fileCount(), 1u) << "the temporary file is gone";
    const auto read = capture_reader::readCapture(asked.out);
    ASSERT_EQ(read.size(), expected.size());
    for (std::size_t i = 0; i < read.size(); ++i) {
      EXPECT_EQ(read[i].payload, expected[i].payload);
      EXPECT_EQ(read[i].port, 5000);
      EXPECT_EQ(read[i].stampNs, expected[i].stampNs / c.resolutionNs * c.resolutionNs);
    }
  }
}

TEST_F(SimulatorFiles, TheSampleCaptureStaysUnderSixtyMegabytes) {
  Options options;  // the street of the first start, of which one second is written
  options.seconds = 1;
  options.telemetry = options.faults = options.imu = true;
  options.out = folder / "sample.pcap";
  run(options);
  EXPECT_LT(std::filesystem::file_size(options.out) * 10, 60u << 20);
}

TEST_F(SimulatorFiles, AFailureLeavesNothingBehind) {
  Options options = small();
  options.out = folder / "missing" / "capture.pcap";
  EXPECT_THROW(run(options), std::runtime_error);
  {
    CaptureFile file(folder / "half.pcap", CaptureForm::Pcap, 2368, 1);
    file.take(Bytes(100), captureStartNs);
  }
  EXPECT_EQ(fileCount(), 0u);
}

TEST_F(SimulatorFiles, CorrectionsOfTheLidarCanBeHadAsAFile) {
  Options options = small();
  options.correctionsOut = folder / "corrections.csv";
  run(options);
  const Bytes text = capture_reader::fileBytes(options.correctionsOut);
  EXPECT_EQ(std::string(text.begin(), text.end()), calibrationText(packetsOf(small()), 0));
}

TEST(SimulatorStream, ArrivesWholeInOrderAndInRealTime) {
  const int receiver = ::socket(AF_INET, SOCK_DGRAM, 0);
  ASSERT_GE(receiver, 0);
  const int bytes = 4 << 20;
  ::setsockopt(receiver, SOL_SOCKET, SO_RCVBUF, &bytes, sizeof bytes);
  sockaddr_in address{};
  address.sin_family = AF_INET;
  address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
  socklen_t length = sizeof address;
  ASSERT_EQ(::bind(receiver, reinterpret_cast<sockaddr *>(&address), length), 0);
  ASSERT_EQ(::getsockname(receiver, reinterpret_cast<sockaddr *>(&address), &length), 0);

  Options options = small();
  options.streamHost = "127.0.0.1";
  options.streamPort = ntohs(address.sin_port);
  const auto begin = std::chrono::steady_clock::now();
  run(options);  // short enough for the socket's buffer to hold all of it
  EXPECT_GE(std::chrono::steady_clock::now() - begin, std::chrono::milliseconds(250));

  const std::size_t expected = packetsOf(small()).size();
  Bytes buffer(2048);
  for (std::size_t i = 0; i < expected; ++i) {
    const auto size = ::recv(receiver, buffer.data(), buffer.size(), MSG_DONTWAIT);
    ASSERT_GT(size, 32) << "packet " << i << " of " << expected;
    EXPECT_EQ(at<std::uint32_t>(buffer, 8), i);
  }
  EXPECT_LT(::recv(receiver, buffer.data(), buffer.size(), MSG_DONTWAIT), 0);
  ::close(receiver);
}

TEST(SimulatorOptions, AreReadOrRefusedWithAnErrorCode) {
  struct Case {
    std::vector<const char *> arguments;
    bool proceed;
    bool success;
  };
  const Case cases[] = {
      {{"--out", "x.pcap"}, true, true},
      {{"--stream", "localhost:2368", "--seconds", "0"}, true, true},
      {{"--list-scenes"}, true, true},
      {{"--help"}, false, true},
      {{}, false, false},
      {{"--out", "x.pcap", "--nonsense"}, false, false},
      {{"--out", "x.pcap", "--scene", "moon"}, false, false},
      {{"--out", "x.pcap", "--channels", "0"}, false, false},
      {{"--out", "x.pcap", "--channels", "many"}, false, false},
      {{"--out", "x.pcap", "--echoes", "3"}, false, false},
      {{"--out", "x.pcap", "--loss", "1.5"}, false, false},
      {{"--out", "x.pcap", "--type", ""}, false, false},
      {{"--out", "x.pcap", "--seconds", "0"}, false, false},
      {{"--out", "x.pcap", "--stream", "localhost:1"}, false, false},
      {{"--stream", "localhost"}, false, false},
      {{"--stream", "localhost:0"}, false, false},
      {{"--stream", "localhost:70000"}, false, false},
      {{"--stream", "localhost:12x"}, false, false},
  };
  for (const Case &c : cases) {
    std::vector<const char *> arguments{"skarnvisor-sim"};
    arguments.insert(arguments.end(), c.arguments.begin(), c.arguments.end());
    Options options;
    const ParseOutcome outcome = parseOptions(static_cast<int>(arguments.size()), arguments.data(), options);
    EXPECT_EQ(outcome.proceed, c.proceed) << testing::PrintToString(c.arguments);
    EXPECT_EQ(outcome.exitCode == 0, c.success) << testing::PrintToString(c.arguments);
  }
}

}  // namespace
