#pragma once

#include "contracts/runtime/sdk_source.h"
#include "default/pipeline/default_sdk_parser.h"
#include "tests/support/inert_runtime.h"
#include "tests/support/log_lines.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cstring>
#include <memory>
#include <string>
#include <vector>

namespace tarvo::skarnvisor::test {

using tarvo::lidar::SDKPointInfo;

/// Corrections of four channels and an export that can be told to fail; the rest refuses.
class ParserRuntime : public tarvo::test::InertRuntime {
 public:
  bool IsCorrectionLoadSuccess() const override { return corrected; }
  int GetCorrectionViewCapacity() const override { return 4; }
  bool GetCorrectionView(float **azimuths, float **elevations, bool **displayed) override {
    *azimuths = m_azimuths.data();
    *elevations = m_elevations.data();
    *displayed = shown.data();
    return true;
  }
  int ExportCorrectionsFile(const std::string &path, int) override {
    exported.push_back(path);
    return exportResult;
  }
  void ApplyRemakeDefaultConfig() override {
    params.write([](auto &p) {
      p.remake.elevationCells = 3;
      p.remake.mergedFrames = 0;
    });
  }

  bool corrected = false;
  int exportResult = 0;
  std::vector<std::string> exported;
  std::array<bool, 4> shown{true, true, true, true};

 private:
  std::array<float, 4> m_azimuths{1.0F, 2.0F, 3.0F, 4.0F};
  std::array<float, 4> m_elevations{-1.0F, -2.0F, -3.0F, -4.0F};
};

/// Names of the signals of a render buffer in the order in which they come.
class SignalLog {
 public:
  explicit SignalLog(DefaultSDKFrameRenderBuffer &rb) {
    using Rb = DefaultSDKFrameRenderBuffer;
    const auto note = [&](auto signal, const char *name) {
      QObject::connect(
          &rb, signal, &m_context, [this, name] { names.push_back(name); }, Qt::DirectConnection);
    };
    note(&Rb::remakeConfigChanged, "remakeConfigChanged");
    note(&Rb::vertexChanged, "vertexChanged");
    note(&Rb::renderStateChanged, "renderStateChanged");
    note(&Rb::someSignalReceived, "someSignalReceived");
    note(&Rb::allSignalReceived, "allSignalReceived");
    note(&Rb::spreadSheetModelChanged, "spreadSheetModelChanged");
    note(&Rb::colorModeChanged, "colorModeChanged");
    note(&Rb::colorModeTitlesChanged, "colorModeTitlesChanged");
    note(&Rb::colorModeSplitWindowChanged, "colorModeSplitWindowChanged");
    note(&Rb::channelModelChanged, "channelModelChanged");
    note(&Rb::qmlControlChanged, "qmlControlChanged");
    note(&Rb::faultmessageModelChanged, "faultmessageModelChanged");
    note(&Rb::useCudaChanged, "useCudaChanged");
    note(&Rb::imuConfigChanged, "imuConfigChanged");
    note(&Rb::imuDataChanged, "imuDataChanged");
    note(&Rb::rgbOverlayVertexChanged, "rgbOverlayVertexChanged");
    note(&Rb::frameNumberChanged, "frameNumberChanged");
    note(&Rb::frameAllocationStarted, "frameAllocationStarted");
    QObject::connect(
        &rb, &Rb::frameAllocationFinished, &m_context,
        [this](bool success, int frames, const QString &message) {
          names.push_back(std::string(success ? "finished " : "failed ") + std::to_string(frames) + ": " +
                          message.toStdString());
        },
        Qt::DirectConnection);
  }

  /// What came since the last call.
  std::vector<std::string> take() { return std::exchange(names, {}); }

  std::vector<std::string> names;

 private:
  QObject m_context;
};

/// A parser with its own render buffer, and a source of hand-made points.
class ParserTest : public testing::Test {
 protected:
  ParserTest() {
    runtime = new ParserRuntime;
    source.runtime = runtime;
    runtime->frame.laserCount = 128;
    rb.setSource(&source);
    rb.setLidarType("VD8");
  }

  static SDKPointInfo point(float x, float y, float z, std::uint16_t channel = 1) {
    SDKPointInfo p{};
    p.x = x;
    p.y = y;
    p.z = z;
    p.channel = channel;
    p.distance = 1.0F;
    p.intensity = 64;
    return p;
  }

  void give(std::vector<SDKPointInfo> points) {
    const std::lock_guard lock(source.frameLock);
    source.pointCount = static_cast<int>(points.size());
    source.points = std::move(points);
  }

  void parse() { parser(); }

  std::vector<Vertex> vertices() const {
    const QByteArray bytes = rb.vertex();
    std::vector<Vertex> out(static_cast<std::size_t>(bytes.size()) / sizeof(Vertex));
    std::memcpy(out.data(), bytes.constData(), out.size() * sizeof(Vertex));
    return out;
  }

  tarvo::lidar::SDKSource source;
  ParserRuntime *runtime = nullptr;  ///< owned by the source
  DefaultSDKParser parser{nullptr};
  DefaultSDKFrameRenderBuffer &rb = *parser.defaultSDKFrameBuffer();
  SignalLog log{rb};
};

using Names = std::vector<std::string>;

}  // namespace tarvo::skarnvisor::test
