#include "default/files/output_file.h"

#include <QFileInfo>
#include <taskflow/algorithm/for_each.hpp>
#include <taskflow/taskflow.hpp>

#include "contracts/host/executor.h"

namespace tarvo::skarnvisor {

OutputFile::OutputFile(const QString &path) {
  const QFileInfo there(path);
  if (there.exists() && !there.isFile() && !there.isDir()) {
    m_file = std::make_unique<QFile>(path);
    return;
  }
  auto replacing = std::make_unique<QSaveFile>(path);
  m_replacing = replacing.get();
  m_file = std::move(replacing);
}

bool OutputFile::note(bool good) {
  if (!good && m_error.isEmpty()) m_error = m_file->errorString();
  return good;
}

bool OutputFile::open() { return note(m_file->open(QIODevice::WriteOnly | QIODevice::Unbuffered)); }

bool OutputFile::write(std::string_view bytes) {
  while (m_error.isEmpty() && !bytes.empty()) {
    // A disk that is filling up takes a part first and tells why at the next try.
    const qint64 taken = m_file->write(bytes.data(), static_cast<qint64>(bytes.size()));
    if (note(taken > 0)) bytes.remove_prefix(static_cast<std::size_t>(taken));
  }
  return m_error.isEmpty();
}

bool OutputFile::commit() {
  if (!m_error.isEmpty()) return false;
  if (m_replacing != nullptr) return note(m_replacing->commit());
  m_file->close();
  return note(m_file->error() == QFileDevice::NoError);
}

WriteOutcome OutputFile::finish() {
  if (commit()) return {};
  return {WriteOutcome::End::NotWritten, m_error};
}

void formatPieces(std::vector<TextStream> &texts,
                  const std::function<void(std::size_t piece, TextStream &text)> &format) {
  const auto work = [&](std::size_t piece) {
    texts[piece].clear();
    format(piece, texts[piece]);
  };
  tf::Executor &pool = global_executor();
  if (texts.size() < 2 || pool.num_workers() < 2) {
    for (std::size_t piece = 0; piece < texts.size(); ++piece) work(piece);
    return;
  }
  tf::Taskflow flow;
  flow.for_each_index(std::size_t{0}, texts.size(), std::size_t{1}, work);
  if (pool.this_worker_id() >= 0)
    pool.corun(flow);  // waiting here would take the worker away from its own loop
  else
    pool.run(flow).wait();
}

}  // namespace tarvo::skarnvisor
