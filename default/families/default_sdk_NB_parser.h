#pragma once

#include "default/pipeline/default_sdk_parser.h"

namespace tarvo::skarnvisor {

/// The render buffer of the NB types that have a pipeline of their own.
class DefaultNBFrameRenderBuffer : public DefaultSDKFrameRenderBuffer {
  Q_OBJECT
  Q_PROPERTY(bool broadbandFilterFlag READ broadbandFilterFlag NOTIFY qmlControlChanged)
  Q_PROPERTY(bool nbBloomingFilterFlag READ nbBloomingFilterFlag NOTIFY qmlControlChanged)
  Q_PROPERTY(bool lidarStandbyModeFlag READ lidarStandbyModeFlag NOTIFY qmlControlChanged)

 public:
  using DefaultSDKFrameRenderBuffer::DefaultSDKFrameRenderBuffer;

  void addColumnAttribute(std::string name, int position) override;
  QString toolBoxSource() const override;
  bool setCapability(std::string_view propertyName, bool on) override;

  bool broadbandFilterFlag() const { return m_flags.broadbandFilterFlag; }
  bool nbBloomingFilterFlag() const { return m_flags.nbBloomingFilterFlag; }
  bool lidarStandbyModeFlag() const { return m_flags.lidarStandbyModeFlag; }

 private:
  struct Flags {
    Relaxed<bool> broadbandFilterFlag{false};
    Relaxed<bool> nbBloomingFilterFlag{false};
    Relaxed<bool> lidarStandbyModeFlag{false};
  };
  Flags m_flags;
};

/// Parser that owns the family's render buffer.
class DefaultNBParser : public DefaultSDKParser {
  Q_OBJECT

 public:
  Q_INVOKABLE explicit DefaultNBParser(QObject *parent);
  Q_INVOKABLE DefaultNBParser();
};

}  // namespace tarvo::skarnvisor
