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

  // What QML reads through the properties of the same names.
  FamilyCapability retroConfFilterUse{familyCapabilities(), "retroConfFilterUse"};
  FamilyCapability qs4_4LidarChooseUse{familyCapabilities(), "qs4_4LidarChooseUse"};
  FamilyCapability qswDragPointFilter{familyCapabilities(), "qswDragPointFilter"};
  FamilyCapability qswDirtyDiagnostic{familyCapabilities(), "qswDirtyDiagnostic"};
};

/// Parser that owns the family's render buffer.
class DefaultQSParser : public DefaultSDKParser {
  Q_OBJECT

 public:
  Q_INVOKABLE explicit DefaultQSParser(QObject *parent);
  Q_INVOKABLE DefaultQSParser();
};

}  // namespace tarvo::skarnvisor
