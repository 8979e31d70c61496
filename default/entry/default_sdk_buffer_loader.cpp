#include "default/entry/default_sdk_buffer_loader.h"

#include <QPointer>
#include <QThread>
#include <memory>
#include <stdexcept>
#include <thread>

#include "contracts/host/category.h"
#include "contracts/host/threads.h"
#include "contracts/runtime/sv_sdk_runtime.h"
#include "default/entry/family_table.h"
#include "default/pipeline/default_sdk_parser.h"
#include "default/pipeline/default_sdk_producer.h"
#include "default/types/lidar_type_configuration.h"
#include "default/types/lidar_type_description.h"

namespace tarvo::skarnvisor {

namespace {

constexpr std::chrono::milliseconds pausePerStartPoll{30};

bool isCaptureFile(const SDKSource &source) {
  return source.driverParam.sourceKind == static_cast<int>(lidar::SourceKind::CaptureFile);
}

void tuneDecoder(lidar::DriverParam &param) {
  param.tuningA = 1.0F;
  param.tuningB = 1.5F;
  param.flag1161 = false;
  if (param.fastTuning) {
    param.tuningA = 11.0F;
  } else if (param.tuningSelector == 0) {
    param.tuningA = 4.0F;
  }
  param.preParse = true;
}

void noteLoadResults(SDKSource &source) {
  source.correctionFailed = !source.runtime->IsCorrectionLoadSuccess();
  source.firetimesFailed = !source.runtime->IsFiretimesLoadSuccess();
  source.dcfFailed = !source.runtime->IsDcfLoadSuccess();
}

// The whole type from the local code page, a stray zero byte in it included.
QString textOf(const std::string &type) { return QString::fromLocal8Bit(type.data(), static_cast<int>(type.size())); }

// The port of the data; a capture also gets its title, the part of the path behind its last "/".
int findPort(SDKSource &source) {
  if (!isCaptureFile(source)) return source.driverParam.liveUdpPort;
  const std::string &path = source.driverParam.capturePath;
  source.sourceTitle = QString::fromLocal8Bit(path.substr(path.rfind('/') + 1).c_str());
  return source.runtime->GetPcapPort();
}

void installFastPath(SDKSource &source, DefaultSDKFrameRenderBuffer *renderBuffer) {
  const std::lock_guard lock(source.frameLock);
  source.renderBuffer = renderBuffer;
  source.tryFillVertices = [renderBuffer](const lidar::SDKPointInfo *points, unsigned count, int mode) {
    return renderBuffer->tryFillVertices(points, count, mode);
  };
}

template <typename T>
T *require(QObject *object, const QString &name) {
  if (T *found = qobject_cast<T *>(object)) return found;
  throw std::runtime_error("the new pipeline has no " + name.toStdString());
}

}  // namespace

// ---- the clip's functor

DefaultSDKNetLoader::DefaultSDKNetLoader(QObject *parent)
    : Functor(parent), m_netBuffer(new DefaultSDKNetBuffer(this)) {}

DefaultSDKNetLoader::DefaultSDKNetLoader() : DefaultSDKNetLoader(nullptr) {}

DefaultSDKNetLoader::~DefaultSDKNetLoader() {
  // Whoever still holds the source keeps it; as our child it would be deleted twice.
  if (m_sdkSource) m_sdkSource->setParent(nullptr);
}

void DefaultSDKNetLoader::operator()() {
  if (m_sdkSource) m_netBuffer->follow(*m_sdkSource);
}

void DefaultSDKNetLoader::takeOver(QSharedPointer<SDKSource> &source) {
  m_sdkSource.swap(source);
  if (m_sdkSource) m_sdkSource->setParent(this);
}

// ---- opening a source

/// The objects of a new sub-category, by the roles that the wiring gives them.
struct DefaultSDKLoader::Parts {
  DefaultSDKParser *parser;
  DefaultSDKProducer *producer;
  DefaultSDKNetLoader *netLoader;
  DefaultSDKTrackBuffer *track;

  Parts(const Category::Instance &instance, const FamilyRow &family, const QString &key) {
    const QString space = QStringLiteral("tarvo::skarnvisor::");
    const QString producerName = space + QLatin1String(family.producer) + key;
    const QString parserName = space + QLatin1String(family.parser) + key;
    const QString netLoaderName = space + QLatin1String(netLoaderClass) + key;
    const QString trackName = producerName + QStringLiteral(".defaultSDKTrackBuffer");
    parser = require<DefaultSDKParser>(instance.functor(parserName).data(), parserName);
    producer = require<DefaultSDKProducer>(instance.functor(producerName).data(), producerName);
    netLoader = require<DefaultSDKNetLoader>(instance.functor(netLoaderName).data(), netLoaderName);
    track = require<DefaultSDKTrackBuffer>(instance.buffer(trackName), trackName);
  }

  [[nodiscard]] DefaultSDKFrameRenderBuffer *renderBuffer() const { return parser->defaultSDKFrameBuffer(); }
};

DefaultSDKLoader::DefaultSDKLoader(QObject *parent)
    : Functor(parent),
      m_inputSDKToggle(new InputSDKToggle(this)),
      m_pause([](std::chrono::milliseconds pause) { std::this_thread::sleep_for(pause); }) {
  m_inputSDKToggle->setExtsFile({QStringLiteral("pcap"), QStringLiteral("pcapng")});
  for (const FamilyRow &row : familyTable)
    m_ornikaLoader.*
        row.callback = [this, &row](const std::string &type, int port) { return buildPipeline(row, type, port); };
}

DefaultSDKLoader::DefaultSDKLoader() : DefaultSDKLoader(nullptr) {}

DefaultSDKLoader::~DefaultSDKLoader() = default;

QVariantList DefaultSDKLoader::lidarTypes() const { return describeLidarTypes(); }

void DefaultSDKLoader::operator()() {
  const QSharedPointer<SDKSource> source = m_inputSDKToggle->sdkSource();
  if (!source || !source->runtime) return;
  lidar::SvSdkRuntime &runtime = *source->runtime;
  tuneDecoder(source->driverParam);
  runtime.Init(source->driverParam);  // its result is not looked at: the wait decides
  if (!awaitStart(*source)) return;
  lidar::DecodeParams::write(runtime, [](lidar::FrameDecodeParam &param) {
    param.firetimeCorrection = false;
    param.dcfCorrection = false;
  });
  noteLoadResults(*source);
  const int port = findPort(*source);
  const std::string type = runtime.GetLidarType();
  m_ornikaLoader.parse(type, port);
  if (typeTraits(type).denseCamera && source->renderBuffer)
    installFastPath(*source, static_cast<DefaultSDKFrameRenderBuffer *>(source->renderBuffer));
  if (const LidarTypeRow *row = findLidarType(type); row && row->needsNoCorrection) runtime.SetCorrectionLoadFlag(true);
}

bool DefaultSDKLoader::awaitStart(const SDKSource &source) const {
  while (!source.runtime->GetInitFinish(lidar::SvSdkInitFinish::Ready)) {
    if (source.runtime->GetInitFinish(lidar::SvSdkInitFinish::Failed)) return false;
    // The host ends a start that the user gives up, and all of them when the program ends.
    if (QThread::currentThread()->isInterruptionRequested()) return false;
    m_pause(pausePerStartPoll);
  }
  return true;
}

int DefaultSDKLoader::buildPipeline(const FamilyRow &family, const std::string &type, int port) {
  runInThreadOf(this, [&] { wire(family, type, port); });
  if (auto *category = qobject_cast<Category::Instance *>(parent())) Q_EMIT category->changed();
  return 0;
}

void DefaultSDKLoader::wire(const FamilyRow &family, const std::string &type, int port) {
  const QSharedPointer<SDKSource> source = m_inputSDKToggle->sdkSource();
  const QString key = textOf(type) + QString::number(port);
  auto *category = require<Category::Instance>(parent(), QStringLiteral("category"));
  std::unique_ptr<Category::Instance> made(category->addSubCategory(QLatin1String(family.category), key));
  const Parts parts(*made, family, key);
  handOver(parts, *source);
  connectRerun(parts);
  describeTrack(parts, *source, type, port);
  configure(family, parts, *source, type);
  static_cast<void>(made.release());  // now the category's alone
}

void DefaultSDKLoader::handOver(const Parts &parts, SDKSource &source) {
  parts.netLoader->takeOver(m_inputSDKToggle->sdkSource());
  parts.producer->setRenderBuffer(parts.renderBuffer());
  parts.track->setRuntime(source.runtime);
  parts.producer->addSuccessor(parts.parser);
  parts.renderBuffer()->setSource(&source);
}

// Every setting that changes has the pipeline run again. The signal may come from the functor thread.
void DefaultSDKLoader::connectRerun(const Parts &parts) {
  const QPointer<Functor> producer = parts.producer;
  const QPointer<Functor> parser = parts.parser;
  connect(parts.renderBuffer(), &DefaultSDKFrameRenderBuffer::renderStateChanged, this, [producer, parser] {
    if (producer) producer->run();
    if (parser) parser->run();
  });
}

void DefaultSDKLoader::describeTrack(const Parts &parts, const SDKSource &source, const std::string &type, int port) {
  parts.track->addClip(parts.netLoader->defaultSDKNetBuffer());
  parts.track->setPort(port);
  connect(parts.track, &TrackBuffer::controlSelectedNotify, parts.renderBuffer(), &RenderBuffer::setControlSelected);
  parts.track->setTrackBody(isCaptureFile(source) ? QStringLiteral("DefaultFileByFrameTrackBody.qml")
                                                  : QStringLiteral("DefaultNetTrackBody.qml"));
  parts.track->setLidarName(textOf(type));
}

void DefaultSDKLoader::configure(const FamilyRow &family, const Parts &parts, SDKSource &source,
                                 const std::string &type) {
  DefaultSDKFrameRenderBuffer *renderBuffer = parts.renderBuffer();
  renderBuffer->setLidarType(type);
  renderBuffer->setChannelCounts(source.runtime->GetLidarNum(), source.runtime->GetChannelNum());
  configureLidarType(lidarTypeChain(family.family), this, *renderBuffer, type, source.driverParam.sourceKind, source);
  if (family.family == LidarFamily::KR && typeTraits(type).denseCamera) installFastPath(source, renderBuffer);
}

}  // namespace tarvo::skarnvisor
