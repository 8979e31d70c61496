// What a lidar type sets on its render buffer.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QDir>
#include <memory>

#include "contracts/host/registration.h"
#include "default/entry/family_table.h"
#include "default/pipeline/default_sdk_parser.h"
#include "default/types/calibration_file_names.h"
#include "default/types/lidar_type_configuration.h"
#include "tests/default_entry/scripted_runtime.h"
#include "tests/support/test_environment.h"

extern "C" void regist_classes();

namespace tarvo::skarnvisor::test {
namespace {

/// The render buffer of a family, configured for a type as the loader does it.
struct Configured {
  Configured(LidarFamily family, const std::string &type) {
    regist_classes();
    for (const FamilyRow &row : familyTable)
      if (row.family == family)
        parser.reset(qobject_cast<DefaultSDKParser *>(
            Registration::create(QStringLiteral("tarvo::skarnvisor::") + row.parser, nullptr)));
    buffer().setSource(holder.source.data());
    buffer().setLidarType(type);
    configureLidarType(lidarTypeChain(family), nullptr, buffer(), type, 6, *holder.source);
  }
  DefaultSDKFrameRenderBuffer &buffer() { return *parser->defaultSDKFrameBuffer(); }
  lidar::FrameDecodeParam decodeParams() { return holder.runtime->Params().snapshot(); }

  SourceHolder holder;
  std::unique_ptr<DefaultSDKParser> parser;
};

TEST(TypeTable, EveryNameInItMeansSomethingToTheFamily) {
  regist_classes();
  for (const FamilyRow &family : familyTable) {
    const LidarTypeChain &chain = lidarTypeChain(family.family);
    const std::unique_ptr<QObject> parser(
        Registration::create(QStringLiteral("tarvo::skarnvisor::") + family.parser, nullptr));
    auto &buffer = *qobject_cast<DefaultSDKParser *>(parser.get())->defaultSDKFrameBuffer();
    const auto checkCapabilities = [&](const std::vector<CapabilityChange> &changes) {
      for (const CapabilityChange &change : changes) {
        EXPECT_TRUE(buffer.setCapability(change.property, change.on)) << family.category << ' ' << change.property;
        EXPECT_EQ(buffer.property(std::string(change.property).c_str()), QVariant(change.on)) << change.property;
      }
    };
    checkCapabilities(chain.everyTypeFirst);
    for (const LidarTypeRow &row : chain.rows) {
      checkCapabilities(row.capabilities);
      for (const std::string_view title : row.colorModes) {
        buffer.addColorMode(std::string(title));
        EXPECT_TRUE(buffer.colorModeTitles().contains(QString::fromStdString(std::string(title)))) << title;
      }
      for (const std::string_view type : row.types) EXPECT_EQ(chain.find(type), &row) << type << " stands in two rows";
    }
    checkCapabilities(chain.everyTypeLast);
  }
}

TEST(TypeTable, ColumnsOfARowReachTheSpreadsheetAndEveryKrTypeEndsWithTheField) {
  struct Case {
    LidarFamily family;
    const char *type;
    int columnsBesideTheTwelve;
    QStringList colorModes;
  };
  const Case cases[] = {
      {LidarFamily::KR, "KR6_31_52", 2, {"GlareInD", "confidence0", "confidence1", "confidence2", "Field"}},
      {LidarFamily::KR,
       "NBQ_TU_410",
       7,
       {"RawIntensity", "Area", "Peak", "FrontCenterDistDiff", "FrontDistDiff", "Field"}},
      {LidarFamily::KR, "NB41X", 4, {"Field"}},
      {LidarFamily::KR, "NBQ_COLOR_V3", 4, {"Field"}},
      {LidarFamily::KR, "KR_OF_TOMORROW", 1, {"Field"}},
      {LidarFamily::Base, "VD8", 4, {"WeightFactor", "AziState", "EnvLight", "DirtyLevel"}},
      {LidarFamily::Base, "VD2", 1, {"DirtyDegree"}},
      {LidarFamily::Base, "HU_V11", 0, {"Echo"}},
      {LidarFamily::LM, "LM", 1, {"confidence0", "confidence1", "confidence2", "confidence3", "confidence4567"}},
  };
  for (const Case &c : cases) {
    Configured lidar(c.family, c.type);
    EXPECT_EQ(lidar.buffer().spreadSheetModel().columnCount(), 12 + c.columnsBesideTheTwelve) << c.type;
    EXPECT_EQ(lidar.buffer().colorModeTitles().mid(12), c.colorModes) << c.type;
  }
}

TEST(TypeTable, SetsScalesLabelsAndStartingValues) {
  Configured plain(LidarFamily::KR, "KR2");
  EXPECT_EQ(plain.holder.source->familyLabel, "KR2P");
  EXPECT_FALSE(plain.buffer().firetimesUseful());
  EXPECT_TRUE(plain.buffer().monitorViewUseful() && plain.buffer().faultmessageViewUsed());
  EXPECT_TRUE(plain.buffer().filterModel().offered(FilterSlot::Confidence0));
  EXPECT_FALSE(plain.buffer().filterModel().offered(FilterSlot::Confidence1));
  EXPECT_EQ(plain.buffer().rgbMax(), 256.0F);

  Configured peak(LidarFamily::KR, "NBW_PEAK_V8_C");
  EXPECT_TRUE(peak.buffer().firetimesUseful());
  EXPECT_TRUE(peak.buffer().rgbDualFocusScaleFlag());
  EXPECT_EQ(peak.buffer().rgbMax(), 255.0F);
  EXPECT_EQ(peak.buffer().rgbMaxLong(), 31.875F);

  Configured area(LidarFamily::KR, "COLOR_FLD_V6");
  EXPECT_EQ(area.buffer().areaMax(), 255.0F);
  EXPECT_EQ(area.buffer().areaRemapFullScale(), 255.0F);

  Configured blind(LidarFamily::KR, "KR5E_QD");
  EXPECT_FALSE(blind.buffer().useBlindChannels());
  EXPECT_FALSE(blind.buffer().settings().blindChannelCheck);

  Configured slow(LidarFamily::Base, "VD2");
  EXPECT_EQ(slow.buffer().frameSeconds(), 0.2);
  EXPECT_FALSE(slow.buffer().firetimesUseful());

  Configured echo(LidarFamily::Base, "HU_V8");
  EXPECT_EQ(echo.buffer().distanceCorrectionState(), 1);
  EXPECT_TRUE(echo.decodeParams().elevationFovFilter);

  Configured top(LidarFamily::KR, "NBW_TOP_V3_V4");
  EXPECT_FALSE(top.buffer().intensityMapFlag());
  EXPECT_FALSE(top.decodeParams().intensityMapping);

  EXPECT_TRUE(Configured(LidarFamily::KR, "NB41X").decodeParams().dcfCorrection);
  EXPECT_EQ(Configured(LidarFamily::FMCW, "FMCW_V3").buffer().glslType(), 1);
  EXPECT_EQ(Configured(LidarFamily::FMCW, "FMCW_V5").buffer().glslType(), 0);
  EXPECT_FALSE(Configured(LidarFamily::QS, "any").buffer().firetimesUseful());
  EXPECT_TRUE(Configured(LidarFamily::Base, "any").buffer().firetimesUseful());
}

TEST(TypeTable, TypesOfOneSpellingShareTheirDefaultFiles) {
  const QString root = "/home/user/Documents";
  const QString corrections = root + "/SkarnvisorDataFiles/correction/";
  const CalibrationFileNames shared = calibrationFileNames(
      {.spelling = "YF", .correctionExtension = "bin", .firetimes = true, .factoryFiretimes = true}, "YFP", root);
  EXPECT_EQ(shared.correction, corrections + "angle_correction/default_YF.bin");
  EXPECT_EQ(shared.firetimes, corrections + "firetime_correction/default_YF_firetimes.csv");
  EXPECT_EQ(shared.factoryFiretimes, corrections + "firetime_correction/YF_Firetime Correction File.csv");
}

TEST(TypeTable, NamesANonlinearMappingOnlyWhereTheTypeHasOne) {
  const QString folder = documentsFolder() + "/SkarnvisorDataFiles/correction/nonlinear_mapping";
  Configured top(LidarFamily::KR, "NBW_TOP_V3_V4");
  EXPECT_EQ(top.buffer().nonlinearMappingPath(), folder + "/default_nonlinear_mapping_nbw_top_v3_v4.csv");
  EXPECT_TRUE(QDir(folder).exists());
  EXPECT_TRUE(Configured(LidarFamily::KR, "NBQ_TU_410").buffer().nonlinearMappingPath().isEmpty());
  EXPECT_TRUE(Configured(LidarFamily::KR, "KR2").buffer().nonlinearMappingPath().isEmpty());
}

}  // namespace
}  // namespace tarvo::skarnvisor::test
