#pragma once

#include "default/pipeline/default_sdk_parser.h"

namespace tarvo::skarnvisor {

/// The render buffer of the FMCW family.
class DefaultFMCWFrameRenderBuffer : public DefaultSDKFrameRenderBuffer {
  Q_OBJECT
  Q_PROPERTY(bool fmcwPostProcessUseful READ fmcwPostProcessUseful NOTIFY qmlControlChanged)

 public:
  using DefaultSDKFrameRenderBuffer::DefaultSDKFrameRenderBuffer;

  void addColumnAttribute(std::string name, int position) override;
  QString toolBoxSource() const override;

  // What QML reads through the properties of the same names.
  FamilyCapability fmcwPostProcessUseful{familyCapabilities(), "fmcwPostProcessUseful", true};
};

/// Parser that owns the family's render buffer.
class DefaultFMCWParser : public DefaultSDKParser {
  Q_OBJECT

 public:
  Q_INVOKABLE explicit DefaultFMCWParser(QObject *parent);
  Q_INVOKABLE DefaultFMCWParser();
};

}  // namespace tarvo::skarnvisor
