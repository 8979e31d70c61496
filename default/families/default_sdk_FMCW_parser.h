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
  bool setCapability(std::string_view propertyName, bool on) override;

  bool fmcwPostProcessUseful() const { return m_flags.fmcwPostProcessUseful; }

 private:
  struct Flags {
    Relaxed<bool> fmcwPostProcessUseful{true};
  };
  Flags m_flags;
};

/// Parser that owns the family's render buffer.
class DefaultFMCWParser : public DefaultSDKParser {
  Q_OBJECT

 public:
  Q_INVOKABLE explicit DefaultFMCWParser(QObject *parent);
  Q_INVOKABLE DefaultFMCWParser();
};

}  // namespace tarvo::skarnvisor
