#pragma once

#include "contracts/host/render_buffer.h"
#include "contracts/runtime/decoded_frame.h"
#include "contracts/runtime/imu_sample.h"
#include "contracts/runtime/point_info.h"
#include "default/files/point_export.h"
#include "default/frame/point_pass.h"
#include "default/frame/selection_pass.h"
#include "default/models/echo_model.h"
#include "default/models/filter_model.h"
#include "default/models/point_columns.h"
#include "default/models/settings_value.h"
#include "default/models/specific_table_model.h"
#include "default/pipeline/canvas_ring.h"
#include "default/pipeline/capabilities.h"
#include "default/pipeline/color_settings.h"
#include "default/pipeline/display_settings.h"
#include "default/pipeline/frame_hooks.h"
#include "default/pipeline/frame_picture.h"
#include "default/pipeline/stack_allocation.h"
#include "default/pipeline/type_traits.h"
#include "default/telemetry/device_tables.h"
#include "default/telemetry/monitor_boards.h"

#include <QByteArray>
#include <QList>
#include <QMatrix4x4>
#include <QSharedPointer>
#include <QStringList>
#include <QUrl>
#include <QVariant>
#include <QVector>

#include <functional>
#include <memory>
#include <mutex>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace tarvo::lidar {
class SDKSource;
class SvSdkRuntime;
struct FrameDecodeParam;
}  // namespace tarvo::lidar

namespace tarvo::skarnvisor {

class DefaultSDKParser;
struct PictureHold;

/// What QML sees of one lidar track: the vertices of the current frame, every display setting, the
/// table models of the side panels and the lidar's capabilities. The parser fills it; each setting that
/// matters to the picture ends with `renderStateChanged()`, which runs the pipeline again.
///
/// Threads. Properties are read on any thread, the table models on the GUI thread. Whatever sets or does something
/// serves any one thread at a time, re-filters and the listing of rows several, and emits there: for what goes over all
/// points or waits for the decoder that had better not be the GUI thread. The frame stack and `startExport` are the GUI
/// thread's alone. Settings are atomics or snapshots that the pipeline reads as they stand. The parse lock serialises
/// parser runs with repeat parses, the picture has a lock of its own, and no signal is emitted under either. Order of
/// locks where two are held: parse lock, then `SDKSource::frameLock`, then the picture's lock, then that of the places.
class DefaultSDKFrameRenderBuffer : public RenderBuffer {
  Q_OBJECT
  // The picture
  Q_PROPERTY(QByteArray vertex READ vertex NOTIFY vertexChanged)
  Q_PROPERTY(int primitiveCount READ primitiveCount NOTIFY vertexChanged)
  Q_PROPERTY(int stackFrameNum READ stackFrameNum NOTIFY renderStateChanged)
  Q_PROPERTY(int frameNumber READ frameNumber NOTIFY frameNumberChanged)
  Q_PROPERTY(int laserCount READ laserCount NOTIFY vertexChanged)
  Q_PROPERTY(QByteArray laserPoints READ laserPoints NOTIFY vertexChanged)
  Q_PROPERTY(bool remakeConfig READ remakeConfig WRITE setRemakeConfig NOTIFY remakeConfigChanged)
  // Selection and tables
  Q_PROPERTY(bool selectEnabled READ selectEnabled WRITE setSelectEnabled NOTIFY renderStateChanged)
  Q_PROPERTY(QMatrix4x4 selectionMatrix READ selectionMatrix WRITE setSelectionMatrix NOTIFY renderStateChanged)
  Q_PROPERTY(bool spreadSheetEnabled READ spreadSheetEnabled WRITE setSpreadSheetEnabled NOTIFY renderStateChanged)
  Q_PROPERTY(QAbstractTableModel *spreadSheetModel READ readSpreadSheetModel NOTIFY spreadSheetModelChanged)
  Q_PROPERTY(QObject *pointExport READ pointExport CONSTANT)
  /// False while the picture is still that of an earlier frame, since the one under the cursor has no visible point.
  Q_PROPERTY(bool showsFrame READ showsFrame)
  Q_PROPERTY(QStringList colorModeTitles READ colorModeTitles NOTIFY colorModeTitlesChanged)
  Q_PROPERTY(int colorMode READ colorMode WRITE setColorMode NOTIFY colorModeChanged)
  Q_PROPERTY(int colorModeSplitWindow READ colorModeSplitWindow WRITE setColorModeSplitWindow NOTIFY
                 colorModeSplitWindowChanged)
  Q_PROPERTY(bool statusEnabled READ statusEnabled WRITE setStatusEnabled)
  Q_PROPERTY(QString status READ status NOTIFY statusChanged)
  Q_PROPERTY(tarvo::skarnvisor::EchoModel *echoModel READ readEchoModel NOTIFY echoModelChanged)
  Q_PROPERTY(QAbstractTableModel *channelModel READ readChannelModel NOTIFY channelModelChanged)
  Q_PROPERTY(QAbstractTableModel *monitorModel READ readMonitorModel NOTIFY monitorModelChanged)
  Q_PROPERTY(tarvo::skarnvisor::FilterModel *filterModel READ readFilterModel NOTIFY filterModelChanged)
  Q_PROPERTY(QAbstractTableModel *faultmessageModel READ readFaultmessageModel NOTIFY faultmessageModelChanged)
  Q_PROPERTY(bool playByFrame READ playByFrame WRITE setPlayByFrame NOTIFY playByFrameChanged)
  Q_PROPERTY(int distanceCorrectionState READ distanceCorrectionState WRITE setDistanceCorrectionState NOTIFY
                 distanceCorrectionStateChanged)
  Q_PROPERTY(bool monitorViewEnabled READ monitorViewEnabled WRITE setMonitorViewEnabled NOTIFY renderStateChanged)
  Q_PROPERTY(bool splitWindow READ splitWindow NOTIFY splitWindowChanged)
  Q_PROPERTY(bool faultmessageViewEnabled READ faultmessageViewEnabled WRITE setFaultmessageViewEnabled NOTIFY
                 renderStateChanged)
  Q_PROPERTY(double frameSeconds READ frameSeconds WRITE setFrameSeconds NOTIFY renderStateChanged)
  Q_PROPERTY(QString toolBoxSource READ toolBoxSource NOTIFY toolBoxSourceChanged)
  /// What each switch and number of the lidar's tools stands at, by the name of its setter.
  Q_PROPERTY(QVariantMap toolSettings READ toolSettings NOTIFY renderStateChanged)
  Q_PROPERTY(QString modeEditorSource READ modeEditorSource NOTIFY modeEditorSourceChanged)
  Q_PROPERTY(QString initialFunctionSource READ initialFunctionSource NOTIFY initialFunctionSourceChanged)
  Q_PROPERTY(int useCuda READ useCuda WRITE setUseCuda NOTIFY useCudaChanged)
  Q_PROPERTY(int imuConfig READ imuConfig WRITE setImuConfig NOTIFY imuConfigChanged)
  Q_PROPERTY(QList<double> imuData READ imuData NOTIFY imuDataChanged)
  // Files in use
  Q_PROPERTY(QString correctionFileDir READ correctionFileDir NOTIFY fileDirChanged)
  Q_PROPERTY(QString firetimesFileDir READ firetimesFileDir NOTIFY fileDirChanged)
  Q_PROPERTY(QString channelEqFileDir READ channelEqFileDir NOTIFY fileDirChanged)
  Q_PROPERTY(QString channelConfigFileDir READ channelConfigFileDir NOTIFY fileDirChanged)
  Q_PROPERTY(QString DcfFileDir READ DcfFileDir NOTIFY fileDirChanged)
  Q_PROPERTY(QString nonlinearMappingFileDir READ nonlinearMappingFileDir NOTIFY fileDirChanged)
  Q_PROPERTY(QString nonlinearMappingPath READ nonlinearMappingPath NOTIFY qmlControlChanged)
  // Camera colours
  Q_PROPERTY(int useRgbMode READ useRgbModeValue NOTIFY useRgbModeChanged)
  Q_PROPERTY(QByteArray rgbOverlayVertex READ rgbOverlayVertex NOTIFY rgbOverlayVertexChanged)
  Q_PROPERTY(int rgbOverlayPrimitiveCount READ rgbOverlayPrimitiveCount NOTIFY rgbOverlayVertexChanged)
  Q_PROPERTY(bool rgbOverlayVisible READ rgbOverlayVisible NOTIFY rgbOverlayVertexChanged)
  Q_PROPERTY(int rgbOverlayCols READ rgbOverlayCols NOTIFY rgbOverlayVertexChanged)
  Q_PROPERTY(int rgbOverlayRows READ rgbOverlayRows NOTIFY rgbOverlayVertexChanged)
  Q_PROPERTY(float rgbMin READ rgbMin WRITE setRgbMin NOTIFY renderStateChanged)
  Q_PROPERTY(float rgbMax READ rgbMax WRITE setRgbMax NOTIFY renderStateChanged)
  Q_PROPERTY(bool rgbAutoScale READ rgbAutoScale WRITE setRgbAutoScale NOTIFY renderStateChanged)
  Q_PROPERTY(float rgbAutoScaleLowPercent READ rgbAutoScaleLowPercent WRITE setRgbAutoScaleLowPercent NOTIFY
                 renderStateChanged)
  Q_PROPERTY(float rgbAutoScaleHighPercent READ rgbAutoScaleHighPercent WRITE setRgbAutoScaleHighPercent NOTIFY
                 renderStateChanged)
  Q_PROPERTY(float rgbMinLong READ rgbMinLong WRITE setRgbMinLong NOTIFY renderStateChanged)
  Q_PROPERTY(float rgbMaxLong READ rgbMaxLong WRITE setRgbMaxLong NOTIFY renderStateChanged)
  Q_PROPERTY(bool rgbAutoScaleLong READ rgbAutoScaleLong WRITE setRgbAutoScaleLong NOTIFY renderStateChanged)
  Q_PROPERTY(float areaMin READ areaMin WRITE setAreaMin NOTIFY renderStateChanged)
  Q_PROPERTY(float areaMax READ areaMax WRITE setAreaMax NOTIFY renderStateChanged)
  Q_PROPERTY(bool rgbDualFocusScaleFlag READ rgbDualFocusScaleFlag NOTIFY qmlControlChanged)
  Q_PROPERTY(float areaRemapFullScale READ areaRemapFullScale NOTIFY qmlControlChanged)
  // Capabilities of the lidar type
  Q_PROPERTY(bool monitorViewUseful READ monitorViewUseful NOTIFY qmlControlChanged)
  Q_PROPERTY(bool firetimesUseful READ firetimesUseful NOTIFY qmlControlChanged)
  Q_PROPERTY(bool faultmessageViewUsed READ faultmessageViewUsed NOTIFY qmlControlChanged)
  Q_PROPERTY(bool reflectanceMappingFlag READ reflectanceMappingFlag NOTIFY qmlControlChanged)
  Q_PROPERTY(bool intensityMapFlag READ intensityMapFlag NOTIFY renderStateChanged)
  Q_PROPERTY(bool channelConfigUseful READ channelConfigUseful NOTIFY qmlControlChanged)
  Q_PROPERTY(bool dirtyMappingReflectanceUsefulFlag READ dirtyMappingReflectanceUsefulFlag NOTIFY qmlControlChanged)
  Q_PROPERTY(bool frameDurationFlag READ frameDurationFlag NOTIFY qmlControlChanged)
  Q_PROPERTY(bool frameNumberFlag READ frameNumberFlag NOTIFY qmlControlChanged)
  Q_PROPERTY(bool remakeAndQuantifyFlag READ remakeAndQuantifyFlag NOTIFY qmlControlChanged)
  Q_PROPERTY(bool groundFiterFlag READ groundFiterFlag NOTIFY qmlControlChanged)
  Q_PROPERTY(bool d2DViewUsed READ d2DViewUsed NOTIFY qmlControlChanged)
  Q_PROPERTY(bool dcfUseful READ dcfUseful NOTIFY qmlControlChanged)
  Q_PROPERTY(bool nonlinearMappingUseful READ nonlinearMappingUseful NOTIFY qmlControlChanged)
  Q_PROPERTY(bool useBlindChannels READ useBlindChannels NOTIFY qmlControlChanged)
  Q_PROPERTY(bool vd8PopoutFilterFlag READ vd8PopoutFilterFlag NOTIFY qmlControlChanged)
  Q_PROPERTY(bool vd2OfflineFilter READ vd2OfflineFilter NOTIFY qmlControlChanged)
  Q_PROPERTY(bool pointCloudSmoothing READ pointCloudSmoothing NOTIFY qmlControlChanged)
  Q_PROPERTY(bool coordinateTransformUseful READ coordinateTransformUseful NOTIFY qmlControlChanged)
  Q_PROPERTY(bool vd2DistanceFilter READ vd2DistanceFilter NOTIFY qmlControlChanged)
  Q_PROPERTY(bool yfnNoiseFilter READ yfnNoiseFilter NOTIFY qmlControlChanged)
  Q_PROPERTY(bool elevationFovFilterFlag READ elevationFovFilterFlag NOTIFY qmlControlChanged)
  Q_PROPERTY(bool vd8OffineFilterFlag READ vd8OffineFilterFlag NOTIFY qmlControlChanged)
  // Coordinate transform: metres as in its file, degrees
  Q_PROPERTY(bool coordinateTransformEnabled READ coordinateTransformEnabled WRITE setCoordinateTransformEnabled NOTIFY
                 renderStateChanged)
  Q_PROPERTY(
      float coordinateTransformX READ coordinateTransformX WRITE setCoordinateTransformX NOTIFY renderStateChanged)
  Q_PROPERTY(
      float coordinateTransformY READ coordinateTransformY WRITE setCoordinateTransformY NOTIFY renderStateChanged)
  Q_PROPERTY(
      float coordinateTransformZ READ coordinateTransformZ WRITE setCoordinateTransformZ NOTIFY renderStateChanged)
  Q_PROPERTY(float coordinateTransformRoll READ coordinateTransformRoll WRITE setCoordinateTransformRoll NOTIFY
                 renderStateChanged)
  Q_PROPERTY(float coordinateTransformPitch READ coordinateTransformPitch WRITE setCoordinateTransformPitch NOTIFY
                 renderStateChanged)
  Q_PROPERTY(float coordinateTransformYaw READ coordinateTransformYaw WRITE setCoordinateTransformYaw NOTIFY
                 renderStateChanged)

 public:
  using Point = tarvo::lidar::SDKPointInfo;
  using Frame = tarvo::lidar::LidarDecodedFrame<Point>;

  explicit DefaultSDKFrameRenderBuffer(QObject *parent = nullptr);
  ~DefaultSDKFrameRenderBuffer() override;

  // ---- slots that a lidar family may change, in their order
  QString renderSource() const override;
  void prepareForQmlRemoval() override;
 public Q_SLOTS:
  virtual void setLidarType(std::string lidarType);

 public:
  /// Adds an optional attribute: a column at `position` (-1 appends) and, where it has one, a PCD field.
  virtual void addColumnAttribute(std::string name, int position);
  virtual void removeColumnAttribute(std::string name);
  /// Gives every shown vertex a fresh colour word from the stored points.
  virtual void recolor();
  virtual QString toolBoxSource() const;
  /// By the name of a setter, what it was last given, or else what the decoder and the lidar type start with: a bool, a
  /// number, or the numbers of its list. Of `toggleDirtry`, the levels that are hidden. A family adds the setters of
  /// its own. Any thread.
  virtual QVariantMap toolSettings() const;
  virtual QString modeEditorSource() const;
  virtual QString initialFunctionSource() const;
  virtual bool hasInitialFunction() const;
  /// Colour word of a point in the current colour modes: the family's (`hooks().colors`), else the colour table's. The
  /// passes over points ask the same two, run by run, so a family with colours of its own sets the hook and has no need
  /// to override this. Any thread.
  virtual quint32 attributeColor(const Point &point) const;
  /// Marks the selected points, gives the others their colour back and lists the rows of the point table, sorted as the
  /// table asks. Any thread; the parser's at the end of a frame.
  virtual void refreshSelection();
  virtual QString status() const;
  Q_INVOKABLE virtual void setDisplayedFlag(int channel, bool shown, bool refresh = true);
  /// Reads the table of the lidar's state from `block`, a copy of the frame's device-status block.
  virtual void updateMonitor(const unsigned char *block);
  /// `count` records of `faultRecordBytes` bytes. Called under the source's status lock.
  virtual void updateFaultMessages(const unsigned char *packets, int count);
  virtual void setFaultmessageViewEnabled(bool enabled);
  /// Takes the first valid sample and empties the list. Called under `SDKSource::frameLock`.
  virtual void updateImu(std::vector<tarvo::lidar::ImuSample> &samples);
  /// Bytes of a record that `updateFaultMessages` reads; batches of another stride are not handed to it.
  virtual std::size_t faultRecordBytes() const;
  /// Sets a capability by the name of its property; false for a name that is none.
  bool setCapability(std::string_view propertyName, bool on);

  // ---- properties: the picture
  QByteArray vertex() const;
  int primitiveCount() const;
  int stackFrameNum() const;
  int frameNumber() const { return m_ring.frameNumber; }
  int laserCount() const;
  QByteArray laserPoints() const;
  bool remakeConfig() const { return m_settings.remakeEnabled; }
  void setRemakeConfig(bool on);

  // ---- properties: selection, tables, views
  bool selectEnabled() const { return m_settings.selectEnabled; }
  void setSelectEnabled(bool enabled);
  QMatrix4x4 selectionMatrix() const { return m_settings.selectionMatrix.copy(); }
  void setSelectionMatrix(const QMatrix4x4 &matrix);
  bool spreadSheetEnabled() const { return m_settings.spreadSheetEnabled; }
  void setSpreadSheetEnabled(bool enabled);
  // Reading one of the tables as a property resets the model, so that its views load it again.
  QAbstractTableModel *readSpreadSheetModel() const;
  QAbstractTableModel *readChannelModel() const;
  QAbstractTableModel *readMonitorModel() const;
  QAbstractTableModel *readFaultmessageModel() const;
  EchoModel *readEchoModel() { return &m_echoModel; }
  FilterModel *readFilterModel() { return &m_filterModel; }
  bool statusEnabled() const { return false; }
  void setStatusEnabled(bool enabled) { m_settings.statusEnabled = enabled; }
  bool playByFrame() const { return m_settings.playByFrame; }
  void setPlayByFrame(bool byFrame);
  int distanceCorrectionState() const { return m_settings.distanceCorrectionState; }
  void setDistanceCorrectionState(int state);
  bool monitorViewEnabled() const { return m_settings.monitorViewEnabled; }
  void setMonitorViewEnabled(bool enabled);
  bool splitWindow() const { return m_splitWindow; }
  bool faultmessageViewEnabled() const { return m_settings.faultmessageViewEnabled; }
  double frameSeconds() const;
  void setFrameSeconds(double seconds);
  int useCuda() const { return m_settings.useCuda; }
  void setUseCuda(int use);
  int imuConfig() const { return m_imuConfig; }
  void setImuConfig(int config);
  QList<double> imuData() const;

  // ---- properties: files
  QString correctionFileDir() const { return m_paths.correctionFileDir.copy(); }
  QString firetimesFileDir() const { return m_paths.firetimesFileDir.copy(); }
  QString channelEqFileDir() const { return m_paths.channelEqFileDir.copy(); }
  QString channelConfigFileDir() const { return m_paths.channelConfigFileDir.copy(); }
  QString DcfFileDir() const { return m_paths.DcfFileDir.copy(); }
  QString nonlinearMappingFileDir() const { return m_paths.nonlinearMappingFileDir.copy(); }
  QString nonlinearMappingPath() const { return m_paths.nonlinearMappingPath.copy(); }

  // ---- properties: colours
  QStringList colorModeTitles() const;
  int colorMode() const { return m_colors.table.take()->colorMode; }
  void setColorMode(int mode);
  int colorModeSplitWindow() const { return m_colors.table.take()->colorModeSplitWindow; }
  void setColorModeSplitWindow(int mode);
  /// Whether the current frame shows camera colours.
  bool useRgbMode() const;
  int useRgbModeValue() const { return useRgbMode() ? 1 : 0; }
  QByteArray rgbOverlayVertex() const;
  int rgbOverlayPrimitiveCount() const;
  bool rgbOverlayVisible() const;
  int rgbOverlayCols() const;
  int rgbOverlayRows() const;
  float rgbMin() const { return m_colors.scale.take()->shortFocus.min; }
  void setRgbMin(float min);
  float rgbMax() const { return m_colors.scale.take()->shortFocus.max; }
  void setRgbMax(float max);
  bool rgbAutoScale() const { return m_colors.scale.take()->shortFocus.autoScale; }
  void setRgbAutoScale(bool on);
  float rgbAutoScaleLowPercent() const { return m_colors.scale.take()->rgbAutoScaleLowPercent; }
  void setRgbAutoScaleLowPercent(float percent);
  float rgbAutoScaleHighPercent() const { return m_colors.scale.take()->rgbAutoScaleHighPercent; }
  void setRgbAutoScaleHighPercent(float percent);
  float rgbMinLong() const { return m_colors.scale.take()->longFocus.min; }
  void setRgbMinLong(float min);
  float rgbMaxLong() const { return m_colors.scale.take()->longFocus.max; }
  void setRgbMaxLong(float max);
  bool rgbAutoScaleLong() const { return m_colors.scale.take()->longFocus.autoScale; }
  void setRgbAutoScaleLong(bool on);
  float areaMin() const { return m_colors.areaRemap.take()->areaMin; }
  void setAreaMin(float min);
  float areaMax() const { return m_colors.areaRemap.take()->areaMax; }
  void setAreaMax(float max);
  bool rgbDualFocusScaleFlag() const { return m_colors.scale.take()->rgbDualFocusScaleFlag; }
  float areaRemapFullScale() const { return m_colors.areaRemap.take()->areaRemapFullScale; }

  // ---- properties: capabilities
  bool monitorViewUseful() const { return m_capabilities.monitorViewUseful; }
  bool firetimesUseful() const { return m_capabilities.firetimesUseful; }
  bool faultmessageViewUsed() const { return m_capabilities.faultmessageViewUsed; }
  bool reflectanceMappingFlag() const { return m_capabilities.reflectanceMappingFlag; }
  bool intensityMapFlag() const { return m_settings.intensityMapFlag; }
  bool channelConfigUseful() const { return m_capabilities.channelConfigUseful; }
  bool dirtyMappingReflectanceUsefulFlag() const { return m_capabilities.dirtyMappingReflectanceUsefulFlag; }
  bool frameDurationFlag() const { return m_capabilities.frameDurationFlag; }
  bool frameNumberFlag() const { return m_capabilities.frameNumberFlag; }
  bool remakeAndQuantifyFlag() const { return m_capabilities.remakeAndQuantifyFlag; }
  bool groundFiterFlag() const { return m_capabilities.groundFiterFlag; }
  bool d2DViewUsed() const { return m_capabilities.d2DViewUsed; }
  bool dcfUseful() const { return m_capabilities.dcfUseful; }
  bool nonlinearMappingUseful() const { return m_capabilities.nonlinearMappingUseful; }
  bool useBlindChannels() const { return m_capabilities.useBlindChannels; }
  bool vd8PopoutFilterFlag() const { return m_capabilities.vd8PopoutFilterFlag; }
  bool vd2OfflineFilter() const { return m_capabilities.vd2OfflineFilter; }
  bool pointCloudSmoothing() const { return m_capabilities.pointCloudSmoothing; }
  bool coordinateTransformUseful() const { return m_capabilities.coordinateTransformUseful; }
  bool vd2DistanceFilter() const { return m_capabilities.vd2DistanceFilter; }
  bool yfnNoiseFilter() const { return m_capabilities.yfnNoiseFilter; }
  bool elevationFovFilterFlag() const { return m_capabilities.elevationFovFilterFlag; }
  bool vd8OffineFilterFlag() const { return m_capabilities.vd8OffineFilterFlag; }

  // ---- properties: coordinate transform
  bool coordinateTransformEnabled() const { return m_transform.enabled; }
  void setCoordinateTransformEnabled(bool enabled);
  float coordinateTransformX() const { return m_transform.x; }
  void setCoordinateTransformX(float x) { storeTransform(m_transform.x, x); }
  float coordinateTransformY() const { return m_transform.y; }
  void setCoordinateTransformY(float y) { storeTransform(m_transform.y, y); }
  float coordinateTransformZ() const { return m_transform.z; }
  void setCoordinateTransformZ(float z) { storeTransform(m_transform.z, z); }
  float coordinateTransformRoll() const;
  void setCoordinateTransformRoll(float degrees);
  float coordinateTransformPitch() const;
  void setCoordinateTransformPitch(float degrees);
  float coordinateTransformYaw() const;
  void setCoordinateTransformYaw(float degrees);

  // ---- invokables
  Q_INVOKABLE QByteArray vertexGet(int index) const;
  Q_INVOKABLE int primitiveCountGet(int index) const;
  Q_INVOKABLE int getIndexUseNow() const;
  /// Asks for a stack of `n` frames. True: accepted; without canvases it stands at once, else
  /// `frameAllocationFinished` tells what came of it. Returns without waiting for the memory.
  Q_INVOKABLE bool setFrameNumber(int n);
  /// Gives up the request under way: the stack stays what it was, and `frameAllocationFinished` says so. Nothing
  /// without one.
  Q_INVOKABLE void cancelFrameAllocation();
  /// What share of the request under way is done, 0 to 1.
  Q_INVOKABLE double frameAllocationProgress() const { return m_stackAllocation.progress; }
  /// Builds the ring anew and has the producer begin its stack afresh.
  Q_INVOKABLE void clearMultiCanvas();
  /// Whether depths above 1 use canvases. Goes back to one frame.
  Q_INVOKABLE void setInternalCacheFlag(bool flag);
  Q_INVOKABLE int glslType() const { return m_settings.glslType; }
  Q_INVOKABLE void updateMask(int mask);
  Q_INVOKABLE void addColorMode(std::string title);
  Q_INVOKABLE void selectColorMode(std::string title);
  Q_INVOKABLE float attributeValue(const Point &point, int id) const;
  Q_INVOKABLE void detailDataUpdata();
  Q_INVOKABLE void toggleDirtry(int level, bool shown);
  Q_INVOKABLE void setBlindChannelsCheck(bool check);
  Q_INVOKABLE void intensityMapping(bool on);
  Q_INVOKABLE bool setFiretimeCorrectionState(bool on);
  Q_INVOKABLE bool setDcfCorrectionState(bool on);
  Q_INVOKABLE void setDirtyMappingReflectanceFlag(bool on);
  Q_INVOKABLE void setElevationFovFilterFlag(bool on);
  Q_INVOKABLE void setEchoModelReturnMode(int index);
  Q_INVOKABLE bool getPcdFieldEnabled(int index) const;
  Q_INVOKABLE void setPcdFieldEnabled(int index, bool enabled);
  Q_INVOKABLE QStringList getPcdFieldListString() const;
  /// Writes the visible points of the picture, the selected ones while selecting, as an ASCII PCD file with the enabled
  /// fields. Asks for the file without a path. False when cancelled or not written.
  Q_INVOKABLE bool capture2PCD(QString filePath = QString());
  /// The same beside the program's other work, told of by `pointExport`: with `titles`, or for a ".csv" file, the point
  /// table, with only those columns where they are given. False when nothing starts: cancelled, or one is being
  /// written.
  Q_INVOKABLE bool startExport(QString filePath = QString(), QStringList titles = {});
  bool showsFrame() const { return !m_picture.frameWithheld; }
  QObject *pointExport() const { return m_pointExport.get(); }
  Q_INVOKABLE void refreshCoordinateTransform();
  Q_INVOKABLE void refreshSelectionDisplay();
  Q_INVOKABLE void refreshSpreadSheetDisplay();
  /// Tests and colours the stored points again: of the one picture, or of every canvas of a stack.
  Q_INVOKABLE void filterSinglePoints();
  Q_INVOKABLE void filterMultiPoints();
  /// Cuts the points inside the selection out of this and all later frames, by their place in the frame.
  Q_INVOKABLE void singleFrameSelectedAreaFiltering();
  /// Shows only what the cuts hold, or again only what they leave.
  Q_INVOKABLE void singleFrameSelectedAreaReverse();
  /// Takes back one cut for the points inside the selection as it stands now; once after each cut.
  Q_INVOKABLE void singleFrameSelectedAreaRevokedOnce() { singleFrameSelectedAreaRevokedOnce(selectionMatrix()); }
  /// The same for the points inside the selection that the cut was made with.
  Q_INVOKABLE void singleFrameSelectedAreaRevokedOnce(const QMatrix4x4 &cut);
  Q_INVOKABLE void singleFrameSelectedAreaRevokedAll();

  // ---- calibration files. The QUrl form takes the local file; true on success.
  Q_INVOKABLE bool importCorrectionsFile(QString path);
  Q_INVOKABLE bool importCorrectionsFile(QUrl url) { return importCorrectionsFile(url.toLocalFile()); }
  Q_INVOKABLE bool exportCorrectionsFile(QString path);
  Q_INVOKABLE bool exportCorrectionsFile(QUrl url) { return exportCorrectionsFile(url.toLocalFile()); }
  Q_INVOKABLE bool importFiretimesFile(QString path);
  Q_INVOKABLE bool importFiretimesFile(QUrl url) { return importFiretimesFile(url.toLocalFile()); }
  Q_INVOKABLE bool exportFiretimesFile(QString path);
  Q_INVOKABLE bool exportFiretimesFile(QUrl url) { return exportFiretimesFile(url.toLocalFile()); }
  Q_INVOKABLE bool importDcfFile(QString path);
  Q_INVOKABLE bool importDcfFile(QUrl url) { return importDcfFile(url.toLocalFile()); }
  Q_INVOKABLE bool exportDcfFile(QString path);
  Q_INVOKABLE bool exportDcfFile(QUrl url) { return exportDcfFile(url.toLocalFile()); }
  Q_INVOKABLE bool importNonlinearMappingFile(QString path);
  Q_INVOKABLE bool importNonlinearMappingFile(QUrl url) { return importNonlinearMappingFile(url.toLocalFile()); }
  Q_INVOKABLE bool exportNonlinearMappingFile(QString path);
  Q_INVOKABLE bool exportNonlinearMappingFile(QUrl url) { return exportNonlinearMappingFile(url.toLocalFile()); }
  Q_INVOKABLE bool importChannelConfigFile(QString path);
  Q_INVOKABLE bool importChannelConfigFile(QUrl url) { return importChannelConfigFile(url.toLocalFile()); }
  Q_INVOKABLE bool exportChannelConfigFile(QString path);
  Q_INVOKABLE bool exportChannelConfigFile(QUrl url) { return exportChannelConfigFile(url.toLocalFile()); }
  Q_INVOKABLE bool importChannelEqFile(QString path);
  Q_INVOKABLE bool importChannelEqFile(QUrl url) { return importChannelEqFile(url.toLocalFile()); }
  Q_INVOKABLE bool exportChannelEqFile(QString path);
  Q_INVOKABLE bool importIspConfigFile(QUrl url);
  Q_INVOKABLE bool reloadIspConfigAndReapply();
  Q_INVOKABLE bool reloadChannelEqAndReapply();
  /// Repeats the image-signal work on the frame that the decoder holds, and shows the result.
  Q_INVOKABLE void reapplyIspOnCurrentFrame();
  /// Loads a factory file without writing it over the default file of the type.
  bool importFactoryCorrections(const QString &path) { return takeCorrections(path, false); }
  bool importFactoryFiretimes(const QString &path) { return takeFiretimes(path, false); }
  static bool copyNbqRgbIspConfigCsvTo(const QString &destination, const QString &source);
  static bool copyNbqRgbChannelEqCsvTo(const QString &destination, const QString &source);

  // ---- filters of the decoder. A list that is too short is refused with a line in the log and changes nothing.
  Q_INVOKABLE void setVd8PopoutFilterFlag(bool flag);
  Q_INVOKABLE void setVd8PopoutFilterHighlight(bool flag);
  Q_INVOKABLE void setPopoutFilterConfig(QVariantList list);
  Q_INVOKABLE void setVd2OfflineFilterFlag(bool flag);
  Q_INVOKABLE void setVd8OffineFilterFlag(bool flag);
  Q_INVOKABLE void setPointCloudSmoothingFlag(bool flag);
  Q_INVOKABLE void setPointCloutSmoothingConfig(QVariantList list);
  Q_INVOKABLE void setVd2DistanceFilterThreshold(float metres);
  Q_INVOKABLE void setYfnNoiseFilterFlag(bool flag);
  Q_INVOKABLE void setYfnNoiseFilterMode(int mode);
  Q_INVOKABLE void setYfnNoiseFilterConfig(QVariantList list);

  // ---- for the rest of the plug-in
  tarvo::lidar::SDKSource *source() const { return m_source.load(std::memory_order_acquire); }
  /// Not owned; once, before the first run.
  void setSource(tarvo::lidar::SDKSource *source) { m_source.store(source, std::memory_order_release); }
  tarvo::lidar::SvSdkRuntime *runtime() const;

  std::string lidarType() const { return m_type.take()->name; }
  TypeTraits traits() const { return m_type.take()->traits; }
  /// Channel counts of the lidar: physical and displayed.
  void setChannelCounts(int laserNum, int channelCount);
  int channelCount() const { return m_channelCount; }
  int laserNum() const { return m_laserNum; }

  void setScales(const TypeScales &scales);
  /// Limits and top of the remapped area of a lidar type; the remap itself stays off.
  void setAreaScale(float min, float max, float fullScale);
  void setGlslType(int type) { m_settings.glslType = type; }
  void setNbqPointLayout(bool on);
  void setDiffByThree(bool on);
  /// Per-frame export of the point table while a capture plays. `type` 1 or more; off restores what it changed.
  void setDetailExport(bool on, int type, QUrl url);

  Capabilities &capabilities() { return m_capabilities; }
  CalibrationPaths &calibrationPaths() { return m_paths; }
  DisplaySettings &settings() { return m_settings; }
  const DisplaySettings &settings() const { return m_settings; }
  ColorSettings &colors() { return m_colors; }
  const ColorSettings &colors() const { return m_colors; }
  CanvasRing &ring() { return m_ring; }
  const CanvasRing &ring() const { return m_ring; }
  PipelineFlow &flow() { return m_flow; }
  FramePicture &picture() { return m_picture; }
  const FramePicture &picture() const { return m_picture; }
  FrameHooks &hooks() { return m_hooks; }
  EchoModel &echoModel() { return m_echoModel; }
  FilterModel &filterModel() { return m_filterModel; }
  ChannelModel &channelModel() { return *m_channelModel; }
  SpreadSheetModel &spreadSheetModel() { return *m_spreadSheetModel; }
  QList<PcdFieldRecord> pcdFields() const { return m_pcdFields.copy(); }
  /// Replaces the dialog that asks for a PCD file; empty when cancelled.
  void setFileQuestion(std::function<QString(const QString &preselected)> question) {
    m_askForFile = std::move(question);
  }

  /// The producer calls these around a decode. Between them a repeat parse is left to the run that follows,
  /// since the decoder is writing the points. `beginDecode` waits for a repeat parse under way.
  void beginDecode();
  void endDecode();
  /// What the stack is at this moment, none of it from before a change and some from after. Any thread.
  StackSettings stackSettings() const;
  /// Where the stack's memory comes from.
  StackAllocation &stackAllocation() { return m_stackAllocation; }
  /// The producer starts the ring afresh from slot 0. Waits for a repeat parse under way, which reads the ring.
  void restartRing();

  /// Redraws the current frame with the settings as they stand, on the calling thread.
  void repeatParse();

  /// Writes out calibration that the runtime found in the capture, and clears what was written.
  void checkAndExportFromPcap();

  /// Fills the vertices of a dense camera frame straight from the decoder, which holds
  /// `SDKSource::frameLock`. False leaves the frame to the parser, the reason stands in the source.
  bool tryFillVertices(const Point *points, unsigned count, int mode);
  bool fillVertices(const Point *points, unsigned count, int previousCount);

 Q_SIGNALS:
  void remakeConfigChanged();
  void vertexChanged();
  void statusChanged();
  void renderStateChanged();
  void someSignalReceived();
  void allSignalReceived();
  void spreadSheetModelChanged();
  void colorModeChanged();
  void colorModeTitlesChanged();
  void colorModeSplitWindowChanged();
  void echoModelChanged();
  void channelModelChanged();
  void playByFrameChanged();
  void distanceCorrectionStateChanged();
  void monitorModelChanged();
  void splitWindowChanged();
  void filterModelChanged();
  void qmlControlChanged();
  void faultmessageModelChanged();
  void toolBoxSourceChanged();
  void modeEditorSourceChanged();
  void initialFunctionSourceChanged();
  void useCudaChanged();
  void imuConfigChanged();
  void imuDataChanged();
  void fileDirChanged();
  void useRgbModeChanged();
  void rgbOverlayVertexChanged();
  void frameNumberChanged();
  void frameAllocationStarted();
  void frameAllocationFinished(bool success, int actualFrames, QString message);

 protected:
  FamilyCapabilities &familyCapabilities() { return m_familyCapabilities; }
  using Signal = void (DefaultSDKFrameRenderBuffer::*)();
  /// Emits once no lock of this buffer is held any more.
  void announce(Signal signal);
  /// Adds the column and the PCD field of a row; families bring rows of their own.
  void addColumn(const PointColumn &column, int position);
  /// Shows the current frame with calibration that has just been loaded.
  virtual void redrawCalibrated();
  /// Runs `change` on the decode parameters; without a runtime, nothing.
  void writeParams(const std::function<void(tarvo::lidar::FrameDecodeParam &)> &change);
  /// Fills the monitor table from a device-status block, read through `boards`.
  void showMonitor(const unsigned char *block, const MonitorBoards &boards);

 private:
  friend class DefaultSDKParser;

  void createModels();
  void loadSettings();
  void installHooks();
  void storeTransform(Relaxed<float> &field, float value);
  /// `value` is what the setter of that name was given.
  void forwardFilter(const char *setter, const QVariant &value,
                     const std::function<void(tarvo::lidar::SvSdkRuntime &)> &setting);
  /// `keepDefault`: the default file of the type follows what is loaded.
  bool takeCorrections(const QString &path, bool keepDefault);
  bool takeFiretimes(const QString &path, bool keepDefault);
  // Write a file and its shown name, without a signal. Any thread.
  bool writeCorrections(const QString &path);
  bool writeFiretimes(const QString &path);
  bool writeDcf(const QString &path);
  void refreshColors();
  void refreshDroppingFastPath();
  /// Works the automatic scales out; true when a limit moved.
  bool autoScaleFrom(std::span<const Point> points);
  bool autoScaleNow();
  void applyLimit(LimitChange change, const char *refusal, float value, float other);
  void updateRgbOverlay();
  /// What the passes over stored points and the parser's pass have in common.
  PointPassSettings passSettings() const;
  /// The area mask, grown with zeros to the stored points while the area filter is on.
  std::shared_ptr<const std::vector<std::int32_t>> growAreaMask(std::size_t pointNum);
  struct StackResult {
    StackShape shape;
    int pointsPerCanvas = 0;
    bool success = false;
    bool decodeFrameSized = false;
    QString message;
    std::shared_ptr<FramePicture::Stack> arrays;  ///< with success
  };
  bool requestStack(int n);
  StackResult planStack(int n, std::size_t framePoints);
  /// The worker of an accepted request; on a thread of the pool.
  void allocateStack(StackResult plan);
  void applyStack(StackResult result);
  /// Leaves the arrays that were in use to a thread of the pool.
  void takeUpStack(StackResult &result);
  void dropStackRequest(const StackResult &result);
  void leaveStack(int frames);
  void announceStackChange();
  void endAllocation(bool success, const QString &message);
  void announceAllocationFinished(bool success, const QString &message);
  MemoryFigures freeMemory(std::uint64_t *heldBytes = nullptr) const;
  std::size_t framePoints() const;
  bool sizeDecodeFrame(int frames);
  /// The points that are shown, with their vertices: one part without a ring, one a canvas with it. Caller holds
  /// frameMutex.
  std::vector<StoredPoints> storedPartsLocked();
  /// Runs the pass over all of them.
  void refilter();
  bool listsPoints() const;
  /// Asks the user for a PCD file and remembers it; empty when cancelled.
  QString askForFile() const;
  /// Parses the shown frame again when it came by the fast path, which stores no points.
  void storeShownPoints();
  WriteOutcome writePicture(const QString &path, const PictureHold &hold, WriteProgress &progress) const;
  /// Writes the frame just parsed while the per-frame export is on. On the parser's thread.
  void exportDetail(double timestamp);
  static Frustum frustumOf(const QMatrix4x4 &matrix);
  /// Lists the shown points into the work rows of the table; returns how many. Caller holds frameMutex.
  std::size_t listPointsLocked(const SelectionPass &pass);
  bool stackIsBeingAllocated() const;
  /// Adds `step` to the area mask where a shown point lies inside the selection of that matrix.
  void countArea(int step, const QMatrix4x4 &matrix);
  void finishAreaOperation();

  std::atomic<tarvo::lidar::SDKSource *> m_source{nullptr};
  Snapshot<LidarTypeInfo> m_type;
  Relaxed<int> m_channelCount{128};
  Relaxed<int> m_laserNum{128};
  Relaxed<double> m_motorSpeed{0.0};
  Capabilities m_capabilities;
  FamilyCapabilities m_familyCapabilities;
  CalibrationPaths m_paths;
  DisplaySettings m_settings;
  ColorSettings m_colors;
  CanvasRing m_ring;
  PipelineFlow m_flow;
  FramePicture m_picture;
  FrameHooks m_hooks;
  CoordinateTransform m_transform;
  Snapshot<QVariantMap> m_filtersGiven;  ///< to the runtime, which tells nothing back, by setter
  EchoModel m_echoModel;
  FilterModel m_filterModel;
  DeviceTables m_deviceTables;
  Relaxed<int> m_imuConfig{-1};
  Snapshot<tarvo::lidar::ImuSample> m_imuSample;
  bool m_splitWindow = false;
  Relaxed<bool> m_correctionWarned{false};
  CorrectionView m_correctionView;
  struct {
    bool spreadSheetEnabled = false;
    bool playByFrame = true;
  } m_beforeExport;
  Snapshot<QList<PcdFieldRecord>> m_pcdFields;
  std::function<QString(const QString &preselected)> m_askForFile;
  QSharedPointer<SpreadSheetModel> m_spreadSheetModel;
  QSharedPointer<ChannelModel> m_channelModel;
  QSharedPointer<MonitorModel> m_monitorModel;
  QSharedPointer<MonitorModel> m_faultmessageModel;

  Relaxed<std::size_t> m_framePoints{0};  ///< points of a single frame as last parsed; 0: not known

  std::mutex m_parseMutex;  ///< serialises parser runs with repeat parses; guards the two words below
  bool m_decodeInFlight = false;
  bool m_frameWaits = false;  ///< decoded, its run of the parser is still to come
  /// A parse was left to the next run. Written under m_parseMutex; who clears frameAllocationBusy looks at it next.
  std::atomic<bool> m_reparseOwed{false};

  std::unique_ptr<PointExport> m_pointExport;  ///< behind what its thread reads until it is gone
  StackAllocation m_stackAllocation;           ///< the last member: its end waits for a worker that uses the others
};

}  // namespace tarvo::skarnvisor
