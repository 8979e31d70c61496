// The names, types and signals that QML binds to.
#include "default/pipeline/default_sdk_frame_render_buffer.h"

#include <QMetaMethod>
#include <QMetaProperty>

#include <gtest/gtest.h>

#include <string>

namespace tarvo::skarnvisor::test {
namespace {

struct PropertyRow {
  const char *name;
  const char *type;
  bool writable;
  const char *notify;  ///< "" for none
};

constexpr PropertyRow properties[]{
    {"vertex", "QByteArray", false, "vertexChanged"},
    {"primitiveCount", "int", false, "vertexChanged"},
    {"stackFrameNum", "int", false, "renderStateChanged"},
    {"frameNumber", "int", false, "frameNumberChanged"},
    {"laserCount", "int", false, "vertexChanged"},
    {"laserPoints", "QByteArray", false, "vertexChanged"},
    {"remakeConfig", "bool", true, "remakeConfigChanged"},
    {"selectEnabled", "bool", true, "renderStateChanged"},
    {"selectionMatrix", "QMatrix4x4", true, "renderStateChanged"},
    {"spreadSheetEnabled", "bool", true, "renderStateChanged"},
    {"spreadSheetModel", "QAbstractTableModel*", false, "spreadSheetModelChanged"},
    {"colorModeTitles", "QStringList", false, "colorModeTitlesChanged"},
    {"colorMode", "int", true, "colorModeChanged"},
    {"colorModeSplitWindow", "int", true, "colorModeSplitWindowChanged"},
    {"statusEnabled", "bool", true, ""},
    {"status", "QString", false, "statusChanged"},
    {"channelModel", "QAbstractTableModel*", false, "channelModelChanged"},
    {"monitorModel", "QAbstractTableModel*", false, "monitorModelChanged"},
    {"faultmessageModel", "QAbstractTableModel*", false, "faultmessageModelChanged"},
    {"playByFrame", "bool", true, "playByFrameChanged"},
    {"distanceCorrectionState", "int", true, "distanceCorrectionStateChanged"},
    {"monitorViewEnabled", "bool", true, "renderStateChanged"},
    {"splitWindow", "bool", false, "splitWindowChanged"},
    {"faultmessageViewEnabled", "bool", true, "renderStateChanged"},
    {"frameSeconds", "double", true, "renderStateChanged"},
    {"toolBoxSource", "QString", false, "toolBoxSourceChanged"},
    {"modeEditorSource", "QString", false, "modeEditorSourceChanged"},
    {"initialFunctionSource", "QString", false, "initialFunctionSourceChanged"},
    {"useCuda", "int", true, "useCudaChanged"},
    {"imuConfig", "int", true, "imuConfigChanged"},
    {"imuData", "QList<double>", false, "imuDataChanged"},
    {"correctionFileDir", "QString", false, "fileDirChanged"},
    {"firetimesFileDir", "QString", false, "fileDirChanged"},
    {"channelEqFileDir", "QString", false, "fileDirChanged"},
    {"channelConfigFileDir", "QString", false, "fileDirChanged"},
    {"DcfFileDir", "QString", false, "fileDirChanged"},
    {"nonlinearMappingFileDir", "QString", false, "fileDirChanged"},
    {"nonlinearMappingPath", "QString", false, "qmlControlChanged"},
    {"useRgbMode", "int", false, "useRgbModeChanged"},
    {"rgbOverlayVertex", "QByteArray", false, "rgbOverlayVertexChanged"},
    {"rgbOverlayVisible", "bool", false, "rgbOverlayVertexChanged"},
    {"rgbMin", "float", true, "renderStateChanged"},
    {"rgbMaxLong", "float", true, "renderStateChanged"},
    {"rgbAutoScale", "bool", true, "renderStateChanged"},
    {"rgbAutoScaleHighPercent", "float", true, "renderStateChanged"},
    {"areaMax", "float", true, "renderStateChanged"},
    {"areaRemapFullScale", "float", false, "qmlControlChanged"},
    {"rgbDualFocusScaleFlag", "bool", false, "qmlControlChanged"},
    {"intensityMapFlag", "bool", false, "renderStateChanged"},
    {"coordinateTransformEnabled", "bool", true, "renderStateChanged"},
    {"coordinateTransformYaw", "float", true, "renderStateChanged"},
};

TEST(MetaObject, PropertiesHaveTheNamesTypesAndSignalsThatQmlBindsTo) {
  const QMetaObject &meta = DefaultSDKFrameRenderBuffer::staticMetaObject;
  for (const PropertyRow &row : properties) {
    const int index = meta.indexOfProperty(row.name);
    ASSERT_GE(index, 0) << row.name;
    const QMetaProperty property = meta.property(index);
    EXPECT_STREQ(property.typeName(), row.type) << row.name;
    EXPECT_EQ(property.isWritable(), row.writable) << row.name;
    EXPECT_EQ(property.notifySignal().name().toStdString(), row.notify) << row.name;
  }
}

TEST(MetaObject, CapabilitiesStartAsTheConstructorLeavesThem) {
  DefaultSDKFrameRenderBuffer rb;
  for (const char *name : {"monitorViewUseful",      "firetimesUseful",     "faultmessageViewUsed",
                           "reflectanceMappingFlag", "channelConfigUseful", "dirtyMappingReflectanceUsefulFlag",
                           "frameDurationFlag",      "frameNumberFlag",     "remakeAndQuantifyFlag",
                           "groundFiterFlag",        "d2DViewUsed",         "dcfUseful",
                           "nonlinearMappingUseful", "useBlindChannels",    "vd8PopoutFilterFlag",
                           "vd2OfflineFilter",       "pointCloudSmoothing", "coordinateTransformUseful",
                           "vd2DistanceFilter",      "yfnNoiseFilter",      "elevationFovFilterFlag",
                           "vd8OffineFilterFlag"}) {
    const bool onAtStart = std::string(name) == "firetimesUseful" || std::string(name) == "useBlindChannels";
    EXPECT_EQ(rb.property(name), QVariant(onAtStart)) << name;
    const auto &meta = *rb.metaObject();
    EXPECT_EQ(meta.property(meta.indexOfProperty(name)).notifySignal().name(), "qmlControlChanged") << name;
    EXPECT_TRUE(rb.setCapability(name, !onAtStart)) << name;
    EXPECT_EQ(rb.property(name), QVariant(!onAtStart)) << name;
  }
  rb.setProperty("statusEnabled", true);
  EXPECT_EQ(rb.property("statusEnabled"), QVariant(false));
  rb.setStatusEnabled(false);
  EXPECT_TRUE(rb.status().isEmpty());
  rb.picture().vertices.assign(5, Vertex{});
  EXPECT_TRUE(rb.vertex().isEmpty()) << "nothing is counted yet";
  EXPECT_EQ(rb.stackFrameNum(), 1);
  EXPECT_DOUBLE_EQ(rb.frameSeconds(), 0.1);
}

TEST(MetaObject, SignalsStandInTheirOrder) {
  const char *const names[]{"remakeConfigChanged",
                            "vertexChanged",
                            "statusChanged",
                            "renderStateChanged",
                            "someSignalReceived",
                            "allSignalReceived",
                            "spreadSheetModelChanged",
                            "colorModeChanged",
                            "colorModeTitlesChanged",
                            "colorModeSplitWindowChanged",
                            "echoModelChanged",
                            "channelModelChanged",
                            "playByFrameChanged",
                            "distanceCorrectionStateChanged",
                            "monitorModelChanged",
                            "splitWindowChanged",
                            "filterModelChanged",
                            "qmlControlChanged",
                            "faultmessageModelChanged",
                            "toolBoxSourceChanged",
                            "modeEditorSourceChanged",
                            "initialFunctionSourceChanged",
                            "useCudaChanged",
                            "imuConfigChanged",
                            "imuDataChanged",
                            "fileDirChanged",
                            "useRgbModeChanged",
                            "rgbOverlayVertexChanged",
                            "frameNumberChanged",
                            "frameAllocationStarted",
                            "frameAllocationFinished"};
  const QMetaObject &meta = DefaultSDKFrameRenderBuffer::staticMetaObject;
  int index = meta.methodOffset();
  for (const char *name : names) {
    EXPECT_EQ(meta.method(index).methodType(), QMetaMethod::Signal);
    EXPECT_STREQ(meta.method(index++).name().constData(), name);
  }
}

}  // namespace
}  // namespace tarvo::skarnvisor::test
