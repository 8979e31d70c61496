#include "app/cli/types_command.h"

#include <CLI/CLI.hpp>
#include <QVariant>
#include <algorithm>
#include <cstdio>
#include <exception>
#include <memory>

#include "app/cli/options.h"
#include "app/cli/report.h"
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

}  // namespace

void addTypesCommand(CLI::App &program, Options &options) {
  CLI::App *types = program.add_subcommand("types", "List the lidar types, or what one of them offers");
  types->add_option_function<std::string>(
      "type", [&options](const std::string &name) { options.lidarType = QString::fromLocal8Bit(name.c_str()); },
      "Lidar type, exactly as a capture names it");
  types->callback([&options] { options.command = Command::Types; });
}

QString runTypes(const Options &options) {
  QVariantList rows;
  try {
    rows = typeTable();
  } catch (const std::exception &fault) {
    return QString::fromLocal8Bit(fault.what());
  }
  if (rows.isEmpty()) return QStringLiteral("the plug-in has no table of lidar types");
  if (options.lidarType.isEmpty()) {
    printTable(rows);
    return {};
  }
  const auto found = std::find_if(rows.begin(), rows.end(), [&](const QVariant &row) {
    return row.toMap().value(QStringLiteral("type")).toString() == options.lidarType;
  });
  if (found == rows.end())
    return QStringLiteral("no lidar type is called \"%1\"; \"types\" lists those that are").arg(options.lidarType);
  printRow(found->toMap());
  return {};
}

}  // namespace tarvo::skarnvisor::app
