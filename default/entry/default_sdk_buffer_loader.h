#pragma once

#include <QSharedPointer>
#include <QVariant>
#include <chrono>
#include <functional>
#include <string>

#include "contracts/host/functor.h"
#include "contracts/host/toggle.h"
#include "contracts/runtime/ornika_loader.h"
#include "contracts/runtime/sdk_source.h"
#include "default/pipeline/default_sdk_net_buffer.h"
#include "default/pipeline/sdk_source_owner.h"

namespace tarvo::skarnvisor {

struct FamilyRow;

/// Keeps the clip of a pipeline up to date, and owns its source.
class DefaultSDKNetLoader : public Functor, public SdkSourceOwner {
  Q_OBJECT
  Q_PROPERTY(tarvo::skarnvisor::DefaultSDKNetBuffer *defaultSDKNetBuffer READ defaultSDKNetBuffer CONSTANT)

 public:
  Q_INVOKABLE explicit DefaultSDKNetLoader(QObject *parent);
  Q_INVOKABLE DefaultSDKNetLoader();
  ~DefaultSDKNetLoader() override;

  /// One look at the source; the host repeats it as often as it needs a fresh view. Functor thread.
  void operator()() override;

  [[nodiscard]] virtual DefaultSDKNetBuffer *defaultSDKNetBuffer() const { return m_netBuffer.data(); }
  [[nodiscard]] SDKSource *ownedSource() const override { return m_sdkSource.data(); }

  /// Takes the source over and leaves `source` with what was held before. Once, on the thread of both objects, before
  /// the first run.
  void takeOver(QSharedPointer<SDKSource> &source);

 private:
  QSharedPointer<SDKSource> m_sdkSource;
  QSharedPointer<DefaultSDKNetBuffer> m_netBuffer;
};

/// Opens a lidar source: starts its runtime, asks the lidar's type, and builds the pipeline of the type's family as a
/// sub-category of the loader's own category. Its work blocks the functor thread for as long as the start takes.
class DefaultSDKLoader : public Functor {
  Q_OBJECT
  Q_PROPERTY(tarvo::skarnvisor::InputSDKToggle *inputSDKToggle READ inputSDKToggle CONSTANT)

 public:
  Q_INVOKABLE explicit DefaultSDKLoader(QObject *parent);
  Q_INVOKABLE DefaultSDKLoader();
  ~DefaultSDKLoader() override;

  /// Opens the toggle's source. A start that fails ends the run with nothing built, and leaves the source in the
  /// toggle.
  /// @throws std::runtime_error when the host cannot make the pipeline; nothing stays behind
  void operator()() override;

  [[nodiscard]] virtual InputSDKToggle *inputSDKToggle() const { return m_inputSDKToggle.data(); }

  /// The lidar type table for reading by people, as describeLidarTypes() gives it. Any thread.
  Q_INVOKABLE QVariantList lidarTypes() const;

  /// Replaces how the wait for the start passes its time; takes the length of one pause.
  void setPause(std::function<void(std::chrono::milliseconds)> pause) { m_pause = std::move(pause); }

 private:
  struct Parts;

  [[nodiscard]] bool awaitStart(const SDKSource &source) const;
  int buildPipeline(const FamilyRow &family, const std::string &type, int port);
  void wire(const FamilyRow &family, const std::string &type, int port);
  void connectRerun(const Parts &parts);
  void handOver(const Parts &parts, SDKSource &source);
  void describeTrack(const Parts &parts, const SDKSource &source, const std::string &type, int port);
  void configure(const FamilyRow &family, const Parts &parts, SDKSource &source, const std::string &type);

  lidar::OrnikaLoader m_ornikaLoader;
  QSharedPointer<InputSDKToggle> m_inputSDKToggle;
  std::function<void(std::chrono::milliseconds)> m_pause;
};

}  // namespace tarvo::skarnvisor
