#include "host/core/host_core.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QMetaProperty>
#include <QVariant>
#include <algorithm>
#include <cstring>
#include <exception>
#include <limits>
#include <utility>

#include "contracts/host/category.h"
#include "contracts/host/log.h"
#include "contracts/runtime/sv_sdk_runtime.h"
#include "host/core/functor_scheduler.h"
#include "host/core/plugin_loader.h"

SKARN_LOG_SOURCE("host/host_core");

namespace tarvo::skarnvisor {
namespace {

template <typename T>
T *propertyOfType(const QObject *object) {
  const QMetaObject *const meta = object->metaObject();
  for (int i = QObject::staticMetaObject.propertyCount(); i < meta->propertyCount(); ++i) {
    if (auto *const found = qobject_cast<T *>(meta->property(i).read(object).value<QObject *>())) return found;
  }
  return nullptr;
}

template <std::size_t size>
void copyAddress(std::array<char, size> &target, const QString &address) {
  const QByteArray text = address.toLatin1().left(static_cast<int>(size) - 1);
  target.fill('\0');
  std::memcpy(target.data(), text.constData(), static_cast<std::size_t>(text.size()));
}

}  // namespace

struct HostCore::Request {
  enum class Kind { Capture, Live, Folder };
  Kind kind = Kind::Capture;
  QString path;
  int sensorPort = 0;
  LiveOptions live;
  QString title;

  QSharedPointer<Functor> loader;
  std::shared_ptr<lidar::PlayState> playState;
  QPointer<Pipeline> pipeline;  ///< taken up, its clip being loaded
  bool cancelled = false;

  [[nodiscard]] const char *loaderClass() const { return kind == Kind::Folder ? folderLoaderClass : lidarLoaderClass; }
  /// Why the source cannot be what the user says; empty if nothing speaks against it.
  [[nodiscard]] QString objection() const;
  void fill(lidar::DriverParam &parameters) const;
};

QString HostCore::Request::objection() const {
  const QFileInfo file(path);
  switch (kind) {
    case Kind::Capture:
      if (!file.exists()) return QStringLiteral("the file does not exist");
      if (file.isDir()) return QStringLiteral("it is a folder, not a capture file");
      if (!file.isReadable()) return QStringLiteral("the file may not be read");
      break;
    case Kind::Folder:
      if (!file.exists()) return QStringLiteral("there is no such folder");
      if (!file.isReadable()) return QStringLiteral("it may not be read");
      break;
    case Kind::Live:
      if (live.udpPort == 0) return QStringLiteral("a UDP port lies between 1 and 65535");
      break;
  }
  return {};
}

void HostCore::Request::fill(lidar::DriverParam &parameters) const {
  if (kind == Kind::Capture) {
    parameters.sourceKind = static_cast<std::int32_t>(lidar::SourceKind::CaptureFile);
    parameters.sensorPort = sensorPort;
    parameters.capturePath = QFile::encodeName(path).toStdString();
    return;
  }
  parameters.sourceKind = static_cast<std::int32_t>(lidar::SourceKind::Live);
  parameters.liveUdpPort = live.udpPort;
  copyAddress(parameters.multicastGroup, live.multicastGroup);
  copyAddress(parameters.bindAddress, live.bindAddress);
}

HostCore::HostCore(QObject *parent)
    : QObject(parent), m_timeline(nullptr), m_root(std::make_unique<Category::Instance>()) {
  connect(m_root.get(), &Category::Instance::changed, this, &HostCore::takeUp);
}

HostCore::~HostCore() {
  m_requests.clear();
  if (m_current) m_current->cancelled = true;
  m_root->scheduler().stop();
  if (m_current && m_current->pipeline) destroy(m_current->pipeline);
  m_current.reset();
  while (!m_pipelines.isEmpty()) {
    Pipeline *const pipeline = m_pipelines.takeLast();
    detach(pipeline);
    destroy(pipeline);
  }
  // Those whose closing was still waiting for its turn of the event loop.
  for (Pipeline *pipeline : findChildren<Pipeline *>(QString(), Qt::FindDirectChildrenOnly)) destroy(pipeline);
}

bool HostCore::loadPlugin(const QString &libraryPath, QString *error) {
  const QString failure = loadPluginLibrary(libraryPath);
  if (error != nullptr) *error = failure;
  if (failure.isEmpty()) return true;
  SKARN_LOG(LogLevel::Error, "%s", qPrintable(failure));
  return false;
}

// ---- opening
// ----------------------------------------------------------------------------------------------------------

void HostCore::openCapture(const QString &path, int sensorPort) {
  auto request = std::make_unique<Request>();
  request->sensorPort = sensorPort;
  request->path = QFileInfo(path).absoluteFilePath();
  request->title = QFileInfo(path).fileName();
  enqueue(std::move(request));
}

void HostCore::openFolder(const QString &path) {
  auto request = std::make_unique<Request>();
  request->kind = Request::Kind::Folder;
  request->path = QDir(path).absolutePath();
  request->title = QDir(request->path).dirName();
  enqueue(std::move(request));
}

void HostCore::openLive(const LiveOptions &options) {
  auto request = std::make_unique<Request>();
  request->kind = Request::Kind::Live;
  request->live = options;
  request->title = QStringLiteral("UDP port %1").arg(options.udpPort);
  enqueue(std::move(request));
}

void HostCore::openLivePort(int udpPort) {
  LiveOptions options;
  if (udpPort > 0 && udpPort <= std::numeric_limits<std::uint16_t>::max()) {
    options.udpPort = static_cast<std::uint16_t>(udpPort);
  }
  openLive(options);
}

void HostCore::enqueue(std::unique_ptr<Request> request) {
  m_requests.push_back(std::move(request));
  Q_EMIT openingChanged();
  QMetaObject::invokeMethod(this, &HostCore::startNext, Qt::QueuedConnection);
}

void HostCore::startNext() {
  if (m_current || m_requests.empty()) return;
  m_current = std::move(m_requests.front());
  m_requests.pop_front();
  const QString objection = m_current->objection();
  if (!objection.isEmpty()) return failCurrent(objection);
  try {
    startLoader(*m_current);
  } catch (const std::exception &failure) {
    failCurrent(QString::fromLocal8Bit(failure.what()));
  }
}

void HostCore::startLoader(Request &request) {
  const QString className = QLatin1String(request.loaderClass());
  request.loader = m_root->functor(className);
  if (!request.loader) {
    request.loader = m_root->addFunctor(className, className);
    connect(request.loader.data(), &Functor::finished, this, &HostCore::finishLoader);
  }
  if (auto *const toggle = propertyOfType<SDKToggle>(request.loader.data())) {
    SDKSource &source = *toggle->newSDKSource();
    request.fill(source.driverParam);
    request.playState = source.playState;
  } else if (auto *const files = propertyOfType<FileToggle>(request.loader.data())) {
    FileSource &source = *files->newFileSource();
    source.path = request.path;
    request.playState = source.playState;
  } else {
    throw std::runtime_error("class " + className.toStdString() + " takes no source: it has no input toggle");
  }
  request.loader->run();
}

void HostCore::takeUp() {
  if (!m_current || m_current->pipeline || m_current->cancelled) return;
  const QList<Category::Instance *> made = m_root->subCategories();
  if (made.isEmpty()) return;
  Pipeline::Origin origin{m_current->title, m_current->kind == Request::Kind::Live, m_current->playState};
  auto *const pipeline = new Pipeline(made.last(), std::move(origin), this);
  m_current->pipeline = pipeline;
  connect(pipeline, &Pipeline::clipLoaded, this,
          [this, pipeline](const QString &error) { finishOpening(pipeline, error); });
}

void HostCore::finishLoader(const QString &error) {
  if (!m_current || m_current->pipeline == nullptr) {
    // What a loader made and did not finish has no owner but the tree.
    for (Category::Instance *made : m_root->subCategories()) {
      const auto owns = [made](const Pipeline *pipeline) { return pipeline->instance() == made; };
      const auto living = findChildren<Pipeline *>(QString(), Qt::FindDirectChildrenOnly);
      if (std::none_of(living.begin(), living.end(), owns)) delete made;
    }
  }
  if (!m_current) return;
  if (m_current->pipeline) return m_current->pipeline->start();
  if (m_current->cancelled) return failCurrent(QStringLiteral("the opening was cancelled"));
  failCurrent(error.isEmpty() ? loaderFailure() : error);
}

QString HostCore::loaderFailure() const {
  if (auto *const toggle = propertyOfType<SDKToggle>(m_current->loader.data())) {
    const SvSdkRuntime *const runtime = toggle->sdkSource() ? toggle->sdkSource()->runtime : nullptr;
    const std::string reason = runtime != nullptr ? runtime->InitError() : std::string();
    if (!reason.empty()) return QString::fromLocal8Bit(reason.c_str());
  }
  return QStringLiteral("the source could not be started");
}

void HostCore::finishOpening(Pipeline *pipeline, const QString &error) {
  if (!m_current || m_current->pipeline != pipeline) return;
  const bool nothingFound = m_current->kind == Request::Kind::Folder && pipeline->frameCount() == 0;
  if (m_current->cancelled || !error.isEmpty() || nothingFound) {
    const QString reason = m_current->cancelled ? QStringLiteral("the opening was cancelled")
                           : !error.isEmpty()
                               ? error
                               : QStringLiteral("the folder holds no point-cloud file with a time in its name");
    destroy(pipeline);
    return failCurrent(reason);
  }
  m_pipelines.append(pipeline);
  connect(pipeline, &Pipeline::extentChanged, &m_timeline, &Timeline::updateExtent);
  endCurrent();
  Q_EMIT pipelinesChanged();
  Q_EMIT opened(pipeline);
  m_timeline.addTrack(pipeline);
}

void HostCore::failCurrent(const QString &reason) {
  if (m_current->loader) {
    if (auto *const toggle = propertyOfType<SDKToggle>(m_current->loader.data())) toggle->sdkSource().reset();
    if (auto *const files = propertyOfType<FileToggle>(m_current->loader.data())) files->fileSource().reset();
  }
  const QString because = reason.endsWith('.') ? reason.chopped(1) : reason;
  // A reason that speaks of the source by its title is the sentence already.
  const bool named = because.startsWith(m_current->title + QLatin1Char(' '));
  const QString sentence =
      (named ? because : QStringLiteral("%1 cannot be opened: %2").arg(m_current->title, because)) + QLatin1Char('.');
  SKARN_LOG(m_current->cancelled ? LogLevel::Notice : LogLevel::Error, "%s", qPrintable(sentence));
  endCurrent();
  Q_EMIT openFailed(sentence);
}

void HostCore::endCurrent() {
  m_current.reset();
  Q_EMIT openingChanged();
  QMetaObject::invokeMethod(this, &HostCore::startNext, Qt::QueuedConnection);
}

void HostCore::cancelOpening() {
  m_requests.clear();
  if (!m_current) {
    Q_EMIT openingChanged();
    return;
  }
  m_current->cancelled = true;
  m_root->scheduler().interrupt();
}

// ---- closing
// ----------------------------------------------------------------------------------------------------------

QList<QObject *> HostCore::pipelineObjects() const {
  QList<QObject *> objects;
  for (Pipeline *pipeline : m_pipelines) objects.append(pipeline);
  return objects;
}

void HostCore::closePipeline(Pipeline *pipeline) {
  if (!m_pipelines.removeOne(pipeline)) return;
  detach(pipeline);
  // A slot of one of its own objects may have called: the objects die when it has returned.
  QMetaObject::invokeMethod(
      this,
      [this, guard = QPointer<Pipeline>(pipeline)] {
        if (!guard) return;
        const QString title = guard->title();
        destroy(guard);
        Q_EMIT closed(title);
      },
      Qt::QueuedConnection);
}

void HostCore::closeAll() {
  while (!m_pipelines.isEmpty()) closePipeline(m_pipelines.last());
}

void HostCore::detach(Pipeline *pipeline) {
  m_timeline.removeTrack(pipeline);
  Q_EMIT stopping(pipeline);
  pipeline->stop();
  Q_EMIT closing(pipeline);
  Q_EMIT pipelinesChanged();
}

void HostCore::destroy(Pipeline *pipeline) {
  Category::Instance *const instance = pipeline->instance();
  delete pipeline;
  delete instance;
}

}  // namespace tarvo::skarnvisor
