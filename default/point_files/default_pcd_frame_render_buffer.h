#pragma once

#include <QByteArray>
#include <QMatrix4x4>
#include <QSharedPointer>
#include <QStringList>
#include <QUrl>
#include <array>
#include <functional>
#include <memory>
#include <vector>

#include "contracts/host/render_buffer.h"
#include "default/files/point_export.h"
#include "default/models/echo_model.h"
#include "default/models/filter_model.h"
#include "default/models/settings_value.h"
#include "default/models/specific_table_model.h"
#include "default/point_files/channel_layout.h"
#include "default/point_files/pcd_frame_store.h"
#include "default/point_files/pcd_settings.h"
#include "default/point_files/placing.h"
#include "default/point_files/point_file_writer.h"

namespace tarvo::lidar {
struct PlayState;
}

namespace tarvo::skarnvisor {

/// What QML sees of a track of point files: the vertices of the current file, the display settings and the tables of
/// the side panels. The parser, its parent, fills it.
///
/// Threads. Properties are read on any thread, the table models on the GUI thread. Whatever sets or does something
/// serves any one thread at a time, and emits there; `startExport` is the GUI thread's alone. Settings are atomics or
/// snapshots that the pipeline reads as they stand. The frame has a lock of its own, and no signal is emitted under it.
class DefaultPcdFrameRenderBuffer : public RenderBuffer {
  Q_OBJECT
  // The picture
  Q_PROPERTY(QByteArray vertex READ vertex NOTIFY vertexChanged)
  Q_PROPERTY(int primitiveCount READ primitiveCount NOTIFY vertexChanged)
  Q_PROPERTY(QByteArray laserPoints READ laserPoints NOTIFY vertexChanged)
  Q_PROPERTY(int laserCount READ laserCount NOTIFY vertexChanged)
  Q_PROPERTY(QString status READ status NOTIFY vertexChanged)
  Q_PROPERTY(bool statusEnabled READ statusEnabled WRITE setStatusEnabled)
  Q_PROPERTY(bool playByFrame READ playByFrame WRITE setPlayByFrame NOTIFY playByFrameChanged)
  Q_PROPERTY(bool distanceCorrectionState READ distanceCorrectionState WRITE setDistanceCorrectionState)
  // Colours
  Q_PROPERTY(int colorMode READ colorMode WRITE setColorMode NOTIFY colorModeChanged)
  Q_PROPERTY(QStringList colorModeTitles READ colorModeTitles NOTIFY colorModeTitlesChanged)
  Q_PROPERTY(int colorModeSplitWindow READ colorModeSplitWindow WRITE setColorModeSplitWindow NOTIFY
                 colorModeSplitWindowChanged)
  Q_PROPERTY(bool splitWindow READ splitWindow NOTIFY splitWindowChanged)
  // Selection and tables
  Q_PROPERTY(bool selectEnabled READ selectEnabled WRITE setSelectEnabled NOTIFY renderStateChanged)
  Q_PROPERTY(QMatrix4x4 selectionMatrix READ selectionMatrix WRITE setSelectionMatrix NOTIFY renderStateChanged)
  Q_PROPERTY(bool spreadSheetEnabled READ spreadSheetEnabled WRITE setSpreadSheetEnabled NOTIFY renderStateChanged)
  Q_PROPERTY(QAbstractTableModel *spreadSheetModel READ readSpreadSheetModel NOTIFY spreadSheetModelChanged)
  Q_PROPERTY(QAbstractTableModel *channelModel READ readChannelModel NOTIFY channelModelChanged)
  Q_PROPERTY(bool monitorViewEnabled READ monitorViewEnabled WRITE setMonitorViewEnabled NOTIFY renderStateChanged)
  Q_PROPERTY(QAbstractTableModel *monitorModel READ readMonitorModel NOTIFY monitorModelChanged)
  Q_PROPERTY(tarvo::skarnvisor::FilterModel *filterModel READ readFilterModel NOTIFY filterModelChanged)
  Q_PROPERTY(tarvo::skarnvisor::EchoModel *echoModel READ readEchoModel NOTIFY echoModelChanged)
  Q_PROPERTY(QObject *pointExport READ pointExport CONSTANT)
  Q_PROPERTY(bool usePixelChannelLayout READ usePixelChannelLayout NOTIFY renderStateChanged)

 public:
  explicit DefaultPcdFrameRenderBuffer(QObject *parent = nullptr);
  ~DefaultPcdFrameRenderBuffer() override;

  [[nodiscard]] QString renderSource() const override;
  /// `primitiveCount` vertices of 12 bytes.
  [[nodiscard]] virtual QByteArray vertex() const;
  [[nodiscard]] virtual int primitiveCount() const { return m_store.primitiveCount; }
  [[nodiscard]] virtual int channelScale() const { return 256; }
  [[nodiscard]] virtual QByteArray laserPoints() const { return {}; }
  [[nodiscard]] virtual int laserCount() const { return 0; }
  [[nodiscard]] virtual int colorMode() const { return m_colors.take()->mode; }
  virtual void setColorMode(int mode);
  [[nodiscard]] virtual int colorModeSplitWindow() const { return m_colors.take()->splitMode; }
  virtual void setColorModeSplitWindow(int mode);
  [[nodiscard]] virtual bool splitWindow() const { return m_splitWindow; }

  // ---- properties
  [[nodiscard]] QStringList colorModeTitles() const;
  [[nodiscard]] QString status() const { return {}; }
  [[nodiscard]] bool statusEnabled() const { return false; }
  void setStatusEnabled(bool enabled) { m_settings.statusEnabled = enabled; }
  [[nodiscard]] bool playByFrame() const { return m_settings.playByFrame; }
  void setPlayByFrame(bool byFrame);
  [[nodiscard]] bool distanceCorrectionState() const { return false; }
  void setDistanceCorrectionState(bool) {}  // the files hold corrected points
  [[nodiscard]] bool selectEnabled() const { return m_settings.selectEnabled; }
  void setSelectEnabled(bool enabled);
  [[nodiscard]] QMatrix4x4 selectionMatrix() const { return m_settings.selectionMatrix.copy(); }
  void setSelectionMatrix(const QMatrix4x4 &matrix);
  [[nodiscard]] bool spreadSheetEnabled() const { return m_settings.spreadSheetEnabled; }
  void setSpreadSheetEnabled(bool enabled);
  [[nodiscard]] bool monitorViewEnabled() const { return m_settings.monitorViewEnabled; }
  void setMonitorViewEnabled(bool enabled) { m_settings.monitorViewEnabled = enabled; }
  [[nodiscard]] bool usePixelChannelLayout() const { return m_settings.usePixelChannelLayout; }
  // Reading a table reloads it in every view.
  [[nodiscard]] QAbstractTableModel *readSpreadSheetModel() const;
  [[nodiscard]] QAbstractTableModel *readChannelModel() const;
  [[nodiscard]] QAbstractTableModel *readMonitorModel() const;
  [[nodiscard]] FilterModel *readFilterModel() { return &m_filterModel; }
  [[nodiscard]] EchoModel *readEchoModel() { return &m_echoModel; }

  // ---- invokables
  // The ground filter keeps its settings; the range images that it would work on are not made from files.
  Q_INVOKABLE void setGroundFilterSwitch(bool on);
  Q_INVOKABLE void setGroundFilter(int firstChannel, int lastChannel, float limitA, float limitB, float limitC,
                                   float limitD, int byteA, int byteB, float ratio, int byteC, int byteD, int byteE,
                                   float low, float high);
  Q_INVOKABLE void setChannelMapping(bool on);
  Q_INVOKABLE void setDisableSubpixelChannel(bool on);
  Q_INVOKABLE void setFilterSubpixelChannel(bool on);
  Q_INVOKABLE void setUsePixelChannelLayout(bool enable);
  /// Shows or hides ring `index` + 1; an index outside the table is ignored.
  Q_INVOKABLE void setDisplayedFlag(int index, bool shown, bool refresh = true);
  /// Asks for a file and writes the shown points to it, the selected ones while selecting. False when cancelled or not
  /// written.
  Q_INVOKABLE bool capture2PCD();
  /// The same beside the program's other work, told of by `pointExport`; asks only without a path. With `titles`, or
  /// for a ".csv" file, the point table, with only those columns where they are given. False when nothing starts:
  /// cancelled, or one is being written.
  Q_INVOKABLE bool startExport(QString filePath = QString(), QStringList titles = {});
  QObject *pointExport() const { return m_pointExport.get(); }
  /// Writes every PLY and PCD file of the track as a BIN file into the folder. False without a track of one clip, and
  /// when a file could not be read.
  Q_INVOKABLE bool saveToData(QUrl folder);
  Q_INVOKABLE void detailDataUpdata();
  /// Lists and sorts the rows of the point table anew. Any thread.
  Q_INVOKABLE void refreshSelectionDisplay();
  Q_INVOKABLE int glslType() const { return 0; }
  Q_INVOKABLE void updateMask(int mask);
  /// Writes the points of one file to another, whose suffix names the format: .bin, .pcd or .csv. Works on its own, on
  /// any thread. Empty, or one sentence saying why it failed.
  Q_INVOKABLE QString convertFile(QString from, QString to) const;

  // ---- for the rest of the pipeline
  [[nodiscard]] QString currentFile() const { return m_currentFile.copy(); }
  void setCurrentFile(const QString &path) { m_currentFile.set(path); }
  [[nodiscard]] QString outputFolder() const { return m_outputFolder.copy(); }
  /// Once, before the first run.
  void setPlayState(std::shared_ptr<lidar::PlayState> state) { m_playState = std::move(state); }
  /// While on, the point table follows every frame; off restores what it changed. Two tracks share what is restored.
  void setDetailExport(bool on, int type, const QUrl &url);
  void setFileQuestion(std::function<QString(const QString &preselected)> question) {
    m_askForFile = std::move(question);
  }

  PcdFrameStore &store() { return m_store; }
  [[nodiscard]] PlacingSettings placingSettings() const;
  /// Step behind the points of a frame: ground filter, signals, table.
  void finishFrame();
  [[nodiscard]] ChannelLayout channelLayout() const { return m_layout.copy(); }

 Q_SIGNALS:
  void vertexChanged();
  void channelModelChanged();
  void renderStateChanged();
  void colorModeChanged();
  void colorModeTitlesChanged();
  void spreadSheetModelChanged();
  void monitorModelChanged();
  void playByFrameChanged();
  void filterModelChanged();
  void echoModelChanged();
  void colorModeSplitWindowChanged();
  void splitWindowChanged();

 private:
  void createModels();
  /// Marks the selected points and lists the rows of the point table.
  void refreshSelection();
  void refreshLayout();
  /// Asks the user for a file and remembers it; empty when he backed out.
  QString askForFile() const;
  /// The shown points of the frame, the selected ones while selecting.
  std::vector<CapturedPoint> capturedPoints() const;

  PcdFrameStore m_store;
  PcdSettings m_settings;
  Snapshot<PcdColors> m_colors;
  Snapshot<ChannelLayout> m_layout;
  Snapshot<GroundFilterSettings> m_groundFilter;
  Snapshot<QString> m_currentFile;
  Snapshot<QString> m_outputFolder;
  std::array<Relaxed<bool>, drawnRings> m_displayedFlags;  ///< by ring - 1
  FilterModel m_filterModel;
  EchoModel m_echoModel;
  QSharedPointer<ChannelModel> m_channelModel;
  QSharedPointer<SpreadSheetModel> m_spreadSheetModel;
  QSharedPointer<MonitorModel> m_monitorModel;
  std::shared_ptr<lidar::PlayState> m_playState;
  std::function<QString(const QString &preselected)> m_askForFile;
  QString m_detailExportPath;                  ///< of the thread that sets
  bool m_splitWindow = false;                  ///< read at construction
  std::unique_ptr<PointExport> m_pointExport;  ///< the last member: its end waits for a thread that uses the others
};

}  // namespace tarvo::skarnvisor
