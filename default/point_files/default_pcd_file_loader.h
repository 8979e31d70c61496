#pragma once

#include <QPointer>
#include <QSharedPointer>
#include <chrono>
#include <memory>

#include "contracts/host/functor.h"
#include "contracts/host/toggle.h"
#include "default/point_files/default_pcd_file_buffer.h"
#include "default/point_files/point_file_scan.h"

namespace tarvo::skarnvisor {

class DefaultPcdFrameRenderBuffer;

/// Scans the folder of its source into the frames of its clip, and owns both.
class DefaultPcdFileLoader : public Functor {
  Q_OBJECT
  Q_PROPERTY(tarvo::skarnvisor::DefaultPcdFileBuffer *defaultPcdBuffer READ defaultPcdBuffer CONSTANT)

 public:
  Q_INVOKABLE explicit DefaultPcdFileLoader(QObject *parent);
  Q_INVOKABLE DefaultPcdFileLoader();
  ~DefaultPcdFileLoader() override;

  /// Adds what the folder holds to the clip; a run behind the one that came to its end adds it again. A folder that
  /// takes longer than the stretch is looked through in several runs, each of which asks for the next, so that the
  /// first frames show meanwhile; the clip is loading until the last. Functor thread.
  void operator()() override;
  /// For how long a run looks; once, before the first run.
  void setStretch(std::chrono::milliseconds stretch) { m_stretch = stretch; }
  [[nodiscard]] virtual DefaultPcdFileBuffer *defaultPcdBuffer() const { return m_clip.data(); }
  /// Takes the source over and leaves `source` with what was held before. Once, on the thread of both objects, before
  /// the first run.
  virtual void takeOver(QSharedPointer<FileSource> &source);

  /// Null before `takeOver`.
  [[nodiscard]] FileSource *source() const { return m_source.data(); }
  /// Not owned; set once, before the first run.
  void setRenderBuffer(DefaultPcdFrameRenderBuffer *renderBuffer);
  [[nodiscard]] DefaultPcdFrameRenderBuffer *renderBuffer() const;

 Q_SIGNALS:
  void onPcapSourceSet();

 private:
  QPointer<DefaultPcdFrameRenderBuffer> m_renderBuffer;
  QSharedPointer<FileSource> m_source;
  QSharedPointer<DefaultPcdFileBuffer> m_clip;
  std::chrono::milliseconds m_stretch{100};
  std::unique_ptr<PointFileScan> m_scan;  ///< under way; functor thread
};

}  // namespace tarvo::skarnvisor
