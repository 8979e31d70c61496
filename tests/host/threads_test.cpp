#include "contracts/host/threads.h"

#include <gtest/gtest.h>

#include <QObject>
#include <QThread>
#include <memory>
#include <stdexcept>
#include <thread>

namespace tarvo::skarnvisor {
namespace {

class RunInThreadOfTest : public testing::Test {
 protected:
  RunInThreadOfTest() : object(new QObject) {
    thread.start();
    object->moveToThread(&thread);
  }
  ~RunInThreadOfTest() override {
    thread.quit();
    thread.wait();
  }
  QThread thread;
  std::unique_ptr<QObject> object;
};

TEST_F(RunInThreadOfTest, RunsThereAndWaits) {
  QThread *ranOn = nullptr;
  EXPECT_TRUE(runInThreadOf(object.get(), [&] { ranOn = QThread::currentThread(); }));
  EXPECT_EQ(ranOn, &thread);
}

TEST_F(RunInThreadOfTest, CallsDirectlyWhenAlreadyThere) {
  bool nested = false;
  EXPECT_TRUE(runInThreadOf(object.get(), [&] { runInThreadOf(object.get(), [&] { nested = true; }); }));
  EXPECT_TRUE(nested);
}

TEST_F(RunInThreadOfTest, CarriesAnExceptionToTheCaller) {
  EXPECT_THROW(runInThreadOf(object.get(), [] { throw std::invalid_argument("no"); }), std::invalid_argument);
}

TEST_F(RunInThreadOfTest, SaysSoWhenTheObjectDiesFirst) {
  bool ran = false;
  thread.quit();
  thread.wait();
  QObject *const target = object.release();
  std::thread killer([target] {
    QThread::msleep(100);  // nothing tells from outside that the call is under way
    delete target;
  });
  EXPECT_FALSE(runInThreadOf(target, [&] { ran = true; }));
  killer.join();
  EXPECT_FALSE(ran);
}

}  // namespace
}  // namespace tarvo::skarnvisor
