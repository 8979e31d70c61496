#pragma once

#include <gtest/gtest.h>

#include <QSignalSpy>
#include <chrono>
#include <cstring>
#include <memory>
#include <stdexcept>
#include <string>
#include <vector>

#include "contracts/runtime/sdk_source.h"
#include "default/frame/half_float.h"
#include "default/frame/vertex.h"
#include "default/point_files/default_pcd_file_loader.h"
#include "default/point_files/default_pcd_parser.h"
#include "default/point_files/default_pcd_producer.h"
#include "tests/default_point_files/point_file_fixture.h"

namespace tarvo::skarnvisor::test {

/// The functors of one pipeline, wired as the loader wires them, without a host.
struct PointPipeline {
  DefaultPcdFileLoader loader;
  DefaultPcdProducer producer;
  DefaultPcdParser parser;
  DefaultPcdFrameRenderBuffer &buffer = *parser.defaultPcdFrameBuffer();
  DefaultPcdFileBuffer &clip = *loader.defaultPcdBuffer();
  std::shared_ptr<lidar::PlayState> playState;

  explicit PointPipeline(const QString &path = QString()) {
    auto source = QSharedPointer<FileSource>::create();
    source->path = path;
    playState = source->playState;
    buffer.setPlayState(playState);
    loader.setRenderBuffer(&buffer);
    loader.takeOver(source);
    loader.setStretch(std::chrono::hours(1));  // a scan is one run, however slow the machine
    producer.addSuccessor(&parser);
    producer.defaultPcdTrackBuffer()->addClip(&clip);
    parser.setTrack(producer.defaultPcdTrackBuffer());
    if (!path.isEmpty()) scan();
  }

  /// What the scan prints is returned.
  std::string scan() {
    testing::internal::CaptureStdout();
    loader();
    std::fflush(stdout);
    return testing::internal::GetCapturedStdout();
  }
  /// What left the parser is returned, as a host would show it; empty: nothing did.
  std::string showAt(double seconds) {
    producer.timeCursorToggle()->setTimeCursor(timeFromSeconds(seconds));
    producer();
    return run();
  }
  std::string showFile(const std::string &path) {
    buffer.setCurrentFile(QString::fromStdString(path));
    return run();
  }
  std::string run() {
    try {
      parser();
    } catch (const std::runtime_error &failure) {
      return failure.what();
    }
    return {};
  }

  [[nodiscard]] std::vector<Vertex> vertices() const {
    const QByteArray bytes = buffer.vertex();
    std::vector<Vertex> all(static_cast<std::size_t>(bytes.size()) / sizeof(Vertex));
    std::memcpy(all.data(), bytes.constData(), all.size() * sizeof(Vertex));
    return all;
  }
  [[nodiscard]] bool isHidden(std::size_t index) const { return vertices()[index].color == hiddenMark; }
  [[nodiscard]] float mainColor(std::size_t index) const {
    return floatFromHalf(static_cast<std::uint16_t>(vertices()[index].color));
  }
  [[nodiscard]] lidar::SDKPointInfo point(std::size_t index) const { return buffer.store().points[index]; }
};

/// A BIN file of these records.
inline std::string binFile(const std::string &name, const std::vector<std::string> &records) {
  std::string bytes = bytesOf(static_cast<std::uint32_t>(records.size()));
  for (const std::string &record : records) bytes += record;
  return writeFile(name, bytes);
}

}  // namespace tarvo::skarnvisor::test
