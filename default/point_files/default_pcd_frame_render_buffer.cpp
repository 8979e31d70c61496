#include "default/point_files/default_pcd_frame_render_buffer.h"

#include <QAbstractTableModel>
#include <QSettings>
#include <algorithm>
#include <utility>

#include "contracts/runtime/sdk_source.h"
#include "default/files/settings_file.h"
#include "default/point_files/pcd_columns.h"

namespace tarvo::skarnvisor {

namespace {

constexpr int monitorColumns = 3;
constexpr int shortDecimals = 3;
constexpr int longDecimals = 6;

/// What a per-frame export changed, of the whole process.
struct BeforeExport {
  std::atomic<bool> spreadSheetEnabled{false};
  std::atomic<bool> playByFrame{true};
};

BeforeExport &beforeExport() {
  static BeforeExport values;
  return values;
}

}  // namespace

DefaultPcdFrameRenderBuffer::DefaultPcdFrameRenderBuffer(QObject *parent)
    : RenderBuffer(parent),
      m_filterModel(nullptr),
      m_echoModel(nullptr),
      m_askForFile(askForPcdFile),
      m_pointExport(std::make_unique<PointExport>(this)) {
  // moc registers the pointer types of our own classes only; without this a read by name gives nothing.
  qRegisterMetaType<QAbstractTableModel *>();
  for (Relaxed<bool> &flag : m_displayedFlags) flag = true;
  m_splitWindow = QSettings(settingsFile(), QSettings::IniFormat).value(QStringLiteral("SplitWindow"), false).toBool();
  createModels();
}

DefaultPcdFrameRenderBuffer::~DefaultPcdFrameRenderBuffer() = default;

void DefaultPcdFrameRenderBuffer::createModels() {
  const auto channelCell = [this](int row, int column) -> QVariant {
    if (row < 0 || row >= static_cast<int>(drawnRings)) return {};
    if (column == 0) return m_displayedFlags[static_cast<std::size_t>(row)].load();
    return column == 1 ? row + 1 : 0;
  };
  const QString none = QStringLiteral("N/A");
  m_channelModel.reset(new ChannelModel(this, static_cast<int>(drawnRings),
                                        {QString(), QStringLiteral("CH #"), none, none}, channelCell));
  m_spreadSheetModel.reset(new SpreadSheetModel(this, pcdColumns(m_store, m_settings.digitPrecision)));
  m_spreadSheetModel->setRowAccess([this](const auto &read) {
    const std::lock_guard lock(m_store.frameMutex);
    read({m_store.spreadSheetRows.data(), m_store.listed});
  });
  m_monitorModel.reset(new MonitorModel(this, monitorColumns,
                                        {QStringLiteral("ID"), QStringLiteral("Name"), QStringLiteral("Value")},
                                        [](int, int) { return QVariant(); }));
}

QString DefaultPcdFrameRenderBuffer::renderSource() const { return QStringLiteral("Ply.qml"); }

QByteArray DefaultPcdFrameRenderBuffer::vertex() const { return m_store.vertexBytes(); }

QAbstractTableModel *DefaultPcdFrameRenderBuffer::readSpreadSheetModel() const {
  m_spreadSheetModel->reload();
  return m_spreadSheetModel.data();
}

QAbstractTableModel *DefaultPcdFrameRenderBuffer::readChannelModel() const {
  m_channelModel->refresh();
  return m_channelModel.data();
}

QAbstractTableModel *DefaultPcdFrameRenderBuffer::readMonitorModel() const {
  m_monitorModel->reload();
  return m_monitorModel.data();
}

// ---- colours

QStringList DefaultPcdFrameRenderBuffer::colorModeTitles() const {
  QStringList titles;
  for (int mode = 0; mode < PcdColors::count; ++mode) {
    const std::string_view title = PcdColors::title(mode);
    titles.append(QString::fromLatin1(title.data(), static_cast<int>(title.size())));
  }
  return titles;
}

void DefaultPcdFrameRenderBuffer::setColorMode(int mode) {
  const bool changed = colorMode() != mode;
  m_colors.update([mode](PcdColors &colors) { colors.mode = mode; });
  if (changed) Q_EMIT colorModeChanged();
  Q_EMIT renderStateChanged();
}

void DefaultPcdFrameRenderBuffer::setColorModeSplitWindow(int mode) {
  const bool changed = colorModeSplitWindow() != mode;
  m_colors.update([mode](PcdColors &colors) { colors.splitMode = mode; });
  if (changed) Q_EMIT colorModeSplitWindowChanged();
  Q_EMIT renderStateChanged();
}

void DefaultPcdFrameRenderBuffer::updateMask(int mask) {
  m_colors.update([mask](PcdColors &colors) { colors.attributes.attributeMask = static_cast<std::uint16_t>(mask); });
  Q_EMIT vertexChanged();
}

// ---- settings

void DefaultPcdFrameRenderBuffer::setPlayByFrame(bool byFrame) {
  if (m_settings.playByFrame.exchange(byFrame) != byFrame) Q_EMIT playByFrameChanged();
}

void DefaultPcdFrameRenderBuffer::setDisplayedFlag(int index, bool shown, bool refresh) {
  if (index >= 0 && index < static_cast<int>(drawnRings)) m_displayedFlags[static_cast<std::size_t>(index)] = shown;
  if (!refresh) return;
  Q_EMIT channelModelChanged();
  Q_EMIT renderStateChanged();
}

void DefaultPcdFrameRenderBuffer::setDetailExport(bool on, int type, const QUrl &url) {
  BeforeExport &before = beforeExport();
  m_detailExportPath = url.toLocalFile();
  if (on) {
    before.spreadSheetEnabled = spreadSheetEnabled();
    before.playByFrame = playByFrame();
    m_settings.detailExportType = type;
    setSpreadSheetEnabled(true);
    setPlayByFrame(true);
  } else {
    m_settings.detailExportType = -1;
    setSpreadSheetEnabled(before.spreadSheetEnabled);
    setPlayByFrame(before.playByFrame);
  }
}

void DefaultPcdFrameRenderBuffer::detailDataUpdata() {
  m_settings.digitPrecision = m_settings.digitPrecision == shortDecimals ? longDecimals : shortDecimals;
  refreshSelection();
  Q_EMIT spreadSheetModelChanged();
}

// ---- channel layout

void DefaultPcdFrameRenderBuffer::refreshLayout() {
  if (!m_settings.usePixelChannelLayout) {
    m_layout.set(ChannelLayout::plain());
    return;
  }
  const bool byElevation = m_settings.channelMapping;
  ChannelLayout layout;
  {
    const std::lock_guard lock(m_store.frameMutex);
    layout = ChannelLayout::fromPoints({m_store.points.data(), m_store.usableLocked()}, byElevation);
  }
  m_layout.set(std::move(layout));
}

void DefaultPcdFrameRenderBuffer::setChannelMapping(bool on) {
  m_settings.channelMapping = on;
  refreshLayout();
  if (!m_settings.usePixelChannelLayout && on) m_layout.update([](ChannelLayout &layout) { layout.setInterleaved(); });
  Q_EMIT renderStateChanged();
}

void DefaultPcdFrameRenderBuffer::setDisableSubpixelChannel(bool on) {
  m_settings.disableSubpixelChannel = on;
  if (m_settings.usePixelChannelLayout)
    refreshLayout();
  else if (on)
    m_layout.update([](ChannelLayout &layout) { layout.setOrdered(); });
  Q_EMIT renderStateChanged();
}

void DefaultPcdFrameRenderBuffer::setFilterSubpixelChannel(bool on) {
  m_settings.filterSubpixelChannel = on;
  if (m_settings.usePixelChannelLayout)
    refreshLayout();
  else if (on)
    m_layout.update([](ChannelLayout &layout) { layout.setOrdered(); });
  Q_EMIT renderStateChanged();
}

void DefaultPcdFrameRenderBuffer::setUsePixelChannelLayout(bool enable) {
  m_settings.usePixelChannelLayout = enable;
  refreshLayout();
  if (!enable && m_settings.channelMapping) m_layout.update([](ChannelLayout &layout) { layout.setInterleaved(); });
  Q_EMIT renderStateChanged();
}

void DefaultPcdFrameRenderBuffer::setGroundFilterSwitch(bool on) {
  m_settings.groundFilterSwitch = on;
  if (on && m_settings.usePixelChannelLayout) refreshLayout();
}

void DefaultPcdFrameRenderBuffer::setGroundFilter(int firstChannel, int lastChannel, float limitA, float limitB,
                                                  float limitC, float limitD, int byteA, int byteB, float ratio,
                                                  int byteC, int byteD, int byteE, float low, float high) {
  GroundFilterSettings filter = m_groundFilter.copy();
  filter.firstChannel = firstChannel;
  filter.lastChannel = lastChannel;
  filter.limitA = limitA;
  filter.limitB = limitB;
  filter.limitC = limitC;
  filter.limitD = limitD;
  filter.byteA = static_cast<std::uint8_t>(byteA);
  filter.byteB = static_cast<std::uint8_t>(byteB);
  filter.ratio = ratio;
  filter.byteC = static_cast<std::uint8_t>(byteC);
  filter.byteD = static_cast<std::uint8_t>(byteD);
  filter.byteE = static_cast<std::uint8_t>(byteE);
  filter.low = low;
  filter.high = high;
  m_groundFilter.set(filter);
  if (m_settings.usePixelChannelLayout) refreshLayout();
}

}  // namespace tarvo::skarnvisor
