#pragma once

#include <QFile>
#include <QSaveFile>
#include <QString>
#include <atomic>
#include <cstdint>
#include <functional>
#include <memory>
#include <string_view>
#include <vector>

#include "default/files/text_stream.h"

namespace tarvo::skarnvisor {

/// How far the writing of a file has come, in points or rows, and the wish to stop it. Any thread.
struct WriteProgress {
  std::atomic<std::int64_t> done{0};
  std::atomic<std::int64_t> total{0};
  std::atomic<bool> cancelled{false};
};

/// How the writing of a file ended.
struct WriteOutcome {
  enum class End { Written, NotOpened, NotWritten, Cancelled };

  End end = End::Written;
  QString reason;  ///< why it was not opened or written, in one sentence or less

  [[nodiscard]] bool written() const { return end == End::Written; }
};

/// A file written from front to back. It goes to a passing name beside its place and takes that place at `commit`
/// only: a full disk, a crash or a cancellation leaves what was there. What is no regular file (a device, a pipe) is
/// written straight. One thread.
class OutputFile {
 public:
  explicit OutputFile(const QString &path);

  /// False when the file can't be made; `error` says why.
  bool open();
  /// False from the first failure on.
  bool write(std::string_view bytes);
  bool commit();
  /// Why the first failure came, in the system's words.
  [[nodiscard]] const QString &error() const { return m_error; }
  /// `commit` as the outcome of the whole.
  [[nodiscard]] WriteOutcome finish();

 private:
  bool note(bool good);

  std::unique_ptr<QFileDevice> m_file;
  QSaveFile *m_replacing = nullptr;  ///< m_file, unless it is written straight
  QString m_error;
};

/// Has `format(piece, text)` called for each piece below `texts.size()`, at the same time on the host's pool, each
/// with the text of its number, emptied before. `format` must not throw.
void formatPieces(std::vector<TextStream> &texts,
                  const std::function<void(std::size_t piece, TextStream &text)> &format);

}  // namespace tarvo::skarnvisor
