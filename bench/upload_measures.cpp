// What a new frame costs on its way to the graphics card. Needs a display: under Xvfb it measures the software
// renderer.

#include <cstring>
#include <memory>
#include <vector>

#include <QGuiApplication>
#include <QOffscreenSurface>
#include <QOpenGLBuffer>
#include <QOpenGLContext>
#include <QOpenGLFunctions>

#include "app/window/vertex_upload.h"
#include "bench/measure.h"

namespace tarvo::skarnvisor::bench {
namespace {

constexpr int pointCount = 1'000'000;

struct Card {
  int argc = 1;
  char name[6] = "bench";
  char *argv[2] = {name, nullptr};
  QGuiApplication application{argc, argv};
  QOffscreenSurface surface;
  QOpenGLContext context;
  QOpenGLBuffer buffer;
  QByteArray vertices{pointCount * static_cast<int>(app::vertexStride), '\1'};
  std::vector<char> copy = std::vector<char>(static_cast<std::size_t>(vertices.size()));

  Card() {
    surface.create();
    context.create();
    context.makeCurrent(&surface);
    buffer.create();
  }
};

}  // namespace

void addUploadMeasures(std::vector<Measure> &measures) {
  if (qEnvironmentVariableIsEmpty("DISPLAY")) return;
  measures.push_back({"upload_frame", "1,000,000 vertices, 12 MB, against a copy of the bytes", [] {
                        const auto card = std::make_shared<Card>();
                        return Bodies{
                            [card] {
                              app::uploadVertices(card->buffer, card->vertices);
                              card->context.functions()->glFinish();
                            },
                            [card] { std::memcpy(card->copy.data(), card->vertices.constData(), card->copy.size()); }};
                      }});
}

}  // namespace tarvo::skarnvisor::bench
