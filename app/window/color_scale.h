#pragma once

#include <QHash>
#include <QObject>
#include <QStringList>
#include <QVariantList>
#include <atomic>

#include "app/session/render_view.h"
#include "app/window/buffer_calls.h"
#include "app/window/canvas_scene.h"

namespace tarvo::skarnvisor::app {

/// Colour mode, ramp and range of one view, and the legend that tells them. A range follows the first frame after a
/// change of mode, unless the user locked it; a locked range belongs to its mode and holds in every capture.
/// GUI thread.
class ColorScale : public QObject {
  Q_OBJECT
  Q_PROPERTY(int mode READ mode WRITE setMode NOTIFY changed)
  Q_PROPERTY(QString title READ title NOTIFY changed)
  Q_PROPERTY(QString ramp READ ramp WRITE setRamp NOTIFY changed)
  Q_PROPERTY(bool locked READ isLocked WRITE setLocked NOTIFY changed)
  /// Ends of the range in the attribute's own unit.
  Q_PROPERTY(double low READ low WRITE setLow NOTIFY changed)
  Q_PROPERTY(double high READ high WRITE setHigh NOTIFY changed)
  /// Of the ends; empty where the attribute has none.
  Q_PROPERTY(QString unit READ unit NOTIFY changed)
  /// The colour words hold an attribute whose range the user can choose.
  Q_PROPERTY(bool ranged READ isRanged NOTIFY changed)
  Q_PROPERTY(bool rgb READ isRgb NOTIFY changed)
  Q_PROPERTY(QString legendTitle READ legendTitle NOTIFY changed)
  /// Values at equal steps from the low to the high end.
  Q_PROPERTY(QStringList legendTicks READ legendTicks NOTIFY changed)
  Q_PROPERTY(QVariantList legendColors READ legendColors NOTIFY changed)

 public:
  /// The buffer's colour mode is set by `calls`: the points that are shown are coloured anew with it.
  ColorScale(ColorHalf half, BufferCalls &calls, QObject *parent);

  /// A new buffer, or none.
  void takeUp(const RenderView &view);
  /// New vertices: measures the range if that is due.
  void measure(const VertexCloud &cloud, bool shown);
  const ViewColors &colors() const { return m_colors; }

  int mode() const;
  void setMode(int mode);
  /// Of the mode that was asked for last, which the buffer may not have taken up yet.
  QString title() const { return m_requested.isEmpty() ? m_view.colorTitle(m_half) : m_requested; }
  QString ramp() const { return m_colors.ramp.name(); }
  void setRamp(const QString &name);
  bool isLocked() const { return m_locked.contains(title()); }
  void setLocked(bool locked);
  double low() const;
  void setLow(double value);
  double high() const;
  void setHigh(double value);
  QString unit() const;
  bool isRanged() const { return m_colors.words == WordKind::LowHalf || m_colors.words == WordKind::HighHalf; }
  bool isRgb() const { return m_colors.words == WordKind::Rgb; }
  QString legendTitle() const;
  QStringList legendTicks() const;
  QVariantList legendColors() const;
  /// Spreads the ramp over what the picture holds now.
  Q_INVOKABLE void fit();

 public Q_SLOTS:
  /// The modes or their list changed in the buffer.
  void refresh();

 Q_SIGNALS:
  void changed();
  /// The buffer has the mode that was asked for; its points have their colours.
  void modeTaken();
  /// The range must be measured on the picture as it is.
  void fitRequested();

 private:
  void setRange(double low, double high);

  const ColorHalf m_half;
  BufferCalls &m_calls;
  RenderView m_view;
  ViewColors m_colors;
  QString m_requested;  ///< mode on its way to the buffer; empty: none
  std::atomic<int> m_requests{0};
  QString m_measuredTitle;  ///< mode that the range was measured for; empty: not measured
  QHash<QString, ValueRange> m_locked;
};

}  // namespace tarvo::skarnvisor::app
