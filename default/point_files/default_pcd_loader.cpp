#include "default/point_files/default_pcd_loader.h"

#include <QPointer>
#include <memory>
#include <stdexcept>

#include "contracts/host/category.h"
#include "contracts/host/threads.h"
#include "default/point_files/default_pcd_file_loader.h"
#include "default/point_files/default_pcd_parser.h"
#include "default/point_files/default_pcd_producer.h"

namespace tarvo::skarnvisor {

namespace {

template <typename T>
T *require(QObject *object, const QString &name) {
  if (T *found = qobject_cast<T *>(object)) return found;
  throw std::runtime_error("the new pipeline has no " + name.toStdString());
}

// Every change of render state redraws the current frame. The signal may come from the functor thread.
void connectRerun(Functor *context, DefaultPcdFrameRenderBuffer *renderBuffer, Functor *first, Functor *second) {
  QObject::connect(renderBuffer, &DefaultPcdFrameRenderBuffer::renderStateChanged, context,
                   [producer = QPointer<Functor>(first), parser = QPointer<Functor>(second)] {
                     if (producer) producer->run();
                     if (parser) parser->run();
                   });
}

}  // namespace

DefaultPcdLoader::DefaultPcdLoader(QObject *parent) : Functor(parent), m_inputFileToggle(new InputFileToggle(this)) {
  m_inputFileToggle->setExts({QStringLiteral("pcap")});
}

DefaultPcdLoader::DefaultPcdLoader() : DefaultPcdLoader(nullptr) {}

DefaultPcdLoader::~DefaultPcdLoader() = default;

void DefaultPcdLoader::operator()() {
  if (!m_inputFileToggle->fileSource()) return;
  auto *const category = require<Category::Instance>(parent(), QStringLiteral("category"));
  Category::Instance *made = nullptr;
  runInThreadOf(this, [&] {
    const QString suffix = QString::number(m_pipelinesMade++);
    std::unique_ptr<Category::Instance> fresh(category->addSubCategory(QStringLiteral("DefaultPcdCategory"), suffix));
    wire(*fresh, suffix);
    made = fresh.release();  // now the category's alone
  });
  if (made) Q_EMIT category->changed();
}

void DefaultPcdLoader::wire(Category::Instance &made, const QString &suffix) {
  const QString space = QStringLiteral("tarvo::skarnvisor::");
  const QString producerKey = space + QStringLiteral("DefaultPcdProducer") + suffix;
  const QString parserKey = space + QStringLiteral("DefaultPcdParser") + suffix;
  const QString fileLoaderKey = space + QStringLiteral("DefaultPcdFileLoader") + suffix;
  const QString trackKey = producerKey + QStringLiteral(".defaultPcdTrackBuffer");
  auto *const producer = require<DefaultPcdProducer>(made.functor(producerKey).data(), producerKey);
  auto *const parser = require<DefaultPcdParser>(made.functor(parserKey).data(), parserKey);
  auto *const fileLoader = require<DefaultPcdFileLoader>(made.functor(fileLoaderKey).data(), fileLoaderKey);
  auto *const track = require<DefaultPcdTrackBuffer>(made.buffer(trackKey), trackKey);
  DefaultPcdFrameRenderBuffer *const renderBuffer = parser->defaultPcdFrameBuffer();

  producer->addSuccessor(parser);
  connectRerun(this, renderBuffer, producer, parser);
  QSharedPointer<FileSource> &source = m_inputFileToggle->fileSource();
  renderBuffer->setPlayState(source->playState);
  fileLoader->setRenderBuffer(renderBuffer);
  fileLoader->takeOver(source);
  track->addClip(fileLoader->defaultPcdBuffer());
  track->setTrackBody(QStringLiteral("DefaultFileByFrameTrackBody.qml"));
  connect(track, &TrackBuffer::controlSelectedNotify, renderBuffer, &RenderBuffer::setControlSelected);
  parser->setTrack(track);
}

}  // namespace tarvo::skarnvisor
