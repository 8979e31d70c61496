#include "default/telemetry/resistance_table.h"

#include "contracts/host/log.h"

#include <QFile>
#include <QList>

#include <cmath>

SKARN_LOG_SOURCE("default/resistance_table");

namespace tarvo::skarnvisor {

namespace {

/// No line of three numbers is longer; a file without line ends must not be read as one.
constexpr qint64 lineBytesAtMost = 4096;
constexpr int quotedBytes = 40;

struct Entry {
  int index = 0;
  float temperature = 0.0F;
  float resistance = 0.0F;
};

bool parseFloat(const QByteArray &text, float &value) {
  bool read = false;
  value = text.trimmed().toFloat(&read);
  return read && std::isfinite(value);
}

bool parseEntry(const QByteArray &line, Entry &entry) {
  const QList<QByteArray> words = line.split(',');
  if (line.size() > lineBytesAtMost || words.size() < 3) return false;
  bool indexRead = false;
  entry.index = words[0].trimmed().toInt(&indexRead);
  return indexRead && parseFloat(words[1], entry.temperature) && parseFloat(words[2], entry.resistance);
}

void skipLine(QFile &file) {
  constexpr qint64 pieceBytes = 1 << 16;
  for (QByteArray piece = file.peek(pieceBytes); !piece.isEmpty(); piece = file.peek(pieceBytes)) {
    const int end = piece.indexOf('\n');
    file.skip(end < 0 ? piece.size() : end + 1);
    if (end >= 0) return;
  }
}

bool refuse(const char *message, const QString &path, int lineNumber, const QByteArray &line) {
  SKARN_LOG(LogLevel::Error, "%s", message);
  SKARN_LOG(LogLevel::Error, "%s, line %d: expected an index up to %d, a temperature and a resistance, found \"%s\"",
            qPrintable(path), lineNumber, ResistanceTable::size, line.trimmed().left(quotedBytes).constData());
  return false;
}

}  // namespace

bool ResistanceTable::load(const QString &path) {
  QFile file(path);
  if (!file.open(QIODevice::ReadOnly)) return false;
  temperatures.fill(0.0F);
  resistances.fill(0.0F);

  skipLine(file);
  for (int number = 2; !file.atEnd(); ++number) {
    const QByteArray line = file.readLine(lineBytesAtMost + 1);
    if (line.trimmed().isEmpty()) continue;
    Entry entry;
    if (!parseEntry(line, entry)) return refuse("Invalid input file!", path, number, line);
    if (entry.index <= 0) continue;
    if (entry.index > size) return refuse("Invalid input file! -- idx error", path, number, line);
    const auto place = static_cast<std::size_t>(entry.index - 1);
    temperatures[place] = entry.temperature;
    resistances[place] = entry.resistance;
  }
  return true;
}

}  // namespace tarvo::skarnvisor
