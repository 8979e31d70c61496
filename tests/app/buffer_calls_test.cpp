#include "app/window/buffer_calls.h"

#include <gtest/gtest.h>

#include <QCoreApplication>
#include <QStringList>
#include <QUrl>
#include <future>

namespace tarvo::skarnvisor::app {
namespace {

/// Keeps what was done to it, in order.
class FakeBuffer : public QObject {
  Q_OBJECT
  Q_PROPERTY(float low MEMBER m_low WRITE setLow)
  Q_PROPERTY(float high MEMBER m_high WRITE setHigh)

 public:
  void setLow(float low) { done << QString("low %1").arg(static_cast<double>(low)); }
  void setHigh(float high) { done << QString("high %1").arg(static_cast<double>(high)); }
  Q_INVOKABLE void undo() { done << "undo"; }
  Q_INVOKABLE void undo(int steps) { done << QString("undo %1").arg(steps); }
  Q_INVOKABLE void write(bool on, int kind, QUrl to) { done << QString("%1 %2 %3").arg(on).arg(kind).arg(to.path()); }

  QStringList done;

 private:
  float m_low = 0;
  float m_high = 0;
};

class BufferCallsTest : public testing::Test {
 protected:
  void SetUp() override { calls.takeUp(); }

  void hold() {
    calls.run([held = free.get_future().share()] { held.wait(); });
  }
  void finish() {
    free.set_value();
    background.finish();
    QCoreApplication::processEvents();
  }

  FakeBuffer buffer;
  std::promise<void> free;
  BackgroundCalls background;
  BufferCalls calls{background, nullptr};
};

TEST_F(BufferCallsTest, DoWhatIsAskedInItsOrderAndOfWaitingValuesTheNewest) {
  hold();
  EXPECT_TRUE(calls.isRunning());
  calls.set(&buffer, "low", 1.5);
  calls.set(&buffer, "high", 3);
  calls.set(&buffer, "low", 2.5);
  calls.call(&buffer, "undo");
  calls.set(&buffer, "low", 4);
  calls.set(&buffer, "low", 5);
  calls.call(&buffer, "undo", {2.0});
  calls.call(&buffer, "write", {true, 1, "file:///folder"});
  EXPECT_TRUE(buffer.done.isEmpty());
  finish();
  EXPECT_EQ(buffer.done.join(", ").toStdString(), "low 1.5, high 3, low 2.5, undo, low 5, undo 2, 1 1 /folder");
  EXPECT_FALSE(calls.isRunning());
  calls.set(&buffer, "low", 6);
  background.finish();
  EXPECT_EQ(buffer.done.last(), "low 6");
}

TEST_F(BufferCallsTest, OfASourceThatClosesNothingIsBegunAnyMore) {
  hold();
  calls.set(&buffer, "low", 1);
  calls.call(&buffer, "undo");
  calls.drop();
  calls.set(&buffer, "low", 2);
  calls.takeUp();
  calls.set(&buffer, "low", 3);
  finish();
  EXPECT_EQ(buffer.done, QStringList("low 3"));
  EXPECT_FALSE(calls.isRunning());
}

}  // namespace
}  // namespace tarvo::skarnvisor::app

#include "buffer_calls_test.moc"
