#pragma once

#include <QString>
#include <functional>
#include <memory>
#include <optional>
#include <string>

namespace CLI {
class App;
class Option;
}  // namespace CLI

namespace tarvo::skarnvisor::app {

/// The program's arguments. Each command adds itself with its options and with what it does; see command_table.h.
class CommandLine {
 public:
  /// Works a command off and returns an empty string, or one sentence saying why it failed.
  using Work = std::function<QString()>;
  /// The same for the window: returns the program's exit code, any failure told.
  using WindowWork = std::function<int()>;

  CommandLine();
  ~CommandLine();

  /// Adds a command that needs no display. Its options belong to it: `work` shares them.
  CLI::App &add(const char *name, const char *help, Work work);
  /// Adds the command that opens the window; no command at all means it.
  CLI::App &addWindow(const char *name, const char *help, WindowWork work);

  /// Reads the arguments. An exit code when the program is over already, with everything printed: help, or a wrong
  /// argument.
  std::optional<int> parse(int argc, const char *const *argv);

  /// The command that was chosen, its exit code; a failure is told on standard error.
  int run() const;
  bool opensWindow() const { return m_opensWindow; }
  bool verbose() const { return m_verbose; }
  /// The plug-in that was named, or the one beside the program; needs an application object.
  QString pluginPath() const;

 private:
  std::unique_ptr<CLI::App> m_app;
  QString m_plugin;
  bool m_verbose = false;
  bool m_opensWindow = true;
  WindowWork m_chosen;
};

/// Tells a failure in the program's way and returns its exit code.
int fail(const QString &reason);

QString fromArgument(const std::string &text);
CLI::Option *addText(CLI::App &command, const char *name, QString &target, const char *help);
/// A check for whole numbers from `least` on.
std::function<std::string(const std::string &)> wholeFrom(int least);
/// A check for numbers within limits, both included. What is no number at all, "nan" too, is outside.
std::function<std::string(const std::string &)> numberFrom(double low, double high);

}  // namespace tarvo::skarnvisor::app
