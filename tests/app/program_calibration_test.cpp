#include <gtest/gtest.h>

#include <QDir>
#include <QTemporaryDir>

#include "tests/app/program_fixture.h"
#include "tests/support/test_environment.h"

namespace tarvo::skarnvisor::test {
namespace {

QStringList size(const char *calibration, const char *channels = "16") {
  return {"--frames", "2", "--channels", channels, "--columns", "120", "--calibration", calibration};
}

TEST(ProgramCalibration, WritesWhatTheCaptureBroughtAndTakesItInWhereItIsMissing) {
  const QTemporaryDir folder;
  const QString with = folder.filePath("with.pcap");
  const QString without = folder.filePath("ohne ä.pcap");
  makeCapture(with, size("inside"));
  makeCapture(without, size("none"));
  const ProgramResult written = skarnvisor({"calibration", with, "--export", folder.filePath("out")});
  ASSERT_EQ(written.exitCode, 0) << written.err.toStdString();
  const ProgramResult listed = skarnvisor({"calibration", with});
  EXPECT_EQ(listed.value("corrections") + ", " + listed.value("dcf"), "loaded, not loaded");
  const QString corrections = written.value("corrections");
  const QByteArray table = contents(corrections);
  EXPECT_EQ(table.count('\n'), 17) << table.toStdString();

  const QString import = "corrections=" + corrections;
  const ProgramResult taken = skarnvisor({"calibration", without, "--import", import});
  ASSERT_EQ(taken.exitCode, 0) << taken.err.toStdString();
  EXPECT_EQ(taken.value("corrections"), "loaded");
  // What was taken in is the default of the type from now on.
  const ProgramResult again = skarnvisor({"calibration", without, "--export", folder.filePath("again")});
  EXPECT_EQ(contents(again.value("corrections")), table);
}

TEST(ProgramCalibration, ARefusedFileIsOneSentenceWithFileAndLine) {
  const QTemporaryDir folder;
  const QString capture = folder.filePath("capture.pcap");
  makeCapture(capture, size("inside"));
  const QString bad = folder.filePath("bad.csv");
  writeFile(bad, "channel,elevation,azimuth\n1,0.5,0\n2,word,0\n");
  writeFile(folder.filePath("file"), "");
  const QString other = folder.filePath("other.csv");
  writeFile(other, "channel,elevation,azimuth\n1,0.5,0\n2,0.5,0\n");
  expectRefusals({"calibration", capture},
                 {{{"--import", "corrections=" + bad}, {"bad.csv", "line 3"}},
                  {{"--import", "corrections=" + folder.filePath("none.csv")}, {"none.csv"}},
                  {{"--import", "corrections=" + other}, {"other.csv", "line 3", "16 channels"}},
                  {{"--import", "colours=" + bad}, {"corrections, firetimes"}},
                  {{"--export", folder.filePath("file")}, {"cannot be made"}}});
}

TEST(ProgramCalibration, AnImportThatCannotBecomeTheDefaultHasFailed) {
  const QTemporaryDir folder;
  const QString capture = folder.filePath("capture.pcap");
  makeCapture(capture, size("none", "2"));
  const QString good = folder.filePath("good.csv");
  writeFile(good, "channel,elevation,azimuth\n1,0.5,0\n2,0.5,0\n");
  const QString kept = documentsFolder() + "/SkarnvisorDataFiles";
  QDir(kept).removeRecursively();
  writeFile(kept, "a file where the folder should be");
  const ProgramResult result = skarnvisor({"calibration", capture, "--import", "corrections=" + good});
  QFile::remove(kept);
  EXPECT_NE(result.exitCode, 0);
  EXPECT_TRUE(result.err.contains("good.csv was not kept as the default: Unable to write")) << result.err.toStdString();
}

}  // namespace
}  // namespace tarvo::skarnvisor::test
