#include "app/cli/tool_options.h"

#include <CLI/CLI.hpp>
#include <QStringList>
#include <algorithm>
#include <cmath>

#include "app/session/capture_session.h"

namespace tarvo::skarnvisor::app {
namespace {

constexpr const char *option = "--tools";

[[noreturn]] void refuse(const QString &reason) { throw CLI::ValidationError(option, reason.toStdString()); }

QString nameOf(const LidarTool &tool) { return QString::fromLatin1(tool.name); }

const LidarTool *toolOf(const QString &name) {
  const auto &tools = lidarTools();
  const auto found =
      std::find_if(tools.begin(), tools.end(), [&](const LidarTool &tool) { return name == nameOf(tool); });
  return found != tools.end() ? &*found : nullptr;
}

double numberOf(const ToolNumber &number, const QString &text, const QString &whole) {
  bool good = false;
  const double value = text.toDouble(&good);
  if (!good || (number.decimals == 0 && value != std::floor(value)))
    refuse(QStringLiteral("\"%1\" in \"%2\" is no %3number")
               .arg(text, whole, number.decimals == 0 ? QStringLiteral("whole ") : QString()));
  if (!(value >= number.least && value <= number.greatest))  // "nan" neither
    refuse(QStringLiteral("\"%1\" in \"%2\" lies outside %3 to %4")
               .arg(text, whole)
               .arg(number.least)
               .arg(number.greatest));
  return value;
}

/// "NAME", "NAME=off" or "NAME=A:B:...", where a number that is left out stays.
ToolChoice parseChoice(const QString &text) {
  const auto equals = text.indexOf('=');
  ToolChoice choice;
  choice.name = text.left(equals).trimmed();
  choice.tool = toolOf(choice.name);
  if (choice.tool == nullptr) return choice;
  const QString value = equals < 0 ? QStringLiteral("on") : text.mid(equals + 1).trimmed();
  if (value == QLatin1String("on") || value == QLatin1String("off")) {
    if (choice.tool->setter == nullptr)
      refuse(QStringLiteral("\"%1\" has no switch: name its numbers").arg(nameOf(*choice.tool)));
    choice.on = value == QLatin1String("on");
    return choice;
  }
  const QStringList words = value.split(':');
  const auto &numbers = choice.tool->numbers;
  if (words.size() > static_cast<int>(numbers.size()))
    refuse(QStringLiteral("\"%1\" takes %2 numbers, not %3")
               .arg(nameOf(*choice.tool))
               .arg(numbers.size())
               .arg(words.size()));
  for (int i = 0; i < words.size(); ++i) {
    const QString word = words[i].trimmed();
    choice.numbers.push_back(word.isEmpty()
                                 ? std::nullopt
                                 : std::optional(numberOf(numbers[static_cast<std::size_t>(i)], word, text.trimmed())));
  }
  return choice;
}

}  // namespace

void addToolOption(CLI::App &command, std::vector<ToolChoice> &choices) {
  command.add_option_function<std::string>(
      option,
      [&choices](const std::string &text) {
        for (const QString &part : QString::fromLocal8Bit(text.c_str()).split(','))
          choices.push_back(parseChoice(part));
      },
      "Use the lidar's tools: NAME, NAME=off or NAME=A:B:...[,...], such as popout,noise=0.5:0.01:3; a number may be "
      "left out. A capture whose lidar lacks a tool tells which it has");
}

QString applyTools(CaptureSession &session, const std::vector<ToolChoice> &choices) {
  if (choices.empty()) return {};
  LidarTools tools(session.view().buffer());
  const auto offered = tools.offered();
  for (const ToolChoice &choice : choices) {
    if (std::find(offered.begin(), offered.end(), choice.tool) == offered.end()) {
      QStringList names;
      for (const LidarTool *tool : offered) names << nameOf(*tool);
      return QStringLiteral("there is no tool \"%1\"; this source has %2")
          .arg(choice.name, names.isEmpty() ? QStringLiteral("none") : names.join(QStringLiteral(", ")));
    }
    if (!choice.numbers.empty()) {
      QVariantList numbers = tools.numbers(*choice.tool);
      for (std::size_t i = 0; i < choice.numbers.size(); ++i)
        if (choice.numbers[i]) numbers[static_cast<int>(i)] = *choice.numbers[i];
      tools.setNumbers(*choice.tool, numbers);
    }
    tools.switchTo(*choice.tool, choice.on);
  }
  return {};
}

}  // namespace tarvo::skarnvisor::app
