#include "app/cli/command_line.h"

#include <CLI/CLI.hpp>
#include <charconv>
#include <cstdio>
#include <utility>
#include <vector>

#include "app/session/capture_session.h"

namespace tarvo::skarnvisor::app {

CommandLine::CommandLine()
    : m_app(std::make_unique<CLI::App>("Skarnvisor shows lidar captures as point clouds.", "skarnvisor")) {
  m_app->require_subcommand(0, 1);
  m_app->fallthrough();
  addText(*m_app, "--plugin", m_plugin, "Plug-in library (the one beside the program)");
  m_app->set_version_flag("--version", "skarnvisor " SKARNVISOR_VERSION, "Print the version and end");
  m_app->add_flag("-v,--verbose", m_verbose, "Print the log to standard error");
}

CommandLine::~CommandLine() = default;

CLI::App &CommandLine::add(const char *name, const char *help, Work work) {
  CLI::App &command = *m_app->add_subcommand(name, help);
  command.callback([this, work = std::move(work)] {
    m_opensWindow = false;
    m_chosen = [work] {
      const QString fault = work();
      return fault.isEmpty() ? 0 : fail(fault);
    };
  });
  return command;
}

CLI::App &CommandLine::addWindow(const char *name, const char *help, WindowWork work) {
  m_chosen = std::move(work);
  return *m_app->add_subcommand(name, help);
}

std::optional<int> CommandLine::parse(int argc, const char *const *argv) {
  try {
    m_app->parse(argc, argv);
  } catch (const CLI::ExtrasError &error) {
    const std::vector<std::string> strangers = m_app->remaining();
    if (!m_app->get_subcommands().empty() || strangers.size() != 1 || strangers[0].front() == '-')
      return m_app->exit(error);
    return fail(QStringLiteral("\"%1\" is no command: --help lists them, and \"view FILE\" opens a file")
                    .arg(fromArgument(strangers[0])));
  } catch (const CLI::ParseError &error) {
    return m_app->exit(error);
  }
  return std::nullopt;
}

int CommandLine::run() const { return m_chosen(); }

QString CommandLine::pluginPath() const { return m_plugin.isEmpty() ? CaptureSession::defaultPluginPath() : m_plugin; }

int fail(const QString &reason) {
  std::fprintf(stderr, "skarnvisor: %s\n", reason.toLocal8Bit().constData());
  return 1;
}

QString fromArgument(const std::string &text) { return QString::fromLocal8Bit(text.c_str()); }

CLI::Option *addText(CLI::App &command, const char *name, QString &target, const char *help) {
  return command.add_option_function<std::string>(
      name, [&target](const std::string &text) { target = fromArgument(text); }, help);
}

std::function<std::string(const std::string &)> wholeFrom(int least) {
  return [least](const std::string &text) {
    int number = 0;
    const char *const end = text.data() + text.size();
    const auto [last, fault] = std::from_chars(text.data(), end, number);
    if (fault == std::errc() && last == end && number >= least) return std::string();
    return "a whole number from " + std::to_string(least) + " on was expected, not \"" + text + "\"";
  };
}

std::function<std::string(const std::string &)> numberFrom(double low, double high) {
  return [low, high](const std::string &text) {
    double number = 0;
    const char *const end = text.data() + text.size();
    const bool whole = std::from_chars(text.data(), end, number).ptr == end;
    if (whole && number >= low && number <= high) return std::string();
    return QStringLiteral("a number from %1 to %2 was expected, not \"%3\"")
        .arg(low)
        .arg(high)
        .arg(fromArgument(text))
        .toStdString();
  };
}

}  // namespace tarvo::skarnvisor::app
