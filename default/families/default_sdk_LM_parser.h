#pragma once

#include "default/pipeline/default_sdk_parser.h"

namespace tarvo::skarnvisor {

/// The render buffer of the LM family.
class DefaultLMFrameRenderBuffer : public DefaultSDKFrameRenderBuffer {
  Q_OBJECT
  Q_PROPERTY(bool frameModelUseful READ frameModelUseful NOTIFY qmlControlChanged)
  Q_PROPERTY(bool useWeakEcho READ useWeakEcho NOTIFY qmlControlChanged)
  Q_PROPERTY(bool useEdgePointFilter READ useEdgePointFilter NOTIFY qmlControlChanged)
  Q_PROPERTY(bool useToggleGroundFilter READ useToggleGroundFilter NOTIFY qmlControlChanged)
  Q_PROPERTY(bool useOnlyShowRealChannel READ useOnlyShowRealChannel NOTIFY qmlControlChanged)
  Q_PROPERTY(bool usePixelChannelLayout READ usePixelChannelLayout NOTIFY qmlControlChanged)
  Q_PROPERTY(bool roadMarkerFilterFlag READ roadMarkerFilterFlag NOTIFY qmlControlChanged)

 public:
  using DefaultSDKFrameRenderBuffer::DefaultSDKFrameRenderBuffer;

  void addColumnAttribute(std::string name, int position) override;
  QString toolBoxSource() const override;
  QString modeEditorSource() const override;
  void updateMonitor(const unsigned char *block) override;

  // What QML reads through the properties of the same names.
  FamilyCapability frameModelUseful{familyCapabilities(), "frameModelUseful"};
  FamilyCapability useWeakEcho{familyCapabilities(), "useWeakEcho"};
  FamilyCapability useEdgePointFilter{familyCapabilities(), "useEdgePointFilter"};
  FamilyCapability useToggleGroundFilter{familyCapabilities(), "useToggleGroundFilter"};
  FamilyCapability useOnlyShowRealChannel{familyCapabilities(), "useOnlyShowRealChannel"};
  FamilyCapability usePixelChannelLayout{familyCapabilities(), "usePixelChannelLayout"};
  FamilyCapability roadMarkerFilterFlag{familyCapabilities(), "roadMarkerFilterFlag"};
};

/// Parser that owns the family's render buffer.
class DefaultLMParser : public DefaultSDKParser {
  Q_OBJECT

 public:
  Q_INVOKABLE explicit DefaultLMParser(QObject *parent);
  Q_INVOKABLE DefaultLMParser();
};

}  // namespace tarvo::skarnvisor
