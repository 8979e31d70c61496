// The program on folders of point files and on single ones.
#include <QDir>
#include <QFileInfo>

#include "tests/app/program_fixture.h"

namespace tarvo::skarnvisor::test {
namespace {

QByteArray pcdFile(int points) {
  const QByteArray count = QByteArray::number(points);
  QByteArray bytes = "VERSION .7\nFIELDS x y z intensity\nSIZE 4 4 4 4\nTYPE F F F F\nCOUNT 1 1 1 1\nWIDTH " + count +
                     "\nHEIGHT 1\nPOINTS " + count + "\nDATA ascii\n";
  for (int i = 0; i < points; ++i) bytes += QByteArray::number(i % 10) + " " + QByteArray::number(i / 10) + " 0 77\n";
  return bytes;
}

QString freshFolder(const QString &name) {
  QDir(name).removeRecursively();
  QDir().mkpath(name);
  return name;
}

TEST(ProgramPointFiles, AFolderIsToldPlayedAndDrawn) {
  const QString folder = freshFolder("clouds");
  writeFile(folder + "/scan1000.pcd", pcdFile(40));
  writeFile(folder + "/scan1100.ply", "ply\nformat ascii 1.0\nend_header\n");
  writeFile(folder + "/scan1200.pcd", pcdFile(60));
  const ProgramResult info = skarnvisor({"info", folder});
  EXPECT_EQ(info.exitCode, 0) << info.err.toStdString();
  EXPECT_EQ(info.value("frames"), "3");
  EXPECT_EQ(info.value("points shown"), "40");
  EXPECT_EQ(info.value("channels"), "1024");
  EXPECT_TRUE(info.out.contains("files: 2 pcd, 1 ply\n")) << info.out.toStdString();
  const qint64 bytes = pcdFile(40).size() + pcdFile(60).size() + QFileInfo(folder + "/scan1100.ply").size();
  EXPECT_EQ(info.value("size"), QString::number(bytes) + " bytes");
  EXPECT_FALSE(info.out.contains("packets"));

  const ProgramResult play = skarnvisor({"play", folder});
  EXPECT_EQ(play.exitCode, 0) << play.err.toStdString();
  EXPECT_EQ(play.value("frames played"), "2") << "one of the three cannot be read";
  EXPECT_EQ(play.value("points shown"), "100");
  EXPECT_TRUE(play.err.contains("frame 1: PLY parser: no element with name: vertex")) << play.err.toStdString();

  EXPECT_EQ(skarnvisor({"render", folder, "--frame", "2", "--out", "cloud.png"}).exitCode, 0);
  EXPECT_TRUE(QFile::exists("cloud.png"));
  const ProgramResult bad = skarnvisor({"render", folder, "--frame", "1", "--out", "bad.png"});
  EXPECT_EQ(bad.exitCode, 1);
  EXPECT_TRUE(bad.err.contains("PLY parser")) << bad.err.toStdString();
  EXPECT_FALSE(QFile::exists("bad.png"));

  QFile::rename(folder + "/scan1100.ply", folder + "/scan0900.ply");
  const ProgramResult second = skarnvisor({"info", folder});
  EXPECT_EQ(second.exitCode, 0) << "a damaged first file does not hide the rest";
  EXPECT_EQ(second.value("points of frame 1"), "40");
  EXPECT_TRUE(second.err.contains("scan0900.ply: PLY parser")) << second.err.toStdString();
}

TEST(ProgramPointFiles, ASingleFileOpensWhateverItsName) {
  writeFile("cloud.pcd", pcdFile(7));
  const ProgramResult info = skarnvisor({"info", "cloud.pcd"});
  EXPECT_EQ(info.exitCode, 0) << info.err.toStdString();
  EXPECT_EQ(info.value("points shown"), "7");
  EXPECT_FALSE(info.out.contains("time span")) << "the name tells none";

  const std::pair<QString, QByteArray> unreadable[] = {
      {"short.bin", "\2\0\0\0abc"}, {"headless.pcd", "1 2 3\n4 5 6\n"}, {"capitals.BIN", QByteArray(4, '\0')}};
  for (const auto &[name, bytes] : unreadable) {
    writeFile(name, bytes);
    const ProgramResult refused = skarnvisor({"info", name});
    EXPECT_EQ(refused.exitCode, 1) << name.toStdString();
    EXPECT_TRUE(refused.err.startsWith("skarnvisor: ") || refused.err.contains("\nskarnvisor: "))
        << name.toStdString() << " says why: " << refused.err.toStdString();
  }
}

TEST(ProgramPointFiles, ConvertsAFolderAndNamesWhatItCannot) {
  const QString folder = freshFolder("convert-from");
  for (int i = 0; i < 5; ++i) writeFile(folder + QStringLiteral("/%1.0.pcd").arg(i), pcdFile(10 + i));
  for (const char *format : {"bin", "csv", "pcd"}) {
    const QString target = freshFolder(QStringLiteral("to-%1").arg(format));
    const ProgramResult result = skarnvisor({"convert", folder, "--to", format, "--out", target});
    EXPECT_EQ(result.exitCode, 0) << result.err.toStdString();
    EXPECT_EQ(QDir(target).entryList(QDir::Files).size(), 5) << format;
  }
  EXPECT_EQ(QFile("to-bin/4.0.bin").size(), 4 + 18 * 14);
  EXPECT_EQ(skarnvisor({"info", "to-bin"}).value("points shown"), "10");

  writeFile(folder + "/9.0.ply", "ply\nformat ascii 1.0\nend_header\n");
  const ProgramResult partly = skarnvisor({"convert", folder, "--to", "bin", "--out", "to-bin"});
  EXPECT_EQ(partly.exitCode, 1);
  EXPECT_TRUE(partly.out.contains("5 of 6 files written")) << partly.out.toStdString();
  EXPECT_TRUE(partly.err.contains("9.0.ply")) << partly.err.toStdString();
  const ProgramResult itself = skarnvisor({"convert", "to-pcd", "--to", "pcd", "--out", "to-pcd"});
  EXPECT_EQ(itself.exitCode, 1);
  EXPECT_TRUE(itself.err.contains("over itself")) << itself.err.toStdString();

  // The converted 4.0.bin would take the place of 4.0.pcd, a source of its own.
  QFile::copy("to-bin/4.0.bin", folder + "/4.0.bin");
  EXPECT_EQ(skarnvisor({"convert", folder, "--to", "pcd", "--out", folder}).exitCode, 1);
  EXPECT_EQ(contents(folder + "/4.0.pcd"), pcdFile(14));
}

}  // namespace
}  // namespace tarvo::skarnvisor::test
