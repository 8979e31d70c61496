#include <gtest/gtest.h>

#include "tests/app/program_fixture.h"

namespace tarvo::skarnvisor::test {
namespace {

TEST(ProgramTypes, TheTableAndOneRowOfItArePrinted) {
  const ProgramResult table = skarnvisor({"types"});
  EXPECT_EQ(table.exitCode, 0) << table.err.toStdString();
  const QStringList lines = table.out.split('\n', Qt::SkipEmptyParts);
  EXPECT_EQ(lines.value(0).simplified(), "TYPE FAMILY LABEL");
  EXPECT_TRUE(lines.filter("KR2 ").value(0).simplified() == "KR2 KR KR2P") << table.out.toStdString();
  EXPECT_EQ(lines.filter("TRL-").size(), 2);

  const ProgramResult row = skarnvisor({"types", "NBQ_TU_830"});
  EXPECT_EQ(row.exitCode, 0);
  EXPECT_EQ(row.value("family"), "KR");
  EXPECT_TRUE(row.value("capabilities").contains("energyDeductFilterFlag"));
  EXPECT_EQ(row.value("switched off"), "firetimesUseful");
  EXPECT_EQ(row.value("filters"), "nbqVtAreaFilterFlag nbqVtStepIdFilterFlag");
  EXPECT_TRUE(row.value("columns").endsWith("Field"));
  EXPECT_TRUE(row.out.contains("default_nonlinear_mapping_nbq_tu_830.csv"));
}

TEST(ProgramTypes, ANameIsTakenByTheLetter) {
  expectRefusals({"types"}, {{{"kr2"}, {"\"kr2\""}}, {{"KR2 "}, {"\"KR2 \""}}, {{"KR"}, {"\"KR\""}}});
}

}  // namespace
}  // namespace tarvo::skarnvisor::test
