#include <CLI/CLI.hpp>
#include <QVariant>
#include <algorithm>
#include <cstdio>
#include <exception>
#include <memory>

#include "app/cli/report.h"
#include "app/cli/source_command.h"
#include "contracts/host/registration.h"

namespace tarvo::skarnvisor::app {
namespace {

/// The plug-in's table, one map a type; empty when the plug-in keeps none.
QVariantList typeTable() {
  QVariantList rows;
  const std::unique_ptr<QObject> loader(
      Registration::create(QStringLiteral("tarvo::skarnvisor::DefaultSDKLoader"), nullptr));
  QMetaObject::invokeMethod(loader.get(), "lidarTypes", Qt::DirectConnection, Q_RETURN_ARG(QVariantList, rows));
  return rows;
}

void printTable(const QVariantList &rows) {
  const auto print = [](const QString &type, const QString &family, const QString &label) {
    std::printf(
        "%s\n",
        QStringLiteral("%1 %2 %3").arg(type, -20).arg(family, -6).arg(label).trimmed().toLocal8Bit().constData());
  };
  print(QStringLiteral("TYPE"), QStringLiteral("FAMILY"), QStringLiteral("LABEL"));
  for (const QVariant &row : rows) {
    const QVariantMap type = row.toMap();
    print(type[QStringLiteral("type")].toString(), type[QStringLiteral("family")].toString(),
          type[QStringLiteral("label")].toString());
  }
}

void printRow(const QVariantMap &type) {
  Report report;
  for (const char *field : {"type", "family", "label"}) report.add(field, type[QLatin1String(field)].toString());
  for (const char *field : {"capabilities", "switched off", "filters", "columns", "color modes", "starts with"})
    report.add(field, type[QLatin1String(field)].toStringList().join(QStringLiteral(", ")));
  for (const QString &file : type[QStringLiteral("default files")].toStringList()) report.add("default file", file);
  report.print();
}

QString run(const QString &lidarType) {
  QVariantList rows;
  try {
    rows = typeTable();
  } catch (const std::exception &fault) {
    return QString::fromLocal8Bit(fault.what());
  }
  if (rows.isEmpty()) return QStringLiteral("the plug-in has no table of lidar types");
  if (lidarType.isEmpty()) {
    printTable(rows);
    return {};
  }
  const auto found = std::find_if(rows.begin(), rows.end(), [&](const QVariant &row) {
    return row.toMap().value(QStringLiteral("type")).toString() == lidarType;
  });
  if (found == rows.end())
    return QStringLiteral("no lidar type is called \"%1\"; \"types\" lists those that are").arg(lidarType);
  printRow(found->toMap());
  return {};
}

}  // namespace

void addTypesCommand(CommandLine &line) {
  const auto lidarType = std::make_shared<QString>();  // empty: the whole table
  CLI::App &command = line.add("types", "List the lidar types, or what one of them offers", [&line, lidarType] {
    return onSource(line, {}, Opening::Plugin, [&lidarType](CaptureSession &) { return run(*lidarType); });
  });
  addText(command, "type", *lidarType, "Lidar type, exactly as a capture names it");
}

}  // namespace tarvo::skarnvisor::app
