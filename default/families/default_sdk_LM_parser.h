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
  bool setCapability(std::string_view propertyName, bool on) override;

  bool frameModelUseful() const { return m_flags.frameModelUseful; }
  bool useWeakEcho() const { return m_flags.useWeakEcho; }
  bool useEdgePointFilter() const { return m_flags.useEdgePointFilter; }
  bool useToggleGroundFilter() const { return m_flags.useToggleGroundFilter; }
  bool useOnlyShowRealChannel() const { return m_flags.useOnlyShowRealChannel; }
  bool usePixelChannelLayout() const { return m_flags.usePixelChannelLayout; }
  bool roadMarkerFilterFlag() const { return m_flags.roadMarkerFilterFlag; }

 private:
  struct Flags {
    Relaxed<bool> frameModelUseful{false};
    Relaxed<bool> useWeakEcho{false};
    Relaxed<bool> useEdgePointFilter{false};
    Relaxed<bool> useToggleGroundFilter{false};
    Relaxed<bool> useOnlyShowRealChannel{false};
    Relaxed<bool> usePixelChannelLayout{false};
    Relaxed<bool> roadMarkerFilterFlag{false};
  };
  Flags m_flags;
};

/// Parser that owns the family's render buffer.
class DefaultLMParser : public DefaultSDKParser {
  Q_OBJECT

 public:
  Q_INVOKABLE explicit DefaultLMParser(QObject *parent);
  Q_INVOKABLE DefaultLMParser();
};

}  // namespace tarvo::skarnvisor
