// How the default calibration files of a lidar type and the calibration of a capture come in step.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QSignalSpy>
#include <memory>

#include "contracts/host/registration.h"
#include "contracts/runtime/ornika_loader.h"
#include "default/entry/family_table.h"
#include "default/pipeline/default_sdk_parser.h"
#include "default/types/lidar_type_configuration.h"
#include "default/types/lidar_type_description.h"
#include "tests/support/files.h"
#include "tests/support/inert_runtime.h"
#include "tests/support/test_environment.h"

extern "C" void regist_classes();

namespace tarvo::skarnvisor::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

/// Notes its loads and exports by file name; a file that holds "bad" is refused.
class FileRuntime : public tarvo::test::InertRuntime {
 public:
  bool IsCorrectionLoadSuccess() const override { return true; }
  bool IsFiretimesLoadSuccess() const override { return true; }
  int LoadCorrectionFile(const std::string &path) override { return load("corrections", path); }
  int LoadFiretimesFile(const std::string &path) override { return load("firetimes", path); }
  int LoadDcfConfigFile(const std::string &path) override { return load("dcf", path); }
  int ExportCorrectionsFile(const std::string &path, int) override { return write("corrections", path); }
  int ExportFiretimesFile(const std::string &path, int) override { return write("firetimes", path); }
  int ExportDcfConfigFile(const std::string &path) override { return write("dcf", path); }

  std::vector<std::string> calls;

 private:
  static std::string nameOf(const std::string &path) { return path.substr(path.rfind('/') + 1); }
  int load(const std::string &kind, const std::string &path) {
    calls.push_back("load " + kind + ' ' + nameOf(path));
    QFile file(QString::fromStdString(path));
    return file.open(QIODevice::ReadOnly) && file.readAll() != "bad" ? 0 : -2;
  }
  int write(const std::string &kind, const std::string &path) {
    calls.push_back("export " + kind + ' ' + nameOf(path));
    QFile file(QString::fromStdString(path));
    return file.open(QIODevice::WriteOnly) && file.write("from the capture") > 0 ? 0 : -2;
  }
};

const QString folder = QStringLiteral("/SkarnvisorDataFiles/correction/");

void put(const QString &below, const QByteArray &bytes) {
  const QString path = QDir::cleanPath(documentsFolder() + folder + below);
  QDir().mkpath(QFileInfo(path).absolutePath());
  QFile file(path);
  ASSERT_TRUE(file.open(QIODevice::WriteOnly));
  file.write(bytes);
}

QByteArray contentOf(const QString &below) { return contents(documentsFolder() + folder + below); }

class TypeFiles : public testing::Test {
 protected:
  TypeFiles() {
    regist_classes();
    QDir(documentsFolder() + "/SkarnvisorDataFiles").removeRecursively();
  }

  /// Opens a lidar of the type; what the capture lacks is told by the flags.
  std::vector<std::string> open(LidarFamily family, const std::string &type, bool corrections, bool firetimes = false,
                                bool dcf = false) {
    source = std::make_unique<SDKSource>();
    auto *const runtime = new FileRuntime;
    source->runtime = runtime;
    source->correctionFailed = !corrections;
    source->firetimesFailed = !firetimes;
    source->dcfFailed = !dcf;
    for (const FamilyRow &row : familyTable)
      if (row.family == family)
        parser.reset(qobject_cast<DefaultSDKParser *>(
            Registration::create(QStringLiteral("tarvo::skarnvisor::") + row.parser, nullptr)));
    DefaultSDKFrameRenderBuffer &buffer = *parser->defaultSDKFrameBuffer();
    buffer.setSource(source.get());
    buffer.setLidarType(type);
    configureLidarType(lidarTypeChain(family), nullptr, buffer, type, 6, *source);
    return runtime->calls;
  }

  std::unique_ptr<SDKSource> source;
  std::unique_ptr<DefaultSDKParser> parser;
};

TEST_F(TypeFiles, ACapturesOwnCorrectionsBecomeTheDefaultAndAreUsedByTheNextCapture) {
  put("angle_correction/default_KR2.csv", "of an earlier capture");
  EXPECT_THAT(open(LidarFamily::KR, "KR2", true), ElementsAre("export corrections default_KR2.csv"));
  EXPECT_EQ(contentOf("angle_correction/default_KR2.csv"), "from the capture");
  EXPECT_EQ(parser->defaultSDKFrameBuffer()->correctionFileDir(), "default_KR2.csv");
  EXPECT_THAT(open(LidarFamily::KR, "KR2", false), ElementsAre("load corrections default_KR2.csv"));
}

TEST_F(TypeFiles, TheFactoryFileStandsInWithoutBecomingTheDefault) {
  put("angle_correction/KR2_Angle Correction File.csv", "factory");
  EXPECT_THAT(open(LidarFamily::KR, "KR2", false), ElementsAre("load corrections KR2_Angle Correction File.csv"));
  EXPECT_FALSE(QFile::exists(documentsFolder() + folder + "angle_correction/default_KR2.csv"));

  put("angle_correction/default_KR2.csv", "bad");
  EXPECT_THAT(open(LidarFamily::KR, "KR2", false),
              ElementsAre("load corrections default_KR2.csv", "load corrections KR2_Angle Correction File.csv"));

  put("firetime_correction/Ornika210_Firetime Correction File.csv", "factory");
  EXPECT_THAT(open(LidarFamily::Base, "Ornika210", false),
              ElementsAre("load firetimes Ornika210_Firetime Correction File.csv"));
  EXPECT_FALSE(QFile::exists(documentsFolder() + folder + "firetime_correction/default_Ornika210_firetimes.csv"));
}

TEST_F(TypeFiles, EachFamilyHasItsOwnSteps) {
  EXPECT_THAT(open(LidarFamily::KR, "NB41X", true, true, true),
              ElementsAre("export corrections default_NB41X.dat", "export dcf default_NB41X_dcf.dat"));
  EXPECT_THAT(open(LidarFamily::KR, "NB41X", false),
              ElementsAre("load corrections default_NB41X.dat", "load dcf default_NB41X_dcf.dat"));
  EXPECT_THAT(
      open(LidarFamily::NB, "NB41-6_21", true, true),
      ElementsAre("export corrections default_NB41-6_21.dat", "export firetimes default_NB41-6_21_firetimes.csv"));
  EXPECT_THAT(open(LidarFamily::FMCW, "FMCW", true, true, true), IsEmpty());
  // A type that nobody knows: no file to look for, and an export that fails where the family does not ask for one.
  EXPECT_THAT(open(LidarFamily::Base, "new", true, true, true), IsEmpty());
  EXPECT_THAT(open(LidarFamily::Base, "new", false), IsEmpty());
  EXPECT_THAT(open(LidarFamily::KR, "KR_NEW", false), IsEmpty());
  EXPECT_THAT(open(LidarFamily::KR, "KR_NEW", true), ElementsAre("export corrections "));
}

TEST_F(TypeFiles, ADenseCameraKeepsItsImageSignalFilesInPlaceOfFiretimes) {
  put("nbq_rgb_isp/nbq_rgb_isp_config.csv", "isp");
  put("nbq_rgb_isp/nbq_rgb_channel_eq_gains.csv", "gains");
  EXPECT_THAT(open(LidarFamily::KR, "NBQ_COLOR_V3", true, true),
              ElementsAre("export corrections default_NBQ_COLOR_V3.dat"));
  DefaultSDKFrameRenderBuffer &buffer = *parser->defaultSDKFrameBuffer();
  EXPECT_EQ(buffer.firetimesFileDir(), "nbq_rgb_isp_config.csv");
  EXPECT_EQ(buffer.channelEqFileDir(), "nbq_rgb_channel_eq_gains.csv");
  EXPECT_EQ(contentOf("nbq_rgb_isp/nbq_rgb_isp_config.csv"), "isp");
  EXPECT_TRUE(buffer.exportChannelEqFile(documentsFolder() + "/copy.csv"));
  EXPECT_TRUE(QFile::exists(documentsFolder() + "/copy.csv"));
}

TEST_F(TypeFiles, FiretimesOfACaptureNeverReplaceImageSignalSettings) {
  put("nbq_rgb_isp/nbq_rgb_isp_config.csv", "isp");
  put("chosen/firetimes.csv", "mine");
  for (const char *type : {"NBW_PEAK_V8", "COLOR_FLD_V7", "NBQ_COLOR_V3"}) {
    const auto calls = open(LidarFamily::KR, type, true, true);
    EXPECT_THAT(calls, ElementsAre("export corrections default_" + std::string(type) + ".dat"));
    source->firetimesExportPending = true;
    parser->defaultSDKFrameBuffer()->checkAndExportFromPcap();
    EXPECT_EQ(contentOf("nbq_rgb_isp/nbq_rgb_isp_config.csv"), "isp") << type;
  }
  open(LidarFamily::KR, "NBW_PEAK_V8", true, true);
  DefaultSDKFrameRenderBuffer &buffer = *parser->defaultSDKFrameBuffer();
  EXPECT_TRUE(buffer.importFiretimesFile(documentsFolder() + folder + "chosen/firetimes.csv"));
  EXPECT_EQ(contentOf("nbq_rgb_isp/nbq_rgb_isp_config.csv"), "isp");
  EXPECT_TRUE(buffer.exportFiretimesFile(documentsFolder() + folder + "chosen/out.csv"));
  EXPECT_EQ(contentOf("chosen/out.csv"), "from the capture") << "a file of the user's choice gets the firetimes";
}

TEST_F(TypeFiles, AnImportKeepsTheDefaultInStepWithItsSuffix) {
  put("chosen/mine.dat", "mine");
  put("chosen/mine.txt", "mine");
  open(LidarFamily::KR, "KR2", false);
  DefaultSDKFrameRenderBuffer &buffer = *parser->defaultSDKFrameBuffer();
  auto &calls = static_cast<FileRuntime *>(source->runtime)->calls;
  const QString chosen = documentsFolder() + folder + "chosen/mine";
  EXPECT_TRUE(buffer.importCorrectionsFile(QUrl::fromLocalFile(chosen + ".txt")));
  EXPECT_THAT(calls, ElementsAre("load corrections mine.txt", "export corrections default_KR2.csv"));
  calls.clear();
  EXPECT_TRUE(buffer.importCorrectionsFile(chosen + ".dat"));
  EXPECT_THAT(calls, ElementsAre("load corrections mine.dat", "export corrections default_KR2.dat"));
  EXPECT_EQ(buffer.correctionFileDir(), "mine.dat");
  calls.clear();
  EXPECT_TRUE(buffer.importCorrectionsFile(buffer.calibrationPaths().correctionPath.copy()));
  EXPECT_THAT(calls, ElementsAre("load corrections default_KR2.dat"));
  EXPECT_FALSE(buffer.importCorrectionsFile(chosen + ".none"));
  EXPECT_EQ(buffer.correctionFileDir(), "default_KR2.dat") << "a refused file leaves the name as it was";
  QFile older(documentsFolder() + folder + "angle_correction/default_KR2.csv");
  ASSERT_TRUE(older.open(QIODevice::ReadWrite));
  ASSERT_TRUE(older.setFileTime(QDateTime::currentDateTime().addSecs(-60), QFileDevice::FileModificationTime));
  older.close();
  EXPECT_THAT(open(LidarFamily::KR, "KR2", false), ElementsAre("load corrections default_KR2.dat"));
  put("chosen/isp.csv", "chosen");
  open(LidarFamily::KR, "NBQ_COLOR_V3", false);
  EXPECT_TRUE(parser->defaultSDKFrameBuffer()->importFiretimesFile(documentsFolder() + folder + "chosen/isp.csv"));
  EXPECT_EQ(contentOf("nbq_rgb_isp/nbq_rgb_isp_config.csv"), "chosen");
}

TEST_F(TypeFiles, EnergyDeductDataIsReadForALidarWithThatFilterOnly) {
  put("../energy_deduct/dist_coef.csv", "distance,dist_coef\n1,0.5\n2,0.25\n");
  put("../energy_deduct/reflectivity_config.csv", "reflectivity_raw,reflectivity_nonlinear_mapped\n200,7\n");
  open(LidarFamily::KR, "KR2", false);
  DefaultSDKFrameRenderBuffer &buffer = *parser->defaultSDKFrameBuffer();
  configureLidarType(baseTypeChain(), nullptr, buffer, "KR2", 6, *source);
  EXPECT_TRUE(source->runtime->Params().snapshot().energyDeduct.kernel.empty());
  ASSERT_TRUE(buffer.setCapability("energyDeductFilterFlag", true));
  configureLidarType(baseTypeChain(), nullptr, buffer, "KR2", 6, *source);
  const lidar::EnergyDeductParam data = source->runtime->Params().snapshot().energyDeduct;
  EXPECT_THAT(data.distCoefficients, ElementsAre(0.5F, 0.25F));
  EXPECT_EQ(data.kernel.size(), 17U * 17U) << "the built-in kernel, as there is no file";
  EXPECT_EQ(data.byteLookup[200], 7);
  EXPECT_TRUE(data.byteLookupLoaded && !data.floatLookupLoaded);
}

TEST(TypeNames, AStrayByteMatchesNothing) {
  const std::string types[] = {"kr2", "KR2 ", " KR2", "KR", "KR2P", "", std::string("KR2\0", 4), "KR2\x80", "KR2\n"};
  for (const std::string &type : types)
    for (const LidarFamily family : lidarFamilies) EXPECT_EQ(lidarTypeChain(family).find(type), nullptr) << type;
  EXPECT_NE(lidarTypeChain(LidarFamily::KR).find("KR2"), nullptr);
}

TEST(TypeNames, EveryTypeIsLoadedIntoTheFamilyWhoseChainNamesIt) {
  for (const FamilyRow &family : familyTable) {
    std::string loaded;
    lidar::OrnikaLoader loader;
    loader.*family.callback = [&loaded](const std::string &type, int) {
      loaded = type;
      return 0;
    };
    for (const LidarTypeRow &row : lidarTypeChain(family.family).rows)
      for (const std::string_view type : row.types) {
        loader.parse(std::string(type), 2368);
        EXPECT_EQ(loaded, type) << family.category;
      }
  }
}

TEST(TypeNames, TheDescriptionTellsTheWholeTable) {
  const QVariantList rows = describeLidarTypes();
  QStringList names;
  for (const QVariant &row : rows) names += row.toMap()["type"].toString();
  EXPECT_EQ(QSet<QString>(names.begin(), names.end()).size(), names.size()) << "a type stands in two chains";
  // Types that other parts of the plug-in treat in ways of their own.
  const char *const known =
      "Ornika210 OrnikaAura Ornika70S_plusInfo Ornika44S_plusInfo WG9 OrnikaYF OrnikaYFN YFP OrnikaZC OrnikaZC8 "
      "OrnikaZC8Special VD8 VD2 VD5_Serial HU_V8 HU_V11 KR2 KR9 KR5E_QD KR6_5_14 KR6_31_52 NB41X NBQ_TU_410 "
      "NBQ_TU_410_RS NBQ_TU_830 NBQ_TU_RS5_41 NBQ_TU_RS5_43 NBQ_TU_RS5_47 NBQ_TU_5_42 NBQ_V5_33_830 NBW_TOP_V2 "
      "NBW_TOP_V3_V4 NBQ_COLOR_V3 NBW_TOP_COLOR NBW_TOP_COLOR_V6 NBW_PEAK_V8 NBW_PEAK_V8_C COLOR_FLD_V6 "
      "COLOR_FLD_V7 COLOR_FLD_V11 LM LMQ LMQ-TX LMQ-350 KR8_19 KR8_37 TRL-Newt TRL-KRS51 NB41-6_20 NB41-6_21 "
      "NB41-6_22 NB41-6_23 OrnikaQS3 QS3T5W OrnikaQS4_4 OrnikaQS5 QSQ_4_18 QSQ_V21 QSQ_V23 FMCW FMCW_V3 FMCW_V4";
  for (const QString &type : QString::fromLatin1(known).split(' '))
    EXPECT_TRUE(names.contains(type)) << type.toStdString();
  const QVariantMap lmq = rows[names.indexOf("LMQ")].toMap();
  EXPECT_EQ(lmq["filters"].toStringList(), QStringList({"confidence01234FilterFlag", "confidence5FilterFlag",
                                                        "confidence6FilterFlag", "confidence7FilterFlag"}));
  const QVariantMap camera = rows[names.indexOf("NBQ_COLOR_V3")].toMap();
  EXPECT_TRUE(camera["capabilities"].toStringList().contains("firetimesUseful"));
  EXPECT_FALSE(camera["switched off"].toStringList().contains("firetimesUseful"));
  EXPECT_TRUE(rows[names.indexOf("KR2")].toMap()["switched off"].toStringList().contains("firetimesUseful"));
}

}  // namespace
}  // namespace tarvo::skarnvisor::test
