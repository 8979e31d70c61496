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

  // What QML reads through the properties of the same names.
  FamilyCapability broadbandFilterFlag{familyCapabilities(), "broadbandFilterFlag"};
  FamilyCapability nbBloomingFilterFlag{familyCapabilities(), "nbBloomingFilterFlag"};
  FamilyCapability lidarStandbyModeFlag{familyCapabilities(), "lidarStandbyModeFlag"};
};

/// Parser that owns the family's render buffer.
class DefaultNBParser : public DefaultSDKParser {
  Q_OBJECT

 public:
  Q_INVOKABLE explicit DefaultNBParser(QObject *parent);
  Q_INVOKABLE DefaultNBParser();
};

}  // namespace tarvo::skarnvisor
