#include "app/cli/point_options.h"

#include <CLI/CLI.hpp>
#include <QFile>
#include <QRegularExpression>
#include <charconv>
#include <cmath>
#include <limits>
#include <string>
#include <string_view>

#include "app/cli/filter_slots.h"

namespace tarvo::skarnvisor::app {
namespace {

constexpr int lastChannel = 0x40000;

[[noreturn]] void refuse(const char *option, const QString &reason) {
  throw CLI::ValidationError(option, reason.toStdString());
}

std::optional<double> numberOf(const QString &text) {
  bool good = false;
  const double number = text.trimmed().toDouble(&good);
  return good && std::isfinite(number) ? std::optional(number) : std::nullopt;
}

bool fits(std::size_t slot, double limit) {
  return slot < floatSlotCount || (limit == std::floor(limit) && std::abs(limit) <= std::numeric_limits<int>::max());
}

/// One "name=LOW:HIGH"; a side that is left out keeps the limit that the slot starts with.
SlotRange parseSlot(const QString &text) {
  const char *const option = "--filter";
  const auto equals = text.indexOf('=');
  const auto colon = text.indexOf(':', equals + 1);
  if (equals < 1 || colon < 0) refuse(option, QStringLiteral("a range is NAME=LOW:HIGH, not \"%1\"").arg(text));
  const QString name = text.left(equals).trimmed();
  const auto slot = findFilterSlot(name);
  if (!slot)
    refuse(option, QStringLiteral("there is no filter \"%1\"; known are %2").arg(name, filterSlotNames().join(", ")));
  const auto limit = [&](const QString &side, double otherwise) {
    if (side.trimmed().isEmpty()) return otherwise;
    const auto number = numberOf(side);
    if (!number || !fits(*slot, *number))
      refuse(option, QStringLiteral("\"%1\" in \"%2\" is no %3number")
                         .arg(side.trimmed(), text, *slot < floatSlotCount ? QString() : QStringLiteral("whole ")));
    return *number;
  };
  const FilterSlotRow &row = filterSlots[*slot];
  return {*slot, limit(text.mid(equals + 1, colon - equals - 1), row.low), limit(text.mid(colon + 1), row.high)};
}

std::vector<SlotRange> parseFilter(const QString &text) {
  std::vector<SlotRange> ranges;
  for (const QString &part : text.split(',')) {
    ranges.push_back(parseSlot(part.trimmed()));
    for (std::size_t i = 0; i + 1 < ranges.size(); ++i)
      if (ranges[i].slot == ranges.back().slot)
        refuse("--filter", QStringLiteral("\"%1\" is named twice").arg(filterSlots[ranges[i].slot].name));
  }
  return ranges;
}

/// "1-16,20": numbers and ranges, both ends included.
std::vector<int> parseChannels(const QString &text) {
  static const QRegularExpression form(QStringLiteral("^\\s*(\\d+)\\s*(?:-\\s*(\\d+)\\s*)?$"));
  std::vector<int> channels;
  for (const QString &part : text.split(',')) {
    const auto match = form.match(part);
    const int first = match.captured(1).toInt();
    const int last = match.captured(2).isEmpty() ? first : match.captured(2).toInt();
    if (!match.hasMatch() || first < 1 || last < first || last > lastChannel)
      refuse("--hide-channels",
             QStringLiteral("channels are numbers from 1 and ranges such as 1-16, not \"%1\"").arg(part));
    for (int channel = first; channel <= last; ++channel) channels.push_back(channel);
  }
  return channels;
}

/// Sixteen numbers, row by row, between white space or commas.
QMatrix4x4 readMatrix(const QString &path) {
  const char *const option = "--select";
  constexpr int numbers = 16;
  constexpr qint64 longestFile = 64 * 1024;
  QFile file(path);
  if (!file.open(QIODevice::ReadOnly))
    refuse(option, QStringLiteral("%1 cannot be read: %2").arg(path, file.errorString()));
  static const QRegularExpression between(QStringLiteral("[\\s,;]+"));
  const QStringList words = QString::fromUtf8(file.read(longestFile)).split(between, Qt::SkipEmptyParts);
  if (words.size() != numbers)
    refuse(option,
           QStringLiteral("%1 must hold 16 numbers, four rows of four; it holds %2").arg(path).arg(words.size()));
  float values[numbers];
  for (int i = 0; i < numbers; ++i) {
    const auto number = numberOf(words[i]);
    if (!number) refuse(option, QStringLiteral("\"%1\" in %2 is no number").arg(words[i], path));
    values[i] = static_cast<float>(*number);
  }
  return QMatrix4x4(values);
}

template <typename Take>
CLI::Option *addText(CLI::App &command, const char *name, Take take, const char *help) {
  return command.add_option_function<std::string>(
      name, [take](const std::string &text) { take(QString::fromLocal8Bit(text.c_str())); }, help);
}

}  // namespace

void addPointOptions(CLI::App &command, PointOptions &options) {
  CLI::Option *const filter = addText(
      command, "--filter", [&options](const QString &text) { options.filter = parseFilter(text); },
      "Show only points within ranges NAME=LOW:HIGH[,...], such as distance=0:50,z=-2:5; an end may be left out, and a "
      "low end above the high one wraps around");
  command
      .add_option_function<std::string>(
          "--filter-mode", [&options](const std::string &mode) { options.anySlotMayMatch = mode == "any"; },
          "Whether a point must lie within all ranges or any of them (all)")
      ->check(CLI::IsMember({"all", "any"}))
      ->needs(filter);
  command.add_flag("--highlight", options.highlight, "Mark what the filter takes out instead of hiding it")
      ->needs(filter);
  command.add_option("--echo", options.echo, "Show one echo of each shot, in the order of the return mode (0: any)")
      ->check(CLI::Range(0, 255));
  addText(
      command, "--hide-channels", [&options](const QString &text) { options.hiddenChannels = parseChannels(text); },
      "Leave channels out: numbers from 1 and ranges, such as 1-16,20");
  addText(
      command, "--select", [&options](const QString &path) { options.selection = readMatrix(path); },
      "Mark the points inside a selection: a file of 16 numbers, the rows of a projection matrix one after the other. "
      "(x, y, z, 1) in metres goes to (X, Y, Z, W); a point is inside where |W| is above |X|, |Y| and |Z|");
  addToolOption(command, options.tools);
}

}  // namespace tarvo::skarnvisor::app
