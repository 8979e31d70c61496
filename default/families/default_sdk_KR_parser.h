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

  // What QML reads through the properties of the same names.
  FamilyCapability frameModelUseful{familyCapabilities(), "frameModelUseful"};
  FamilyCapability displayModeKr2HudFlag{familyCapabilities(), "displayModeKr2HudFlag"};
  FamilyCapability LidarStandbyModeFlag{familyCapabilities(), "LidarStandbyModeFlag"};
  FamilyCapability setConfidence0FilterFlag{familyCapabilities(), "setConfidence0FilterFlag"};
  FamilyCapability setLidarReturnModeFlag{familyCapabilities(), "setLidarReturnModeFlag"};
  FamilyCapability nbqSmoothingFlag{familyCapabilities(), "nbqSmoothingFlag"};
  FamilyCapability nbqRgbModeFlag{familyCapabilities(), "nbqRgbModeFlag"};
  FamilyCapability roadMarkerFilterFlag{familyCapabilities(), "roadMarkerFilterFlag"};
  FamilyCapability bankReflectivityFilterFlag{familyCapabilities(), "bankReflectivityFilterFlag"};
  FamilyCapability energyDeductFilterFlag{familyCapabilities(), "energyDeductFilterFlag"};
  FamilyCapability subChannelFilterFlag{familyCapabilities(), "subChannelFilterFlag"};
  FamilyCapability nbBloomingFilterFlag{familyCapabilities(), "nbBloomingFilterFlag"};
  FamilyCapability nbNoiseFilterFlag{familyCapabilities(), "nbNoiseFilterFlag"};
  FamilyCapability rtlEgOrderKFlag{familyCapabilities(), "rtlEgOrderKFlag"};
  FamilyCapability ispFlag{familyCapabilities(), "ispFlag"};
  FamilyCapability rgbDisplay1260Flag{familyCapabilities(), "rgbDisplay1260Flag"};
  FamilyCapability rgbDisplayLayoutFlag{familyCapabilities(), "rgbDisplayLayoutFlag"};
  FamilyCapability areaRemapFlag{familyCapabilities(), "areaRemapFlag"};

 protected:
  void redrawCalibrated() override;
};

/// Parser that owns the family's render buffer.
class DefaultKRParser : public DefaultSDKParser {
  Q_OBJECT

 public:
  Q_INVOKABLE explicit DefaultKRParser(QObject *parent);
  Q_INVOKABLE DefaultKRParser();
};

}  // namespace tarvo::skarnvisor
