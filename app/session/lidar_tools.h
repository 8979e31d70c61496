#pragma once

#include <QMap>
#include <QPointer>
#include <QSet>
#include <QString>
#include <QVariant>
#include <functional>
#include <utility>
#include <vector>

namespace tarvo::skarnvisor::app {

/// A number of a tool, as users see it.
struct ToolNumber {
  const char *title;  ///< with its unit; null: the far end of the range that the number before begins
  double least;
  double greatest;
  int decimals;                    ///< 0: a whole number
  const char *property = nullptr;  ///< of the buffer, where each number has one of its own
};

/// Something that a lidar's buffer can be told to do: a switch, numbers, or a switch with numbers. A buffer offers it
/// when its type has the capability and its class the setter, so that a row may stand here before its family has it.
struct LidarTool {
  const char *name;   ///< on the command line
  const char *title;  ///< of its switch in the tool box; without one, the numbers' titles say it
  const char *tip;
  const char *flag;              ///< property of the capability
  const char *setter;            ///< of the switch: an invokable, or a property; null: nothing to switch
  const char *config = nullptr;  ///< takes the numbers, as a list or as one number
  std::vector<ToolNumber> numbers = {};
  const char *part = nullptr;  ///< name of the tool that this one refines
  bool quiet = false;          ///< the setter does not ask for a run of the pipeline
};

/// All of them, in the order of the tool box; a tool that refines another comes behind it.
const std::vector<LidarTool> &lidarTools();

/// The tools of one open source. Reads the state that the buffer tells; keeps what it has set where the buffer tells
/// nothing. GUI thread.
class LidarTools {
 public:
  /// Has a call done on another thread, in the order of the calls, while the buffer lives.
  using Later = std::function<void(std::function<void()> call)>;

  LidarTools() = default;
  /// Observes the buffer, which may be null. With `later` the buffer is set by it, and until `settle` its tools stand
  /// at what they were set to.
  explicit LidarTools(QObject *buffer, Later later = {}) : m_buffer(buffer), m_later(std::move(later)) {}

  [[nodiscard]] std::vector<const LidarTool *> offered() const;
  /// False too for a tool without a switch.
  [[nodiscard]] bool isOn(const LidarTool &tool) const;
  /// One a number of the tool; 0 for what nobody tells.
  [[nodiscard]] QVariantList numbers(const LidarTool &tool) const;
  void switchTo(const LidarTool &tool, bool on);
  /// Takes each into its limits. `values` holds one a number of the tool.
  void setNumbers(const LidarTool &tool, const QVariantList &values);
  /// All calls have been done.
  void settle() { m_waiting.clear(); }

 private:
  [[nodiscard]] bool has(const LidarTool &tool) const;
  /// What the buffer or this object knows of a setter; invalid for nothing.
  [[nodiscard]] QVariant told(const char *setter) const;
  void set(const LidarTool &tool, const char *setter, const QVariant &value);

  QPointer<QObject> m_buffer;
  Later m_later;
  QVariantMap m_kept;
  QSet<QString> m_waiting;  ///< setters on their way to the buffer
};

}  // namespace tarvo::skarnvisor::app
