#include "default/telemetry/resistance_table.h"

#include "contracts/host/log.h"

#include <QFile>
#include <QStringList>
#include <QTextStream>

SKARN_LOG_SOURCE("default/resistance_table");

namespace tarvo::skarnvisor {

bool ResistanceTable::load(const QString &path) {
  QFile file(path);
  if (!file.open(QIODevice::ReadOnly | QIODevice::Text)) return false;
  temperatures.fill(0.0F);
  resistances.fill(0.0F);

  QTextStream lines(&file);
  lines.readLine();
  while (!lines.atEnd()) {
    const QString line = lines.readLine();
    if (line.trimmed().isEmpty()) continue;
    const QStringList words = line.split(QLatin1Char(','));
    bool indexRead = false;
    bool temperatureRead = false;
    bool resistanceRead = false;
    const int index = words.value(0).trimmed().toInt(&indexRead);
    const float temperature = words.value(1).trimmed().toFloat(&temperatureRead);
    const float resistance = words.value(2).trimmed().toFloat(&resistanceRead);
    if (!indexRead || !temperatureRead || !resistanceRead) {
      SKARN_LOG(LogLevel::Error, "Invalid input file!");
      return false;
    }
    if (index <= 0) continue;
    if (index > size) {
      SKARN_LOG(LogLevel::Error, "Invalid input file! -- idx error");
      return false;
    }
    temperatures[static_cast<std::size_t>(index - 1)] = temperature;
    resistances[static_cast<std::size_t>(index - 1)] = resistance;
  }
  return true;
}

}  // namespace tarvo::skarnvisor
