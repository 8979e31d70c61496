#pragma once

#include <QMatrix4x4>
#include <QObject>
#include <QPointer>
#include <QString>
#include <QStringList>

#include "app/render/vertex_bytes.h"
#include "app/render/word_colors.h"

namespace tarvo::skarnvisor::app {

/// Which of the two colour values of a point is looked at.
enum class ColorHalf { Main, SplitWindow };

/// What the program knows of a plug-in's render buffer, read and written through its meta-object. A property that the
/// buffer lacks reads as empty, 0 or false. Used on the GUI thread, and by the one thread in the background that a
/// window has for what takes longer, which ends before the buffer does.
class RenderView {
 public:
  RenderView() = default;
  /// Observes the buffer; after its end everything reads as empty.
  explicit RenderView(QObject *buffer) : m_buffer(buffer) {}

  bool isEmpty() const { return m_buffer.isNull(); }
  QObject *buffer() const { return m_buffer; }
  /// All arrays that hold a vertex, oldest first; the bytes are the caller's own.
  VertexCloud cloud() const;
  /// Of a stack of frames, the ones that came last; else the whole picture.
  VertexCloud newestCloud() const;
  /// Vertex arrays that make up the picture: 1, or the slots of a stack's ring, some of them empty.
  int canvasCount() const;
  /// The slot that was written last.
  int writtenCanvas() const;
  /// Vertices of one array, without copying them.
  int canvasPoints(int index) const;
  /// One array; the bytes are the caller's own.
  QByteArray canvas(int index) const;
  QStringList colorTitles() const;
  QString colorTitle(ColorHalf half) const;
  /// Title as the buffer lists it, whatever its case; false for one that it does not list.
  bool setColor(ColorHalf half, const QString &title);
  WordKind wordKind(ColorHalf half) const;
  /// Where the points stand in the scene: turned by roll, pitch and yaw, then moved, while the coordinate transform is
  /// on. The vertices themselves keep the sensor's coordinates.
  QMatrix4x4 placement() const;
  /// Rows of the channel table, 0 before the first frame.
  int channelCount() const;
  /// True: the pipeline goes by frames; false: by the time window that ends at the cursor.
  void setPlayByFrame(bool byFrame);
  /// Text of the lidar's own state, for reading by people.
  QString status() const;

 private:
  QVariant value(const char *property) const;

  QPointer<QObject> m_buffer;
};

}  // namespace tarvo::skarnvisor::app
