#include <gtest/gtest.h>

#include <QtCore/QDeadlineTimer>
#include <QtNetwork/QHostAddress>
#include <QtNetwork/QTcpServer>
#include <thread>

#include "runtime/device/device_session.h"

namespace {

TEST(DeviceSession, ConnectsToAListenerAndClosesAgain) {
  QTcpServer server;
  ASSERT_TRUE(server.listen(QHostAddress::LocalHost));
  tarvo::lidar::DeviceSession session;
  EXPECT_FALSE(session.isConnected());
  session.open("127.0.0.1", server.serverPort());
  ASSERT_TRUE(server.waitForNewConnection(10'000));
  const QDeadlineTimer deadline(10'000);
  while (!session.isConnected() && !deadline.hasExpired()) std::this_thread::yield();
  EXPECT_TRUE(session.isConnected());
  EXPECT_FALSE(session.isCommandOpen());
  session.close();
  EXPECT_FALSE(session.isConnected());
}

TEST(DeviceSession, StaysClosedWhereNobodyListensAndEndsAtOnceWhenClosed) {
  QTcpServer server;
  ASSERT_TRUE(server.listen(QHostAddress::LocalHost));
  const quint16 deadPort = server.serverPort();
  server.close();
  tarvo::lidar::DeviceSession session;
  session.open("127.0.0.1", deadPort);
  session.close();
  EXPECT_FALSE(session.isConnected());
  session.open("no address", 1);
  session.close();
  EXPECT_FALSE(session.isConnected());
}

}  // namespace
