#include "host/core/functor_scheduler.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QThread>
#include <algorithm>
#include <atomic>
#include <functional>
#include <future>
#include <mutex>
#include <stdexcept>
#include <string>
#include <thread>
#include <utility>
#include <vector>

#include "contracts/host/functor.h"
#include "contracts/host/threads.h"
#include "tests/support/log_lines.h"

namespace tarvo::skarnvisor {
namespace {

using namespace std::chrono_literals;

class Stage : public Functor {
 public:
  explicit Stage(std::function<void()> work) : m_work(std::move(work)) {}
  void operator()() override { m_work(); }

 private:
  std::function<void()> m_work;
};

/// Three stages a -> b -> c and a gate that keeps the functor thread busy until it is opened.
class FunctorSchedulerTest : public testing::Test {
 protected:
  FunctorSchedulerTest() {
    a.addSuccessor(&b);
    b.addSuccessor(&c);
    for (Functor *stage : {&a, &b, &c, &gate, &loner}) stage->setScheduler(&scheduler);
  }
  ~FunctorSchedulerTest() override {
    open();
    scheduler.stop();
  }

  void shut() {
    gate.run();
    entered.get_future().wait();
  }
  void open() {
    if (!std::exchange(m_open, true)) opened.set_value();
  }
  void add(char name) {
    const std::lock_guard lock(mutex);
    order.push_back(name);
  }
  std::string ran() {
    for (int i = 0; i < 5000 && !scheduler.isIdle(); ++i) QThread::msleep(1);
    const std::lock_guard lock(mutex);
    return order;
  }
  std::string queue() {
    std::string names;
    for (const Functor *stage : scheduler.waiting())
      names += stage == &a ? 'a' : stage == &b ? 'b' : stage == &c ? 'c' : 'l';
    return names;
  }
  void post(const std::string &names) {
    for (const char name : names) (name == 'a' ? a : name == 'b' ? b : name == 'c' ? c : loner).run();
  }

  FunctorScheduler scheduler;
  std::mutex mutex;
  std::string order;
  std::promise<void> entered, opened;
  Stage a{[this] { add('a'); }}, b{[this] { add('b'); }}, c{[this] { add('c'); }}, loner{[this] { add('l'); }};
  Stage gate{[this] {
    entered.set_value();
    opened.get_future().wait();
  }};

 private:
  bool m_open = false;
};

TEST_F(FunctorSchedulerTest, AStageIsDroppedOnlyIfItWaitsBehindItsPredecessors) {
  struct Case {
    const char *posted, *queued;
  };
  shut();
  for (const Case &row :
       {Case{"a", "a"}, {"b", "ab"}, {"ab", "ab"}, {"c", "abc"}, {"abcabc", "abc"}, {"l", "abcl"}, {"la", "abcl"}}) {
    post(row.posted);
    EXPECT_EQ(queue(), row.queued) << "after posting " << row.posted;
  }
  open();
  EXPECT_EQ(ran(), "abcl");
}

TEST_F(FunctorSchedulerTest, AWaitingParserIsFollowedByTheNewestProducerRunAndTheQueueStaysSo) {
  shut();
  post("b");
  for (int i = 0; i < 1000; ++i) post("ab");
  EXPECT_EQ(queue(), "bab");
  // The predecessor of a predecessor counts as well.
  post("c");
  post("bc");
  EXPECT_EQ(queue(), "babc");
  open();
  EXPECT_EQ(ran(), "babc");
}

TEST_F(FunctorSchedulerTest, AStormFromSeveralThreadsStarvesNobody) {
  std::atomic<bool> storming{true};
  std::vector<std::thread> threads;
  for (int i = 0; i < 3; ++i) {
    threads.emplace_back([&] {
      while (storming) post("abc");
    });
  }
  const auto enough = [this] {
    const std::lock_guard lock(mutex);
    return std::count(order.begin(), order.end(), 'c') >= 200;
  };
  for (int i = 0; i < 10'000 && !enough(); ++i) QThread::msleep(1);
  storming = false;
  for (std::thread &thread : threads) thread.join();
  const std::string all = ran();
  ASSERT_GE(std::count(all.begin(), all.end(), 'c'), 200);
  // Whatever ran last of a, a b follows it, and a c that.
  EXPECT_LT(all.rfind('a'), all.rfind('b'));
  EXPECT_LT(all.rfind('b'), all.rfind('c'));
}

TEST_F(FunctorSchedulerTest, AnExceptionEndsOneRunAndIsLoggedOnce) {
  Logger::GetInstance().setConsoleMask(0);
  const test::LogLines log;
  std::atomic<int> reported{0};
  Stage failing{[] { throw std::runtime_error("the disk is gone"); }};
  Stage odd{[] { throw 7; }};
  for (Stage *stage : {&failing, &odd}) {
    stage->setScheduler(&scheduler);
    QObject::connect(
        stage, &Functor::finished, stage, [&](const QString &error) { reported += error.isEmpty() ? 0 : 1; },
        Qt::DirectConnection);
  }
  for (int i = 0; i < 3; ++i) {
    failing.run();
    ran();
  }
  odd.run();
  post("l");
  EXPECT_EQ(ran(), "l");
  EXPECT_EQ(reported, 4);
  EXPECT_THAT(log.messages(), testing::Contains(testing::HasSubstr("the disk is gone")).Times(1));
  Logger::GetInstance().setConsoleMask(logDefaultMask);
}

TEST_F(FunctorSchedulerTest, StoppingServesTheRunningStageThatWantsTheStoppingThread) {
  QObject here;
  std::promise<void> started;
  std::atomic<bool> served{false}, ended{false};
  Stage asking{[&] {
    started.set_value();
    while (!QThread::currentThread()->isInterruptionRequested()) QThread::msleep(1);
    runInThreadOf(&here, [&] { served = QThread::currentThread() == here.thread(); });
    ended = true;
  }};
  asking.setScheduler(&scheduler);
  asking.run();
  started.get_future().wait();
  post("abc");
  scheduler.stop();
  EXPECT_TRUE(served);
  EXPECT_TRUE(ended);
  post("a");
  EXPECT_EQ(ran(), "") << "what waited is dropped, and nothing is taken any more";
}

TEST_F(FunctorSchedulerTest, AnInterruptionMeetsTheRunningStageOnly) {
  std::promise<void> started;
  std::atomic<int> interrupted{0};
  Stage patient{[&] {
    started.set_value();
    while (!QThread::currentThread()->isInterruptionRequested()) QThread::msleep(1);
    ++interrupted;
  }};
  Stage next{[&] { interrupted += QThread::currentThread()->isInterruptionRequested() ? 10 : 100; }};
  patient.setScheduler(&scheduler);
  next.setScheduler(&scheduler);
  scheduler.interrupt();  // nothing runs: nothing happens
  patient.run();
  started.get_future().wait();
  next.run();
  scheduler.interrupt();
  ran();
  EXPECT_EQ(interrupted, 101);
}

TEST_F(FunctorSchedulerTest, ADyingFunctorWaitsForItsRunAndLeavesTheQueue) {
  std::promise<void> started;
  std::atomic<bool> ended{false};
  {
    Stage slow{[&] {
      started.set_value();
      QThread::msleep(30);
      ended = true;
    }};
    slow.setScheduler(&scheduler);
    slow.run();
    started.get_future().wait();
    slow.run();
    scheduler.forget(&slow);
    EXPECT_TRUE(ended);
  }
  post("l");
  EXPECT_EQ(ran(), "l");
}

}  // namespace
}  // namespace tarvo::skarnvisor
