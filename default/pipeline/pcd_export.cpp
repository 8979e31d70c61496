#include "default/pipeline/pcd_export.h"

#include <algorithm>
#include <atomic>
#include <mutex>
#include <span>
#include <string>
#include <vector>

namespace tarvo::skarnvisor {

namespace {

constexpr std::size_t pointsPerPiece = 8192;

/// The points that may be written, in order: those of the picture, or of one canvas behind the other. Valid while the
/// picture's lock is held.
class PointSlots {
 public:
  PointSlots(const FramePicture &picture, const CanvasRing &ring) {
    if (ring.active()) {
      for (int canvas = 0; canvas < CanvasRing::size; ++canvas)
        add(picture.canvases[static_cast<std::size_t>(canvas)].data(),
            picture.frameStore.from(ring.canvasStart(canvas)), picture.validCountLocked(ring, canvas));
    } else if (picture.storeMatchesVertices) {
      add(picture.vertices.data(), picture.frameStore.from(0), picture.storedCountLocked());
    }
  }

  std::size_t count() const { return m_count; }

  /// Calls `visit(slot, vertex, point)` for slots [begin, end).
  template <typename Visit>
  void visit(std::size_t begin, std::size_t end, const Visit &visit) const {
    for (const Run &run : m_runs) {
      const std::size_t last = std::min(end, run.begin + run.count);
      for (std::size_t slot = std::max(begin, run.begin); slot < last; ++slot)
        visit(slot, run.vertices[slot - run.begin], run.points[slot - run.begin]);
    }
  }

 private:
  struct Run {
    std::size_t begin;
    std::size_t count;
    const Vertex *vertices;
    const FramePicture::Point *points;
  };

  void add(const Vertex *vertices, std::span<const FramePicture::Point> points, std::size_t count) {
    count = std::min(count, points.size());
    if (count == 0) return;
    m_runs.push_back({m_count, count, vertices, points.data()});
    m_count += count;
  }

  std::vector<Run> m_runs;
  std::size_t m_count = 0;
};

class PcdWriter {
 public:
  PcdWriter(const FramePicture &picture, const CanvasRing &ring, const PcdContent &content, WriteProgress &progress)
      : m_picture(picture), m_ring(ring), m_content(content), m_progress(progress) {
    for (const PcdFieldRecord &field : content.fields)
      if (field.enabled) m_fields.push_back(&field);
  }

  WriteOutcome write(OutputFile &file, const PictureHold &hold);

 private:
  bool taken(const Vertex &vertex, const FramePicture::Point &point) const {
    return !m_content.marks.hidden(vertex.color) && (!m_content.selectedOnly || point.selected != 0);
  }
  void count(const PointSlots &slots);
  std::string header() const;
  void appendPoint(const FramePicture::Point &point, TextStream &text) const;
  std::int64_t format(const PointSlots &slots, std::size_t begin, std::size_t end);

  const FramePicture &m_picture;
  const CanvasRing &m_ring;
  const PcdContent &m_content;
  WriteProgress &m_progress;
  std::vector<const PcdFieldRecord *> m_fields;
  std::vector<TextStream> m_texts;
  std::int64_t m_taken = 0;
  std::size_t m_firstTaken = 0;
  TextStream::Floats m_floatsBehindFirst = TextStream::Floats::General;
};

void PcdWriter::count(const PointSlots &slots) {
  TextStream firstLine;
  slots.visit(0, slots.count(), [&](std::size_t slot, const Vertex &vertex, const FramePicture::Point &point) {
    if (!taken(vertex, point) || m_taken++ != 0) return;
    m_firstTaken = slot;
    appendPoint(point, firstLine);
  });
  m_floatsBehindFirst = firstLine.floats();
  m_progress.total = m_taken;
}

std::string PcdWriter::header() const {
  const auto line = [this](const char *name, const auto &entry) {
    std::string text = name;
    for (const PcdFieldRecord *const field : m_fields) text += ' ' + entry(*field);
    return text + '\n';
  };
  const std::string points = std::to_string(m_taken);
  return "# .PCD v.7 - Point Cloud Data file format\nVERSION .7\n" +
         line("FIELDS", [](const PcdFieldRecord &field) { return field.name.toStdString(); }) +
         line("SIZE", [](const PcdFieldRecord &field) { return std::to_string(field.size); }) +
         line("TYPE", [](const PcdFieldRecord &field) { return field.type.toStdString(); }) +
         line("COUNT", [](const PcdFieldRecord &field) { return std::to_string(field.count); }) +  //
         "WIDTH " + points + "\nHEIGHT 1\nVIEWPOINT 0 0 0 1 0 0 0\nPOINTS " + points + "\nDATA ascii\n";
}

void PcdWriter::appendPoint(const FramePicture::Point &point, TextStream &text) const {
  bool behindAnother = false;
  for (const PcdFieldRecord *const field : m_fields) {
    if (behindAnother) text.append(' ');
    field->write(point, text);
    behindAnother = true;
  }
  text.append('\n');
}

/// Turns slots [begin, end) to text in m_texts, in pieces at the same time. The number of lines.
std::int64_t PcdWriter::format(const PointSlots &slots, std::size_t begin, std::size_t end) {
  std::atomic<std::int64_t> lines{0};
  m_texts.resize((end - begin + pointsPerPiece - 1) / pointsPerPiece);
  formatPieces(m_texts, [&](std::size_t piece, TextStream &text) {
    const std::size_t first = begin + piece * pointsPerPiece;
    std::int64_t own = 0;
    // A stream that had written everything in front would stand like this.
    text.setFloats(first > m_firstTaken ? m_floatsBehindFirst : TextStream::Floats::General);
    slots.visit(first, std::min(end, first + pointsPerPiece),
                [&](std::size_t, const Vertex &vertex, const FramePicture::Point &point) {
                  if (!taken(vertex, point)) return;
                  appendPoint(point, text);
                  ++own;
                });
    lines += own;
  });
  return lines;
}

WriteOutcome PcdWriter::write(OutputFile &file, const PictureHold &hold) {
  WriteOutcome changed{WriteOutcome::End::NotWritten, QStringLiteral("the picture changed meanwhile")};
  std::unique_lock lock(m_picture.frameMutex);
  PointSlots slots(m_picture, m_ring);
  const std::size_t total = slots.count();
  count(slots);
  file.write(header());
  std::int64_t lines = 0;
  for (std::size_t begin = 0; begin < total; begin += hold.points) {
    if (m_progress.cancelled) return {WriteOutcome::End::Cancelled, {}};
    if (!lock.owns_lock()) {
      lock.lock();
      slots = PointSlots(m_picture, m_ring);
      if (slots.count() != total) return changed;
    }
    lines += format(slots, begin, std::min(total, begin + hold.points));
    if (!hold.throughout) lock.unlock();
    for (const TextStream &text : m_texts)
      if (!file.write(text.view())) return {WriteOutcome::End::NotWritten, file.error()};
    m_progress.done = lines;
  }
  return lines == m_taken ? file.finish() : changed;
}

}  // namespace

WriteOutcome writePcd(const FramePicture &picture, const CanvasRing &ring, const PcdContent &content,
                      const QString &path, const PictureHold &hold, WriteProgress &progress) {
  OutputFile file(path);
  if (!file.open()) return {WriteOutcome::End::NotOpened, file.error()};
  return PcdWriter(picture, ring, content, progress).write(file, hold);
}

}  // namespace tarvo::skarnvisor
