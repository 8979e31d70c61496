#pragma once

#include <QPointer>
#include <QSet>
#include <QSharedPointer>
#include <mutex>

#include "contracts/host/functor.h"
#include "default/point_files/default_pcd_frame_render_buffer.h"
#include "default/point_files/point_file.h"

namespace tarvo::skarnvisor {

class DefaultPcdTrackBuffer;

/// The last stage of the point-cloud file pipeline: reads the current file and makes the frame of it.
class DefaultPcdParser : public Functor {
  Q_OBJECT
  Q_PROPERTY(tarvo::skarnvisor::DefaultPcdFrameRenderBuffer *defaultPcdFrameBuffer READ defaultPcdFrameBuffer CONSTANT)

 public:
  enum class Mode { Show, Save };

  Q_INVOKABLE explicit DefaultPcdParser(QObject *parent);
  Q_INVOKABLE DefaultPcdParser();
  ~DefaultPcdParser() override;

  /// Shows the render buffer's current file. Nothing happens without one. What the readers throw leaves it, and the
  /// former frame stays; so it does with a file that gave nothing, for which an exception is thrown at the end.
  void operator()() override;
  [[nodiscard]] virtual DefaultPcdFrameRenderBuffer *defaultPcdFrameBuffer() const { return m_renderBuffer.data(); }

  /// Reads `path` and shows it, or, for a PLY or PCD file in save mode, writes it as a BIN file into the render
  /// buffer's output folder. Any thread; runs take turns.
  void parse(const QString &path, Mode mode);

  /// Not owned; once, before the first run.
  void setTrack(DefaultPcdTrackBuffer *track);
  [[nodiscard]] DefaultPcdTrackBuffer *track() const;

 private:
  [[nodiscard]] PointFile::Result readFile(const QString &path);
  void tell(const QString &path, const QString &what);
  void show(const QString &path);
  void save(const QString &path) const;

  QSharedPointer<DefaultPcdFrameRenderBuffer> m_renderBuffer;
  QPointer<DefaultPcdTrackBuffer> m_track;
  std::mutex m_runMutex;  ///< serialises runs; guards the two below
  PointFile m_file;
  QSet<QString> m_toldPaths;  ///< that the log has a line for: frames are drawn again and again
};

}  // namespace tarvo::skarnvisor
