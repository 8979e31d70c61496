#include "default/telemetry/resistance_table.h"
#include "tests/support/log_lines.h"

#include <QFile>

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace tarvo::skarnvisor::test {
namespace {

const QString path = QStringLiteral("rntc.csv");

void write(const QByteArray &bytes) {
  QFile file(path);
  ASSERT_TRUE(file.open(QIODevice::WriteOnly));
  ASSERT_EQ(file.write(bytes), bytes.size());
}

std::vector<std::string> messagesOf(const std::function<void()> &act) {
  const LogLines log;
  act();
  return log.messages();
}

TEST(ResistanceTable, ReadsItsFileAndNothingElseChangesIt) {
  write("idx,temp,res\r\n1,-40.0,195.6\r\n \t\r\n\n 2 , -39.5 , 189.1 , and more\n0,1,1\n-3,1,1\n500,209.5,0.18");
  ResistanceTable table;
  table.resistances[7] = 3.0F;
  EXPECT_TRUE(table.load(path));
  EXPECT_FLOAT_EQ(table.temperatures[0], -40.0F);
  EXPECT_FLOAT_EQ(table.resistances[1], 189.1F);
  EXPECT_FLOAT_EQ(table.temperatures[499], 209.5F);
  EXPECT_EQ(table.resistances[7], 0.0F) << "what the file does not give is zero";

  for (const char *missing : {"no/such/rntc.csv", "."}) {
    EXPECT_FALSE(table.load(QString::fromLatin1(missing)));
    EXPECT_FLOAT_EQ(table.temperatures[499], 209.5F) << "a file that cannot be opened changes nothing";
  }
  write("");
  EXPECT_TRUE(table.load(path));
  EXPECT_EQ(table.temperatures[499], 0.0F);
}

TEST(ResistanceTable, StopsAtALineThatSaysNothingAndKeepsWhatWasRead) {
  struct Case {
    QByteArray line;
    const char *message;
  };
  const Case cases[]{{"2;-39.5;189.1", "Invalid input file!"},
                     {"2,-39.5", "Invalid input file!"},
                     {"two,-39.5,189.1", "Invalid input file!"},
                     {"2.5,-39.5,189.1", "Invalid input file!"},
                     {"99999999999,-39.5,189.1", "Invalid input file!"},
                     {"2,,189.1", "Invalid input file!"},
                     {"2,-39.5,189.1 ohm", "Invalid input file!"},
                     {"2,nan,189.1", "Invalid input file!"},
                     {"2,-39.5,1e99", "Invalid input file!"},
                     {QByteArray("2,-39.5,\0", 9), "Invalid input file!"},
                     {"2,-39.5," + QByteArray(1 << 20, '1'), "Invalid input file!"},
                     {"501,-39.5,189.1", "Invalid input file! -- idx error"}};
  for (const Case &row : cases) {
    write("title\n1,-40,195.6\n" + row.line + "\n3,-39,182\n");
    ResistanceTable table;
    const auto messages = messagesOf([&] { EXPECT_FALSE(table.load(path)) << row.line.left(20).toStdString(); });
    ASSERT_EQ(messages.size(), 2U) << row.line.left(20).toStdString();
    EXPECT_EQ(messages[0], row.message);
    EXPECT_NE(messages[1].find("rntc.csv, line 3: expected an index up to 500, a temperature and a resistance"),
              std::string::npos)
        << messages[1];
    EXPECT_FLOAT_EQ(table.resistances[0], 195.6F);
    EXPECT_EQ(table.resistances[2], 0.0F) << "the lines behind are not read";
  }
}

TEST(ResistanceTable, ATitleWithoutEndIsPassedOverInPieces) {
  QFile file(path);
  ASSERT_TRUE(file.open(QIODevice::WriteOnly));
  const QByteArray piece(1 << 20, ',');
  for (int i = 0; i < 64; ++i) file.write(piece);
  file.write("\n4,1.5,2.5\n");
  file.close();
  ResistanceTable table;
  EXPECT_TRUE(table.load(path));
  EXPECT_FLOAT_EQ(table.resistances[3], 2.5F);
}

}  // namespace
}  // namespace tarvo::skarnvisor::test
