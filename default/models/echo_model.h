#pragma once

#include "default/models/settings_value.h"

#include <QObject>
#include <QStringList>

namespace tarvo::skarnvisor {

/// Names the return mode of the current frame and lists the echoes that it can show. The parser
/// stores the mode, the GUI thread reads the names.
class EchoModel : public QObject {
  Q_OBJECT
  Q_PROPERTY(QStringList echoTitles READ echoTitles NOTIFY echoTitlesChanged)
  Q_PROPERTY(int echoDisplayMode READ echoDisplayMode WRITE setEchoDisplayMode)

 public:
  Q_INVOKABLE explicit EchoModel(QObject *parent);
  Q_INVOKABLE EchoModel() : EchoModel(nullptr) {}

  QStringList echoTitles() const;

  /// Always 0: the selector starts afresh with each reading.
  int echoDisplayMode() const { return 0; }
  void setEchoDisplayMode(int mode) { m_echoDisplayMode = mode; }

  /// Return mode code of a frame, as the lidar reports it. A new code raises echoTitlesChanged.
  void setReturnMode(unsigned char code);

  /// Stores the code without a signal; true when it is a new one.
  bool storeReturnMode(unsigned char code);

  /// Name of the mode for the status text; "0x" and hexadecimal digits for an unknown code.
  QString returnModeName() const;

  /// Order in which mode 59 names its echoes.
  void setFirstBeforeLast(bool firstBeforeLast) { m_firstBeforeLast = firstBeforeLast; }

 Q_SIGNALS:
  void echoTitlesChanged();

 private:
  Relaxed<unsigned char> m_returnMode{0};
  Relaxed<int> m_echoDisplayMode{0};
  Relaxed<bool> m_firstBeforeLast{false};
};

}  // namespace tarvo::skarnvisor
