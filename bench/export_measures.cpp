// What a user takes away: points and tables written to a file, and what the open table costs while frames play.

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include <cmath>
#include <memory>
#include <stdexcept>
#include <vector>

#include "bench/measure.h"
#include "contracts/runtime/sdk_source.h"
#include "default/pipeline/default_sdk_parser.h"
#include "tests/support/inert_runtime.h"

namespace tarvo::skarnvisor::bench {

using lidar::SDKPointInfo;

namespace {

constexpr std::size_t pointCount = 1'000'000;

/// A frame of visible points that was parsed, and a folder in memory, so that no disk is measured.
struct Shown {
  lidar::SDKSource source;
  DefaultSDKParser parser{nullptr};
  DefaultSDKFrameRenderBuffer &buffer = *parser.defaultSDKFrameBuffer();
  QTemporaryDir folder{(QDir("/dev/shm").exists() ? QStringLiteral("/dev/shm") : QDir::tempPath()) +
                       "/skarnvisor-XXXXXX"};
  QByteArray bytes;

  Shown() {
    source.runtime = new tarvo::test::InertRuntime;
    buffer.setSource(&source);
    buffer.setLidarType("VD8");
    source.points.resize(pointCount);
    for (std::size_t i = 0; i < pointCount; ++i) {
      SDKPointInfo &point = source.points[i];
      const float azimuth = static_cast<float>(i % 2000) * 0.18F;
      const float range = 5.0F + static_cast<float>(i * 7919 % 20'000) * 0.01F;
      point.timeNs = static_cast<std::uint32_t>(i * 100);
      point.azimuth = azimuth;
      point.azimuthCalib = azimuth + 0.0137F;
      point.elevation = static_cast<float>(i / 2000) * 0.05F - 12.0F;
      point.elevationCalib = point.elevation + 0.0071F;
      point.distance = range;
      point.x = range * std::sin(azimuth * 0.0174533F);
      point.y = range * std::cos(azimuth * 0.0174533F);
      point.z = range * std::sin(point.elevation * 0.0174533F);
      point.channel = static_cast<std::uint16_t>(i / 2000 % 128 + 1);
      point.intensity = static_cast<std::uint16_t>(i * 31 % 256);
      point.confidence = static_cast<std::uint16_t>(i % 200);
    }
    source.pointCount = static_cast<int>(pointCount);
    parser();
  }

  QString path(const char *name) const { return folder.filePath(QString::fromLatin1(name)); }
  /// Takes up what was written once, for the floor.
  void keep(bool written, const char *name) {
    QFile file(path(name));
    if (!written || !file.open(QIODevice::ReadOnly)) throw std::runtime_error("nothing to measure was written");
    bytes = file.readAll();
  }
  /// What no export can do without: its bytes given to the file.
  void writeBytes() const {
    QFile file(path("floor"));
    if (!file.open(QIODevice::WriteOnly | QIODevice::Unbuffered) || file.write(bytes) != bytes.size())
      throw std::runtime_error("the floor could not be written");
  }
};

Bodies exportPcd() {
  const auto shown = std::make_shared<Shown>();
  const auto write = [shown] { return shown->buffer.capture2PCD(shown->path("points.pcd")); };
  shown->keep(write(), "points.pcd");
  return {[write] { write(); }, [shown] { shown->writeBytes(); }};
}

Bodies exportCsv() {
  const auto shown = std::make_shared<Shown>();
  shown->buffer.spreadSheetModel().setAllDisplayed(true);
  shown->buffer.refreshSelectionDisplay();
  const auto write = [shown] {
    return shown->buffer.spreadSheetModel().exportPointsInformation(shown->path("points.csv"));
  };
  shown->keep(write(), "points.csv");
  return {[write] { write(); }, [shown] { shown->writeBytes(); }};
}

Bodies refreshPlaying() {
  const auto shown = std::make_shared<Shown>();
  shown->source.playState->playing = true;
  shown->buffer.spreadSheetModel().setAllDisplayed(true);
  return {[shown] { shown->buffer.refreshSelectionDisplay(); }, [shown] { shown->parser(); }};
}

}  // namespace

void addExportMeasures(std::vector<Measure> &measures) {
  measures.push_back({"export_pcd", "1,000,000 visible points, default fields, to a file in memory", exportPcd});
  measures.push_back({"export_csv", "1,000,000 rows of twelve columns, to a file in memory", exportCsv});
  measures.push_back(
      {"refresh_spreadsheet_playing", "1,000,000 visible points listed, beside one parse of them", refreshPlaying});
}

}  // namespace tarvo::skarnvisor::bench
