#pragma once

#include "default/pipeline/default_sdk_parser.h"

namespace tarvo::skarnvisor {

/// The render buffer of the KR family, and of the NB and colour models that decode through its pipeline.
class DefaultKRFrameRenderBuffer : public DefaultSDKFrameRenderBuffer {
  Q_OBJECT
  Q_PROPERTY(bool frameModelUseful READ frameModelUseful NOTIFY qmlControlChanged)
  Q_PROPERTY(bool displayModeKr2HudFlag READ displayModeKr2HudFlag NOTIFY qmlControlChanged)
  Q_PROPERTY(bool LidarStandbyModeFlag READ LidarStandbyModeFlag NOTIFY qmlControlChanged)
  Q_PROPERTY(bool setConfidence0FilterFlag READ setConfidence0FilterFlag NOTIFY qmlControlChanged)
  Q_PROPERTY(bool setLidarReturnModeFlag READ setLidarReturnModeFlag NOTIFY qmlControlChanged)
  Q_PROPERTY(bool nbqSmoothingFlag READ nbqSmoothingFlag NOTIFY qmlControlChanged)
  Q_PROPERTY(bool nbqRgbModeFlag READ nbqRgbModeFlag NOTIFY qmlControlChanged)
  Q_PROPERTY(bool roadMarkerFilterFlag READ roadMarkerFilterFlag NOTIFY qmlControlChanged)
  Q_PROPERTY(bool bankReflectivityFilterFlag READ bankReflectivityFilterFlag NOTIFY qmlControlChanged)
  Q_PROPERTY(bool energyDeductFilterFlag READ energyDeductFilterFlag NOTIFY qmlControlChanged)
  Q_PROPERTY(bool subChannelFilterFlag READ subChannelFilterFlag NOTIFY qmlControlChanged)
  Q_PROPERTY(bool nbBloomingFilterFlag READ nbBloomingFilterFlag NOTIFY qmlControlChanged)
  Q_PROPERTY(bool nbNoiseFilterFlag READ nbNoiseFilterFlag NOTIFY qmlControlChanged)
  Q_PROPERTY(bool rtlEgOrderKFlag READ rtlEgOrderKFlag NOTIFY qmlControlChanged)
  Q_PROPERTY(bool ispFlag READ ispFlag NOTIFY qmlControlChanged)
  Q_PROPERTY(bool rgbDisplay1260Flag READ rgbDisplay1260Flag NOTIFY qmlControlChanged)
  Q_PROPERTY(bool rgbDisplayLayoutFlag READ rgbDisplayLayoutFlag NOTIFY qmlControlChanged)
  Q_PROPERTY(bool areaRemapFlag READ areaRemapFlag NOTIFY qmlControlChanged)

 public:
  using DefaultSDKFrameRenderBuffer::DefaultSDKFrameRenderBuffer;

  void setLidarType(std::string lidarType) override;
  void addColumnAttribute(std::string name, int position) override;
  QString toolBoxSource() const override;
  QString modeEditorSource() const override;
  void updateMonitor(const unsigned char *block) override;
  bool setCapability(std::string_view propertyName, bool on) override;

  bool frameModelUseful() const { return m_flags.frameModelUseful; }
  bool displayModeKr2HudFlag() const { return m_flags.displayModeKr2HudFlag; }
  bool LidarStandbyModeFlag() const { return m_flags.LidarStandbyModeFlag; }
  bool setConfidence0FilterFlag() const { return m_flags.setConfidence0FilterFlag; }
  bool setLidarReturnModeFlag() const { return m_flags.setLidarReturnModeFlag; }
  bool nbqSmoothingFlag() const { return m_flags.nbqSmoothingFlag; }
  bool nbqRgbModeFlag() const { return m_flags.nbqRgbModeFlag; }
  bool roadMarkerFilterFlag() const { return m_flags.roadMarkerFilterFlag; }
  bool bankReflectivityFilterFlag() const { return m_flags.bankReflectivityFilterFlag; }
  bool energyDeductFilterFlag() const { return m_flags.energyDeductFilterFlag; }
  bool subChannelFilterFlag() const { return m_flags.subChannelFilterFlag; }
  bool nbBloomingFilterFlag() const { return m_flags.nbBloomingFilterFlag; }
  bool nbNoiseFilterFlag() const { return m_flags.nbNoiseFilterFlag; }
  bool rtlEgOrderKFlag() const { return m_flags.rtlEgOrderKFlag; }
  bool ispFlag() const { return m_flags.ispFlag; }
  bool rgbDisplay1260Flag() const { return m_flags.rgbDisplay1260Flag; }
  bool rgbDisplayLayoutFlag() const { return m_flags.rgbDisplayLayoutFlag; }
  bool areaRemapFlag() const { return m_flags.areaRemapFlag; }

 protected:
  void redrawCalibrated() override;

 private:
  struct Flags {
    Relaxed<bool> frameModelUseful{false};
    Relaxed<bool> displayModeKr2HudFlag{false};
    Relaxed<bool> LidarStandbyModeFlag{false};
    Relaxed<bool> setConfidence0FilterFlag{false};
    Relaxed<bool> setLidarReturnModeFlag{false};
    Relaxed<bool> nbqSmoothingFlag{false};
    Relaxed<bool> nbqRgbModeFlag{false};
    Relaxed<bool> roadMarkerFilterFlag{false};
    Relaxed<bool> bankReflectivityFilterFlag{false};
    Relaxed<bool> energyDeductFilterFlag{false};
    Relaxed<bool> subChannelFilterFlag{false};
    Relaxed<bool> nbBloomingFilterFlag{false};
    Relaxed<bool> nbNoiseFilterFlag{false};
    Relaxed<bool> rtlEgOrderKFlag{false};
    Relaxed<bool> ispFlag{false};
    Relaxed<bool> rgbDisplay1260Flag{false};
    Relaxed<bool> rgbDisplayLayoutFlag{false};
    Relaxed<bool> areaRemapFlag{false};
  };
  Flags m_flags;
};

/// Parser that owns the family's render buffer.
class DefaultKRParser : public DefaultSDKParser {
  Q_OBJECT

 public:
  Q_INVOKABLE explicit DefaultKRParser(QObject *parent);
  Q_INVOKABLE DefaultKRParser();
};

}  // namespace tarvo::skarnvisor
