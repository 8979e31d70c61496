// The program as it is started from a shell, on the display of these tests: keys and the window manager's wish to close
// come from outside.
#include <gtest/gtest.h>
#include <xcb/xcb.h>

#include <QImage>
#include <QThread>
#include <cstring>
#include <memory>

#include "tests/app/program_fixture.h"

namespace tarvo::skarnvisor::test {
namespace {

/// The program's window as another client of the X server sees it.
class ForeignWindow {
 public:
  explicit ForeignWindow(qint64 process) : m_connection(xcb_connect(nullptr, nullptr)) {
    const xcb_atom_t owner = atom("_NET_WM_PID");
    for (int tries = 0; tries < 600 && m_window == 0; ++tries) {
      m_window = find(xcb_setup_roots_iterator(xcb_get_setup(m_connection)).data->root, owner, process);
      if (m_window == 0) QThread::msleep(50);
    }
  }
  ~ForeignWindow() { xcb_disconnect(m_connection); }
  ForeignWindow(const ForeignWindow &) = delete;
  ForeignWindow &operator=(const ForeignWindow &) = delete;

  bool isThere() const { return m_window != 0; }

  void press(xcb_keycode_t key) const {
    xcb_set_input_focus(m_connection, XCB_INPUT_FOCUS_PARENT, m_window, XCB_CURRENT_TIME);
    for (const std::uint8_t type : {XCB_KEY_PRESS, XCB_KEY_RELEASE}) {
      xcb_key_press_event_t event{};
      event.response_type = type;
      event.detail = key;
      event.event = m_window;
      event.same_screen = 1;
      send(event);
    }
  }

  void askToClose() const {
    xcb_client_message_event_t event{};
    event.response_type = XCB_CLIENT_MESSAGE;
    event.format = 32;
    event.window = m_window;
    event.type = atom("WM_PROTOCOLS");
    event.data.data32[0] = atom("WM_DELETE_WINDOW");
    send(event);
  }

 private:
  template <typename Reply>
  static std::unique_ptr<Reply, decltype(&std::free)> held(Reply *reply) {
    return {reply, &std::free};
  }

  template <typename Event>
  void send(const Event &event) const {
    static_assert(sizeof event <= 32);
    char bytes[32]{};
    std::memcpy(bytes, &event, sizeof event);
    xcb_send_event(m_connection, 0, m_window, XCB_EVENT_MASK_NO_EVENT, bytes);
    xcb_flush(m_connection);
  }

  xcb_atom_t atom(const char *name) const {
    const auto cookie = xcb_intern_atom(m_connection, 0, static_cast<std::uint16_t>(std::strlen(name)), name);
    return held(xcb_intern_atom_reply(m_connection, cookie, nullptr))->atom;
  }

  /// The mapped window of that process that lies highest in the tree; 0 if there is none yet.
  xcb_window_t find(xcb_window_t from, xcb_atom_t owner, qint64 process) const {
    const auto tree = held(xcb_query_tree_reply(m_connection, xcb_query_tree(m_connection, from), nullptr));
    if (!tree) return 0;
    for (int child = 0; child < xcb_query_tree_children_length(tree.get()); ++child) {
      const xcb_window_t window = xcb_query_tree_children(tree.get())[child];
      const auto cookie = xcb_get_property(m_connection, 0, window, owner, XCB_ATOM_CARDINAL, 0, 1);
      const auto property = held(xcb_get_property_reply(m_connection, cookie, nullptr));
      const auto shown =
          held(xcb_get_window_attributes_reply(m_connection, xcb_get_window_attributes(m_connection, window), nullptr));
      if (property && property->value_len == 1 && shown && shown->map_state == XCB_MAP_STATE_VIEWABLE &&
          *static_cast<std::uint32_t *>(xcb_get_property_value(property.get())) == process)
        return window;
    }
    return 0;
  }

  xcb_connection_t *m_connection;
  xcb_window_t m_window = 0;
};

class WindowProgram : public testing::Test {
 protected:
  void SetUp() override {
    makeCapture("shell.pcap", {"--channels", "32", "--columns", "900", "--frames", "100"});
    m_environment = {{"DISPLAY", qEnvironmentVariable("DISPLAY")}};
  }

  QList<QPair<QString, QString>> m_environment;
};

/// Pixels of the canvas, which lies between the tool bar and the time line, that are strongly coloured.
int colouredPixels(const QImage &window) {
  int count = 0;
  for (int y = 60; y < window.height() - 90; ++y) {
    for (int x = 0; x < window.width() - 120; ++x) {
      const QColor color(window.pixel(x, y));
      count += color.saturation() > 80 && color.value() > 80 ? 1 : 0;
    }
  }
  return count;
}

TEST_F(WindowProgram, ShowsWhatItsArgumentNamesOrSaysWhyNot) {
  const ProgramResult shown =
      runProgram(SKARNVISOR_PROGRAM, {"view", "shell.pcap", "--shot", "shell.png"}, m_environment);
  EXPECT_EQ(shown.exitCode, 0);
  EXPECT_EQ(shown.err.toStdString(), "");
  EXPECT_GT(colouredPixels(QImage("shell.png")), 2000);

  writeFile("broken.pcap", "nothing of a capture");
  for (const auto &[arguments, told] : std::initializer_list<std::pair<QStringList, QString>>{
           {{"view", "missing.pcap"}, "no such file"},
           {{"view", "broken.pcap"}, "neither pcap nor pcapng"},
           {{"--plugin", "nowhere/libplugin.so", "view", "shell.pcap"}, "plug-in nowhere/libplugin.so is missing"}}) {
    const ProgramResult refused =
        runProgram(SKARNVISOR_PROGRAM, arguments + QStringList{"--shot", "never.png"}, m_environment);
    EXPECT_EQ(refused.exitCode, 1);
    EXPECT_TRUE(refused.err.contains("skarnvisor: ") && refused.err.contains(told)) << refused.err.toStdString();
    EXPECT_FALSE(QFile::exists("never.png"));
  }
}

TEST_F(WindowProgram, ClosesWhilePlayingWithoutAWord) {
  constexpr xcb_keycode_t spaceBar = 65;
  constexpr int deadlineMs = 60000;
  for (const bool playing : {true, false}) {
    QProcess program;
    program.setProcessChannelMode(QProcess::MergedChannels);
    program.start(SKARNVISOR_PROGRAM, {"view", "shell.pcap"});
    ASSERT_TRUE(program.waitForStarted());
    const ForeignWindow window(program.processId());
    ASSERT_TRUE(window.isThere());
    // Without a wait the wish comes while the capture is being opened.
    if (playing) {
      QThread::msleep(1500);
      window.press(spaceBar);
      QThread::msleep(700);
    }
    window.askToClose();
    EXPECT_TRUE(program.waitForFinished(deadlineMs));
    EXPECT_EQ(program.exitStatus(), QProcess::NormalExit);
    EXPECT_EQ(program.exitCode(), 0);
    EXPECT_EQ(program.readAll().toStdString(), "");
    program.kill();
  }
}

}  // namespace
}  // namespace tarvo::skarnvisor::test
