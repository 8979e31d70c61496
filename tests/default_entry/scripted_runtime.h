#pragma once

#include <QObject>
#include <QSharedPointer>
#include <chrono>
#include <string>
#include <vector>

#include "contracts/runtime/parallel_isp_engine.h"
#include "contracts/runtime/sdk_source.h"
#include "default/pipeline/default_sdk_frame_render_buffer.h"
#include "default/pipeline/default_sdk_net_buffer.h"
#include "default/pipeline/default_sdk_producer.h"
#include "tests/support/inert_runtime.h"

namespace tarvo::skarnvisor::test {

/// A runtime that notes what it is asked to do and answers as the test says.
class ScriptedRuntime : public tarvo::test::InertRuntime {
 public:
  enum class Answer { Ready, ReadyLater, Never, Refused };

  explicit ScriptedRuntime(SDKSource &source) : m_source(source) {}

  bool Init(const lidar::DriverParam &param) override {
    started = param;
    return true;
  }
  bool GetInitFinish(lidar::SvSdkInitFinish question) const override {
    if (question == lidar::SvSdkInitFinish::Failed) return startFails;
    return !startFails && startPolls-- <= 0;
  }
  int GetLidarNum() const override { return 40; }
  int GetChannelNum() const override { return 64; }
  int GetPcapPort() const override { return 2368; }
  bool IsFiretimesLoadSuccess() const override { return true; }
  void SetCorrectionLoadFlag(bool loaded) override { correctionFlag = loaded; }

  bool Iterate(double begin, double end) override {
    windows.emplace_back(begin, end);
    return answerNow();
  }
  bool Iterate(int first, int count) override {
    runs.emplace_back(first, count);
    return answerNow();
  }
  int FindFrameId(double seconds) const override {
    asked.push_back(seconds);
    return frameUnderCursor;
  }
  bool HasPreParser() const override { return preParser; }
  int GetFrameCount() const override { return frames; }
  double GetFrameStartSeconds(int frame) const override { return 1000.0 + 0.1 * frame; }

  bool CutPcap(const std::string &path, double begin, double end) override {
    cuts.push_back(path + " " + std::to_string(begin) + " " + std::to_string(end));
    return !refuseCut;
  }
  bool CutPcap(const std::string &path, int first, int last) override {
    cuts.push_back(path + " " + std::to_string(first) + " " + std::to_string(last));
    return !refuseCut;
  }
  bool StartRecordPcap(const std::string &path) override {
    recordings.push_back(path);
    return false;
  }
  void StopRecordPcap() override { recordings.push_back("stop"); }
  void SetStopRecv(bool stop) override { stopped.push_back(stop); }

  Answer answer = Answer::Ready;
  int frameUnderCursor = 0;
  int frames = 0;
  bool preParser = true;
  bool refuseCut = false;
  bool startFails = false;
  mutable int startPolls = 0;  ///< questions to answer with "not yet"
  lidar::DriverParam started;
  bool correctionFlag = false;
  std::vector<std::pair<double, double>> windows;
  std::vector<std::pair<int, int>> runs;
  mutable std::vector<double> asked;
  std::vector<std::string> cuts;
  std::vector<std::string> recordings;
  std::vector<bool> stopped;

 private:
  bool answerNow() {
    if (answer == Answer::Ready) m_source.frameReady = true;
    return answer != Answer::Refused;
  }

  SDKSource &m_source;
};

/// An image-signal engine that notes the pulls and answers as the test says.
class ScriptedEngine : public lidar::ParallelIspEngine {
 public:
  bool Enabled() const override { return enabled; }
  std::int64_t LastDisplayedSeq() const override { return displayed; }
  std::int64_t NextDisplaySeq() const override { return displayed + 1; }
  bool IsMipiRawAbsoluteMode() const override { return rawMode; }
  bool ConsumeForcePull() override { return std::exchange(forced, false); }
  void RequestForcePull() override { forced = true; }
  bool DisplayPullAndFill(SDKSource *source, bool latest) override {
    pulls.push_back(latest ? "latest" : "next");
    return deliver(*source, displayed + 1);
  }
  bool DisplayPullTargetAndFill(SDKSource *source, std::int64_t sequence, int timeoutMs) override {
    pulls.push_back(std::to_string(sequence) + " within " + std::to_string(timeoutMs));
    return deliver(*source, sequence);
  }
  void ClearAll(std::int64_t sequence) override {
    pulls.push_back("clear " + std::to_string(sequence));
    displayed = sequence - 1;
  }

  bool enabled = true;
  bool rawMode = false;
  bool forced = false;
  bool delivers = true;
  int pointsOfPull = 10;
  std::int64_t displayed = -1;
  std::vector<std::string> pulls;

 private:
  bool deliver(SDKSource &source, std::int64_t sequence) {
    if (!delivers) return false;
    source.pointCount = pointsOfPull;
    displayed = sequence;
    return true;
  }
};

/// A source with a scripted runtime, held the way the net loader holds it.
class SourceHolder : public QObject, public SdkSourceOwner {
 public:
  SourceHolder() : source(new SDKSource), runtime(new ScriptedRuntime(*source)) {
    source->runtime = runtime;
    source->driverParam.sourceKind = static_cast<int>(lidar::SourceKind::CaptureFile);
    source->clipActive = true;
  }
  SDKSource *ownedSource() const override { return source.data(); }

  QSharedPointer<SDKSource> source;
  ScriptedRuntime *runtime;  ///< owned by the source
};

/// Producer, track, clip and render buffer around a scripted source, without a host.
struct ScriptedPipeline {
  ScriptedPipeline() : clip(&holder), producer(nullptr) {
    renderBuffer.setSource(holder.source.data());
    producer.setRenderBuffer(&renderBuffer);
    track().setRuntime(holder.runtime);
    track().addClip(&clip);
    track().setPause([this](std::chrono::milliseconds pause) {
      pauses.push_back(pause);
      if (pauses.size() == readyAfterPauses) holder.source->frameReady = true;
    });
  }

  DefaultSDKTrackBuffer &track() { return *producer.defaultSDKTrackBuffer(); }
  ScriptedRuntime &runtime() { return *holder.runtime; }
  SDKSource &source() { return *holder.source; }

  /// One run of the producer at a frame. True: the parser has something new.
  bool run(int frameUnderCursor, bool playing) {
    runtime().frameUnderCursor = frameUnderCursor;
    source().playState->playing = playing;
    renderBuffer.flow().skipParse = false;
    producer();
    return !renderBuffer.flow().skipParse;
  }

  SourceHolder holder;
  DefaultSDKFrameRenderBuffer renderBuffer;
  DefaultSDKNetBuffer clip;
  DefaultSDKProducer producer;
  std::vector<std::chrono::milliseconds> pauses;
  std::size_t readyAfterPauses = 0;
};

}  // namespace tarvo::skarnvisor::test
