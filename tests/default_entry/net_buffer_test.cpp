// The clip of a lidar track: its extent, its flags, cutting and recording.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QApplication>
#include <QFileDialog>
#include <QSettings>
#include <QSignalSpy>
#include <QTimer>

#include "default/entry/default_sdk_buffer_loader.h"
#include "tests/default_entry/scripted_runtime.h"
#include "tests/support/test_environment.h"

namespace tarvo::skarnvisor::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

/// A clip whose record dialog is answered by the test.
class AnsweredClip : public DefaultSDKNetBuffer {
 public:
  using DefaultSDKNetBuffer::DefaultSDKNetBuffer;
  QString answer;
  QStringList offered;

 protected:
  QString askRecordFile(const QString &lastPath) override {
    offered.append(lastPath);
    return answer;
  }
};

struct Clip : testing::Test {
  SourceHolder holder;
  AnsweredClip clip{&holder};
  ScriptedRuntime &runtime = *holder.runtime;
  SDKSource &source = *holder.source;

  void extend(double begin, double end, int frames) {
    source.beginSeconds = begin;
    source.endSeconds = end;
    runtime.frames = frames;
    clip.follow(source);
  }
};

TEST_F(Clip, FollowsTheExtentAndAnnouncesAnotherFrameCountOnly) {
  QSignalSpy changed(&clip, &TimeIntervalBuffer::changed);
  extend(10.00000009, 20.5, 100);
  EXPECT_EQ(clip.begin(), TimePoint(Ticks(100'000'000)));
  EXPECT_EQ(clip.end(), TimePoint(Ticks(205'000'000)));
  EXPECT_EQ(clip.frameCount(), 100);
  EXPECT_EQ(changed.count(), 1);
  extend(10.0, 30.0, 100);
  EXPECT_EQ(clip.end(), TimePoint(Ticks(300'000'000)));
  EXPECT_EQ(changed.count(), 1);
  runtime.preParser = false;
  extend(10.0, 30.0, 100);
  EXPECT_EQ(clip.frameCount(), 0);
}

TEST_F(Clip, KeepsWhatItHasWhileTheSourceKnowsNoExtent) {
  extend(10.0, 20.0, 50);
  for (const auto &[begin, end] : {std::pair(-1.0, 20.0), std::pair(5.0, -1.0), std::pair(21.0, 20.0)}) {
    extend(begin, end, 70);
    EXPECT_EQ(clip.frameCount(), 50) << begin << " to " << end;
    EXPECT_EQ(clip.begin(), TimePoint(Ticks(100'000'000)));
  }
}

TEST_F(Clip, StopsReceptionWithItsLoading) {
  QSignalSpy changed(&clip, &TimeIntervalBuffer::changed);
  EXPECT_TRUE(clip.loading());
  clip.setLoading(false);
  clip.setLoading(true);
  EXPECT_THAT(runtime.stopped, ElementsAre(true, false));
  EXPECT_EQ(changed.count(), 2);
}

TEST_F(Clip, KnowsTheStartOfEachFrameItHas) {
  extend(1000.0, 1001.0, 10);
  EXPECT_EQ(clip.getFrameStartSeconds(9), 1000.0 + 0.1 * 9);
  EXPECT_EQ(clip.getFrameStartSeconds(10), 0.0);
  EXPECT_EQ(clip.getFrameStartSeconds(-1), 0.0);
}

TEST_F(Clip, CutsByFramesAndByTheTimelinesText) {
  EXPECT_TRUE(clip.cutPcap(QUrl::fromLocalFile("/tmp/part.pcap"), 3, 8));
  const QString begin = timeText(TimePoint(Ticks(17'000'000'001'230'000)));
  const QString end = timeText(TimePoint(Ticks(17'000'000'101'230'000)));
  runtime.refuseCut = true;
  EXPECT_FALSE(clip.cutPcap(QUrl::fromLocalFile("/tmp/time.pcap"), begin, end));
  EXPECT_THAT(runtime.cuts, ElementsAre("/tmp/part.pcap 3 8", "/tmp/time.pcap 1700000000.123000 1700000010.123000"));
}

TEST_F(Clip, RecordsToTheFileThatTheUserNamesAndOffersItAgain) {
  clip.answer = documentsFolder() + "/first.pcap";
  EXPECT_TRUE(clip.setRecord(true));
  EXPECT_TRUE(clip.setRecord(false));
  clip.answer = QString();
  EXPECT_FALSE(clip.setRecord(true));  // backed out
  EXPECT_TRUE(clip.recording());
  clip.answer = QStringLiteral("");
  EXPECT_FALSE(clip.setRecord(true));
  const std::string first = (documentsFolder() + "/first.pcap").toStdString();
  EXPECT_THAT(runtime.recordings, ElementsAre(first, "stop"));
  ASSERT_EQ(clip.offered.size(), 3);
  EXPECT_EQ(clip.offered.at(1).toStdString(), first);
  QSettings settings(documentsFolder() + "/SkarnvisorDataFiles/Settings.ini", QSettings::IniFormat);
  EXPECT_EQ(settings.value("LastSavePcapFilePath").toString().toStdString(), first);
}

TEST_F(Clip, TheRecordDialogAsksForACaptureFile) {
  DefaultSDKNetBuffer plain(&holder);
  const QString target = documentsFolder() + "/asked.pcap";
  QString title;
  QTimer answer;
  QObject::connect(&answer, &QTimer::timeout, [&] {
    auto *dialog = qobject_cast<QFileDialog *>(QApplication::activeModalWidget());
    if (!dialog) return;
    answer.stop();
    title = dialog->windowTitle();
    EXPECT_EQ(dialog->acceptMode(), QFileDialog::AcceptSave);
    EXPECT_EQ(dialog->defaultSuffix().toStdString(), "pcap");
    EXPECT_EQ(dialog->nameFilters(), QStringList("pcap files (*.pcap)"));
    dialog->setDirectory(documentsFolder());
    dialog->selectFile("asked");
    QMetaObject::invokeMethod(dialog, "accept");
  });
  answer.start(10);
  EXPECT_TRUE(plain.setRecord(true));
  EXPECT_THAT(runtime.recordings, ElementsAre(target.toStdString()));
  EXPECT_EQ(title.toStdString(), "Save pcap file");
}

TEST(ClipWithoutSource, RefusesAndStaysEmpty) {
  DefaultSDKNetLoader loader;
  loader();
  DefaultSDKNetBuffer &clip = *loader.defaultSDKNetBuffer();
  EXPECT_FALSE(clip.setRecord(true));
  EXPECT_TRUE(clip.recording());
  EXPECT_FALSE(clip.pcapActive());
  EXPECT_FALSE(clip.cutPcap(QUrl::fromLocalFile("/tmp/part.pcap"), 0, 1));
  EXPECT_EQ(clip.frameCount(), 0);
}

}  // namespace
}  // namespace tarvo::skarnvisor::test
