#pragma once

#include "contracts/host/buffer.h"

namespace tarvo::skarnvisor {

/// What the canvas draws of one pipeline.
class RenderBuffer : public Buffer {
  Q_OBJECT
  Q_PROPERTY(QString renderSource READ renderSource CONSTANT)
  Q_PROPERTY(bool controlSelected READ controlSelected WRITE setControlSelected NOTIFY controlSelectedChanged)

 public:
  explicit RenderBuffer(QObject *parent = nullptr);
  ~RenderBuffer() override;

  /// QML file that the host loads to draw this buffer; "" in the base.
  [[nodiscard]] virtual QString renderSource() const;
  /// Called on the GUI thread before the QML side drops the buffer; no stage of the pipeline runs any more.
  virtual void prepareForQmlRemoval();

  [[nodiscard]] bool controlSelected() const { return m_controlSelected; }

 public Q_SLOTS:
  /// Whether the user has this buffer's track selected.
  void setControlSelected(bool selected);

 Q_SIGNALS:
  void controlSelectedChanged();

 private:
  bool m_controlSelected = false;
};

}  // namespace tarvo::skarnvisor
