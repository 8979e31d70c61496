#include "default/files/output_file.h"

#include <QDir>
#include <QFile>

#include <sched.h>
#include <sys/fsuid.h>
#include <sys/mount.h>
#include <unistd.h>

#include <gtest/gtest.h>

#include <string>
#include <thread>

#include "tests/support/files.h"
#include "tests/support/test_environment.h"

namespace tarvo::skarnvisor::test {
namespace {

/// Writes `bytes` the way the exports do; why it failed, empty when it did not.
QString put(const QString &path, const std::string &bytes) {
  OutputFile file(path);
  if (file.open() && file.write(bytes)) file.commit();
  return file.error();
}

QString folderOf(const char *name) {
  const QString folder = processFolder() + QLatin1Char('/') + QLatin1String(name);
  QDir().mkpath(folder);
  return folder;
}

TEST(OutputFile, TakesItsPlaceAtTheEndAndLeavesNothingElse) {
  const QString folder = folderOf("place");
  const QString path = folder + "/points.pcd";
  EXPECT_EQ(put(path, "old"), QString());
  {
    OutputFile file(path);
    ASSERT_TRUE(file.open() && file.write("half of the"));
    EXPECT_EQ(contents(path), "old");
  }
  EXPECT_EQ(contents(path), "old") << "given up";
  EXPECT_EQ(put(path, "new"), QString());
  EXPECT_EQ(contents(path), "new");
  EXPECT_EQ(QDir(folder).entryList(QDir::Files | QDir::Hidden), QStringList{"points.pcd"});
}

TEST(OutputFile, SaysWhyItCannotBeWritten) {
  EXPECT_EQ(put("/dev/full", std::string(100'000, 'x')), QStringLiteral("No space left on device"));
  EXPECT_FALSE(put(processFolder() + "/no such folder/points.pcd", "x").isEmpty());
  EXPECT_FALSE(put(folderOf("folder"), "x").isEmpty()) << "the name is a folder's";
  EXPECT_EQ(put("/dev/null", "x"), QString()) << "a device stays what it is";
  EXPECT_FALSE(QFileInfo("/dev/null").isFile());
}

TEST(OutputFile, AFolderWithoutWritePermissionKeepsWhatWasThere) {
  const QString folder = folderOf("closed");
  const QString path = folder + "/points.pcd";
  ASSERT_EQ(put(path, "old"), QString());
  QFile::setPermissions(folder, QFile::ReadOwner | QFile::ExeOwner);
  QString fault;
  // The superuser may write anywhere; a thread that acts on files as nobody may not.
  std::thread([&] {
    if (::geteuid() == 0) ::setfsuid(65534);
    fault = put(path, "new");
  }).join();
  QFile::setPermissions(folder, QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
  EXPECT_EQ(fault, QStringLiteral("Permission denied"));
  EXPECT_EQ(contents(path), "old");
}

TEST(OutputFile, AFullDiskKeepsWhatWasThere) {
  const QString folder = folderOf("small");
  const QString path = folder + "/points.pcd";
  bool mounted = false;
  QString before;
  QString fault;
  QByteArray kept;
  QStringList left;
  std::thread([&] {  // in a view of the file system that ends with the thread
    if (::unshare(CLONE_NEWNS) != 0 || ::mount(nullptr, "/", nullptr, MS_REC | MS_PRIVATE, nullptr) != 0 ||
        ::mount("tmpfs", folder.toLocal8Bit().constData(), "tmpfs", 0, "size=64k") != 0)
      return;
    mounted = true;
    before = put(path, "old");
    fault = put(path, std::string(200'000, 'x'));
    kept = contents(path);
    left = QDir(folder).entryList(QDir::Files | QDir::Hidden);
  })
      .join();
  if (!mounted) GTEST_SKIP() << "no small disk can be mounted here";
  EXPECT_EQ(before, QString());
  EXPECT_EQ(fault, QStringLiteral("No space left on device"));
  EXPECT_EQ(kept, "old");
  EXPECT_EQ(left, QStringList{"points.pcd"});
}

}  // namespace
}  // namespace tarvo::skarnvisor::test
