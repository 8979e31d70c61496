#include "default/pipeline/default_sdk_frame_render_buffer.h"

#include "contracts/runtime/parallel_isp_engine.h"
#include "contracts/runtime/sdk_source.h"
#include "contracts/runtime/sv_sdk_runtime.h"
#include "default/files/settings_file.h"
#include "default/pipeline/announcements.h"
#include "default/pipeline/default_sdk_parser.h"
#include "default/pipeline/stored_points.h"

#include <QFile>
#include <QSettings>
#include <QStandardPaths>

#include <utility>

namespace tarvo::skarnvisor {

namespace {

using tarvo::lidar::SDKSource;

constexpr int channelsAtStart = 128;

QString dataFile(const char *below) {
  return QStandardPaths::writableLocation(QStandardPaths::DocumentsLocation) + QLatin1String(below);
}

}  // namespace

DefaultSDKFrameRenderBuffer::DefaultSDKFrameRenderBuffer(QObject *parent)
    : RenderBuffer(parent), m_askForFile(askForPcdFile), m_pointExport(std::make_unique<PointExport>(this)) {
  createModels();
  const QString rntc = dataFile("/SkarnvisorDataFiles/correction/angle_correction/rntc.csv");
  if (QFile::exists(rntc)) m_deviceTables.rntcTable.load(rntc);
  connect(this, &DefaultSDKFrameRenderBuffer::someSignalReceived, this, &DefaultSDKFrameRenderBuffer::statusChanged);
  loadSettings();
  installHooks();
}

DefaultSDKFrameRenderBuffer::~DefaultSDKFrameRenderBuffer() = default;

void DefaultSDKFrameRenderBuffer::createModels() {
  QVector<ColumnRecord> columns;
  for (const PointColumn &column : baseColumns())
    columns.append(makeColumn(column, m_picture, m_settings.detailDecimals));
  QList<PcdFieldRecord> pcdFields;
  for (const PointColumn &field : basePcdFields()) pcdFields.append(makePcdField(field));
  m_pcdFields.set(std::move(pcdFields));
  m_spreadSheetModel = QSharedPointer<SpreadSheetModel>::create(this, std::move(columns));
  m_spreadSheetModel->setRowAccess([this](const auto &read) {
    const std::lock_guard lock(m_picture.frameMutex);
    read(m_picture.spreadSheetRows);
  });

  const auto channelCell = [this](int row, int column) -> QVariant {
    const bool known = row >= 0 && row < m_correctionView.channels;
    const bool *displayed = known ? m_correctionView.displayed.load() : nullptr;
    const float *elevations = known ? m_correctionView.elevations.load() : nullptr;
    const float *azimuths = known ? m_correctionView.azimuths.load() : nullptr;
    switch (column) {
      case 0:
        return displayed == nullptr || displayed[row];
      case 1:
        return row + 1;
      case 2:
        return elevations != nullptr ? elevations[row] : -1.0F;
      case 3:
        return azimuths != nullptr ? azimuths[row] : -1.0F;
      default:
        return {};
    }
  };
  m_channelModel = QSharedPointer<ChannelModel>::create(
      this, channelsAtStart,
      QStringList{QString(), QStringLiteral("CH #"), QStringLiteral("Elevation"), QStringLiteral("Azimuth")},
      channelCell);

  const auto monitorCell = [this](int row, int column) -> QVariant {
    const NamedValue cells = m_deviceTables.monitorRows.row(row);
    switch (column) {
      case 0:
        return cells.id;
      case 1:
        return cells.name;
      case 2:
        return cells.value;
      default:
        return {};
    }
  };
  m_monitorModel = QSharedPointer<MonitorModel>::create(
      this, 3, QStringList{QStringLiteral("ID"), QStringLiteral("Name"), QStringLiteral("Value")}, monitorCell);

  const auto faultCell = [this](int row, int column) -> QVariant {
    const NamedValue cells = m_deviceTables.faultRows.row(row);
    return column == 0 ? QVariant(cells.name) : column == 1 ? cells.value : QVariant();
  };
  m_faultmessageModel = QSharedPointer<MonitorModel>::create(
      this, 2, QStringList{QStringLiteral("Name"), QStringLiteral("Value")}, faultCell);
}

void DefaultSDKFrameRenderBuffer::loadSettings() {
  const QSettings settings(settingsFile(), QSettings::IniFormat);
  m_splitWindow = settings.value(QStringLiteral("SplitWindow"), false).toBool();
}

void DefaultSDKFrameRenderBuffer::installHooks() {
  m_hooks.frame = [this](Frame &) {
    const int channels = m_channelCount;
    if (m_channelModel->rowCount() == channels) return;
    m_channelModel->setRowCount(channels);
    announce(&DefaultSDKFrameRenderBuffer::channelModelChanged);
  };
  m_hooks.pointRefresh = [this](int position, Point &point) {
    const auto mask = m_picture.areaMask.take();
    PointPassSettings settings = passSettings();
    settings.areaMask = {m_picture.areaFlags, *mask};
    const PointPass pass(std::move(settings));
    const auto index = static_cast<std::size_t>(position);
    const std::lock_guard lock(m_picture.frameMutex);
    if (position < 0 || index >= m_picture.vertices.size()) return;
    pass({.points = &point, .count = 1, .vertices = &m_picture.vertices[index], .firstPosition = index}, 0, 1);
  };
}

QString DefaultSDKFrameRenderBuffer::renderSource() const { return QStringLiteral("SDK.qml"); }

void DefaultSDKFrameRenderBuffer::prepareForQmlRemoval() {
  m_pointExport->stop();     // it may parse
  m_stackAllocation.wait();  // it uses the source
  {
    const std::lock_guard lock(m_picture.frameMutex);
    m_picture.fastVertexValid = false;
    m_picture.fastVertex.clear();
    m_picture.overlayVertices.clear();
    m_picture.overlayPointStore.clear();
    m_picture.rgbOverlayPrimitiveCount = 0;
    m_picture.rgbOverlayRows = 0;
  }
  SDKSource *const from = source();
  if (from == nullptr) return;
  {
    const std::lock_guard lock(from->frameLock);
    from->overlayPoints.clear();
    from->overlayColumns = 0;
    from->overlayRows = 0;
    // The source outlives this buffer, and its decoder may still be at work.
    from->tryFillVertices = nullptr;
    from->renderBuffer = nullptr;
  }
  if (from->ispEngine != nullptr && from->ispEngine->Enabled()) from->ispEngine->ClearAll(0);
}

void DefaultSDKFrameRenderBuffer::setLidarType(std::string lidarType) {
  const TypeTraits traits = typeTraits(lidarType);
  m_type.set({std::move(lidarType), traits});
}

QString DefaultSDKFrameRenderBuffer::toolBoxSource() const { return {}; }

QString DefaultSDKFrameRenderBuffer::modeEditorSource() const { return {}; }

QString DefaultSDKFrameRenderBuffer::initialFunctionSource() const { return {}; }

bool DefaultSDKFrameRenderBuffer::hasInitialFunction() const { return false; }

tarvo::lidar::SvSdkRuntime *DefaultSDKFrameRenderBuffer::runtime() const {
  const SDKSource *const from = source();
  return from != nullptr ? from->runtime : nullptr;
}

void DefaultSDKFrameRenderBuffer::setChannelCounts(int laserNum, int channelCount) {
  m_laserNum = laserNum;
  if (m_channelCount.exchange(channelCount) != channelCount)
    m_colors.table.update([channelCount](ColorTable &table) { table.attributes.channelCount = channelCount; });
}

QAbstractTableModel *DefaultSDKFrameRenderBuffer::readSpreadSheetModel() const {
  m_spreadSheetModel->reload();
  return m_spreadSheetModel.data();
}

QAbstractTableModel *DefaultSDKFrameRenderBuffer::readChannelModel() const {
  m_channelModel->refresh();
  return m_channelModel.data();
}

QAbstractTableModel *DefaultSDKFrameRenderBuffer::readMonitorModel() const {
  m_monitorModel->reload();
  return m_monitorModel.data();
}

QAbstractTableModel *DefaultSDKFrameRenderBuffer::readFaultmessageModel() const {
  m_faultmessageModel->reload();
  return m_faultmessageModel.data();
}

int DefaultSDKFrameRenderBuffer::laserCount() const {
  const std::lock_guard lock(m_picture.frameMutex);
  return m_picture.laserCount;
}

QByteArray DefaultSDKFrameRenderBuffer::vertex() const { return m_picture.vertexBytes(); }

int DefaultSDKFrameRenderBuffer::primitiveCount() const { return m_picture.primitiveCount; }

int DefaultSDKFrameRenderBuffer::stackFrameNum() const { return std::max<int>(m_ring.canvasCount, 1); }

QByteArray DefaultSDKFrameRenderBuffer::laserPoints() const { return m_picture.laserBytes(); }

QByteArray DefaultSDKFrameRenderBuffer::vertexGet(int index) const { return m_picture.canvasBytes(m_ring, index); }

int DefaultSDKFrameRenderBuffer::primitiveCountGet(int index) const { return m_picture.canvasPoints(m_ring, index); }

int DefaultSDKFrameRenderBuffer::getIndexUseNow() const { return m_ring.active() ? m_ring.canvasIndex.load() : 0; }

void DefaultSDKFrameRenderBuffer::announce(Signal signal) {
  AnnouncementScope::announce([this, signal] { (this->*signal)(); });
}

void DefaultSDKFrameRenderBuffer::beginDecode() {
  const std::lock_guard lock(m_parseMutex);
  m_decodeInFlight = true;
}

void DefaultSDKFrameRenderBuffer::endDecode() {
  const std::lock_guard lock(m_parseMutex);
  m_decodeInFlight = false;
  m_frameWaits = true;
}

StackSettings DefaultSDKFrameRenderBuffer::stackSettings() const {
  const std::lock_guard lock(m_picture.frameMutex);
  return m_ring.settings();
}

void DefaultSDKFrameRenderBuffer::restartRing() {
  const std::lock_guard lock(m_parseMutex);
  m_ring.restart();
}

void DefaultSDKFrameRenderBuffer::repeatParse() {
  SDKSource *const from = source();
  auto *const parser = qobject_cast<DefaultSDKParser *>(parent());
  if (from == nullptr || parser == nullptr || m_flow.frameAllocationBusy) return;
  const AnnouncementScope scope;
  const std::lock_guard lock(m_parseMutex);
  // With a ring, points that wait for their own run must not enter it twice.
  if (m_decodeInFlight || (m_frameWaits && m_ring.active())) {
    m_reparseOwed = true;
    return;
  }
  {
    const std::lock_guard points(from->frameLock);
    if (from->points.empty()) return;
  }
  // The producer's word is for the run that it has posted, not for this one.
  const bool skipsNextRun = m_flow.skipParse;
  m_flow.forceReparse = true;
  parser->parseLocked();
  m_flow.forceReparse = false;
  if (skipsNextRun) m_flow.skipParse = true;
}

}  // namespace tarvo::skarnvisor
