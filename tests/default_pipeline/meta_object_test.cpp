// The names, types and signals that QML binds to.
#include "default/pipeline/default_sdk_frame_render_buffer.h"

#include <QMetaMethod>
#include <QMetaProperty>

#include <gtest/gtest.h>

#include <string>

namespace tarvo::skarnvisor::test {
namespace {

/// What QML binds to, by the signal that announces it: "r" or "w" as it may be written, its type and its name.
struct Announced {
  const char *notify;  ///< "" for none
  const char *properties;
};

constexpr Announced announced[]{
    {"vertexChanged", "r QByteArray vertex, r int primitiveCount, r int laserCount, r QByteArray laserPoints"},
    {"renderStateChanged",
     "r int stackFrameNum, w bool selectEnabled, w QMatrix4x4 selectionMatrix, w bool spreadSheetEnabled, "
     "w bool monitorViewEnabled, w bool faultmessageViewEnabled, w double frameSeconds, w float rgbMin, "
     "w float rgbMaxLong, w bool rgbAutoScale, w float rgbAutoScaleHighPercent, w float areaMax, "
     "r bool intensityMapFlag, w bool coordinateTransformEnabled, w float coordinateTransformYaw"},
    {"frameNumberChanged", "r int frameNumber"},
    {"remakeConfigChanged", "w bool remakeConfig"},
    {"spreadSheetModelChanged", "r QAbstractTableModel* spreadSheetModel"},
    {"colorModeTitlesChanged", "r QStringList colorModeTitles"},
    {"colorModeChanged", "w int colorMode"},
    {"colorModeSplitWindowChanged", "w int colorModeSplitWindow"},
    {"", "w bool statusEnabled"},
    {"statusChanged", "r QString status"},
    {"channelModelChanged", "r QAbstractTableModel* channelModel"},
    {"monitorModelChanged", "r QAbstractTableModel* monitorModel"},
    {"faultmessageModelChanged", "r QAbstractTableModel* faultmessageModel"},
    {"playByFrameChanged", "w bool playByFrame"},
    {"distanceCorrectionStateChanged", "w int distanceCorrectionState"},
    {"splitWindowChanged", "r bool splitWindow"},
    {"toolBoxSourceChanged", "r QString toolBoxSource"},
    {"modeEditorSourceChanged", "r QString modeEditorSource"},
    {"initialFunctionSourceChanged", "r QString initialFunctionSource"},
    {"useCudaChanged", "w int useCuda"},
    {"imuConfigChanged", "w int imuConfig"},
    {"imuDataChanged", "r QList<double> imuData"},
    {"fileDirChanged",
     "r QString correctionFileDir, r QString firetimesFileDir, r QString channelEqFileDir, "
     "r QString channelConfigFileDir, r QString DcfFileDir, r QString nonlinearMappingFileDir"},
    {"qmlControlChanged", "r QString nonlinearMappingPath, r float areaRemapFullScale, r bool rgbDualFocusScaleFlag"},
    {"useRgbModeChanged", "r int useRgbMode"},
    {"rgbOverlayVertexChanged", "r QByteArray rgbOverlayVertex, r bool rgbOverlayVisible"},
};

TEST(MetaObject, PropertiesHaveTheNamesTypesAndSignalsThatQmlBindsTo) {
  const QMetaObject &meta = DefaultSDKFrameRenderBuffer::staticMetaObject;
  for (const Announced &row : announced) {
    for (const QString &entry : QString::fromLatin1(row.properties).split(", ")) {
      const QMetaProperty property = meta.property(meta.indexOfProperty(entry.section(' ', -1).toLatin1().constData()));
      EXPECT_EQ(
          (property.isWritable() ? "w " : "r ") + QString::fromLatin1(property.typeName()) + " " + property.name(),
          entry);
      EXPECT_EQ(property.notifySignal().name().toStdString(), row.notify) << entry.toStdString();
    }
  }
}

TEST(MetaObject, CapabilitiesStartAsTheConstructorLeavesThem) {
  DefaultSDKFrameRenderBuffer rb;
  const char *const names =
      "monitorViewUseful firetimesUseful faultmessageViewUsed reflectanceMappingFlag channelConfigUseful "
      "dirtyMappingReflectanceUsefulFlag frameDurationFlag frameNumberFlag remakeAndQuantifyFlag groundFiterFlag "
      "d2DViewUsed dcfUseful nonlinearMappingUseful useBlindChannels vd8PopoutFilterFlag vd2OfflineFilter "
      "pointCloudSmoothing coordinateTransformUseful vd2DistanceFilter yfnNoiseFilter elevationFovFilterFlag "
      "vd8OffineFilterFlag";
  for (const QString &entry : QString::fromLatin1(names).split(' ')) {
    const std::string name = entry.toStdString();
    const bool onAtStart = name == "firetimesUseful" || name == "useBlindChannels";
    EXPECT_EQ(rb.property(name.c_str()), QVariant(onAtStart)) << name;
    const auto &meta = *rb.metaObject();
    EXPECT_EQ(meta.property(meta.indexOfProperty(name.c_str())).notifySignal().name(), "qmlControlChanged") << name;
    EXPECT_TRUE(rb.setCapability(name, !onAtStart)) << name;
    EXPECT_EQ(rb.property(name.c_str()), QVariant(!onAtStart)) << name;
  }
  EXPECT_FALSE(rb.setCapability("noSuchFlag", true));
  rb.setProperty("statusEnabled", true);
  EXPECT_EQ(rb.property("statusEnabled"), QVariant(false));
}

TEST(MetaObject, SignalsStandInTheirOrder) {
  const QMetaObject &meta = DefaultSDKFrameRenderBuffer::staticMetaObject;
  QByteArrayList names;
  for (int i = meta.methodOffset(); meta.method(i).methodType() == QMetaMethod::Signal && i < meta.methodCount(); ++i)
    if (!names.contains(meta.method(i).name())) names << meta.method(i).name();
  EXPECT_EQ(names.join(' ').toStdString(),
            "remakeConfigChanged vertexChanged statusChanged renderStateChanged someSignalReceived "
            "allSignalReceived spreadSheetModelChanged colorModeChanged colorModeTitlesChanged "
            "colorModeSplitWindowChanged echoModelChanged channelModelChanged playByFrameChanged "
            "distanceCorrectionStateChanged monitorModelChanged splitWindowChanged filterModelChanged "
            "qmlControlChanged faultmessageModelChanged toolBoxSourceChanged modeEditorSourceChanged "
            "initialFunctionSourceChanged useCudaChanged imuConfigChanged imuDataChanged fileDirChanged "
            "useRgbModeChanged rgbOverlayVertexChanged frameNumberChanged frameAllocationStarted "
            "frameAllocationFinished");
}

}  // namespace
}  // namespace tarvo::skarnvisor::test
