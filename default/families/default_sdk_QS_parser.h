#pragma once

#include "default/pipeline/default_sdk_parser.h"

namespace tarvo::skarnvisor {

/// The render buffer of the QS family.
class DefaultQSFrameRenderBuffer : public DefaultSDKFrameRenderBuffer {
  Q_OBJECT
  Q_PROPERTY(bool retroConfFilterUse READ retroConfFilterUse NOTIFY qmlControlChanged)
  Q_PROPERTY(bool qs4_4LidarChooseUse READ qs4_4LidarChooseUse NOTIFY qmlControlChanged)
  Q_PROPERTY(bool qswDragPointFilter READ qswDragPointFilter NOTIFY qmlControlChanged)
  Q_PROPERTY(bool qswDirtyDiagnostic READ qswDirtyDiagnostic NOTIFY qmlControlChanged)

 public:
  using DefaultSDKFrameRenderBuffer::DefaultSDKFrameRenderBuffer;

  void addColumnAttribute(std::string name, int position) override;
  QString toolBoxSource() const override;
  bool setCapability(std::string_view propertyName, bool on) override;

  bool retroConfFilterUse() const { return m_flags.retroConfFilterUse; }
  bool qs4_4LidarChooseUse() const { return m_flags.qs4_4LidarChooseUse; }
  bool qswDragPointFilter() const { return m_flags.qswDragPointFilter; }
  bool qswDirtyDiagnostic() const { return m_flags.qswDirtyDiagnostic; }

 private:
  struct Flags {
    Relaxed<bool> retroConfFilterUse{false};
    Relaxed<bool> qs4_4LidarChooseUse{false};
    Relaxed<bool> qswDragPointFilter{false};
    Relaxed<bool> qswDirtyDiagnostic{false};
  };
  Flags m_flags;
};

/// Parser that owns the family's render buffer.
class DefaultQSParser : public DefaultSDKParser {
  Q_OBJECT

 public:
  Q_INVOKABLE explicit DefaultQSParser(QObject *parent);
  Q_INVOKABLE DefaultQSParser();
};

}  // namespace tarvo::skarnvisor
