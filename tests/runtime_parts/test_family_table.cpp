#include <gtest/gtest.h>

#include <string>
#include <utility>
#include <vector>

#include "contracts/runtime/ornika_loader.h"

namespace {

TEST(OrnikaLoader, CallsTheCallbackOfTheTypesFamilyWithTypeAndPort) {
  const std::vector<std::pair<std::string, std::string>> cases = {
      {"KR2", "KR"},
      {"KR6_5_14", "KR"},
      {"KR6_31_52", "KR"},
      {"KR5E_QD", "KR"},
      {"KR9", "KR"},
      {"NB41X", "KR"},
      {"NBQ_TU_410", "KR"},
      {"NBQ_V5_33_830", "KR"},
      {"NBQ_COLOR_V3", "KR"},
      {"NBW_TOP_V3_V4", "KR"},
      {"NBW_PEAK_V8_C", "KR"},
      {"NBW_TOP_COLOR_V6", "KR"},
      {"COLOR_FLD_V11", "KR"},
      {"KR8_19", "LM"},
      {"KR8_37", "LM"},
      {"TRL-Newt", "LM"},
      {"TRL-KRS51", "LM"},
      {"LM", "LM"},
      {"LMQ", "LM"},
      {"LMQ-TX", "LM"},
      {"LMQ-350", "LM"},
      {"NB41-6_20", "NB"},
      {"NB41-6_23", "NB"},
      {"QSW", "QS"},
      {"QSQ_V21", "QS"},
      {"QS3T5W", "QS"},
      {"OrnikaQS4_4", "QS"},
      {"OrnikaQS5", "QS"},
      {"FMCW", "FMCW"},
      {"FMCW_V3", "FMCW"},
      {"FMCW_V4", "FMCW"},
      {"VD8", "default"},
      {"VD2", "default"},
      {"HU_V11", "default"},
      {"OrnikaZC8", "default"},
      {"WG9", "default"},
      {"OrnikaYF", "default"},
      {"VDG1", "default"},
      {"YFP", "default"},
      {"", "default"},
      {"kr2", "default"},
      {"FMCW_V5", "default"},
      {"XNB41X", "default"},
      {"Something", "default"},
  };
  std::vector<std::pair<std::string, std::string>> calls;
  tarvo::OrnikaLoader loader;
  const auto record = [&](const char *family) {
    return [&calls, family](const std::string &type, int port) {
      EXPECT_EQ(port, 2368);
      calls.emplace_back(type, family);
      return 0;
    };
  };
  loader.callbackDefault = record("default");
  loader.callbackOrnikaKR = record("KR");
  loader.callbackOrnikaLM = record("LM");
  loader.callbackOrnikaQS = record("QS");
  loader.callbackOrnikaFMCW = record("FMCW");
  loader.callbackOrnikaNB = record("NB");
  for (const auto &[type, family] : cases) loader.parse(type, 2368);
  EXPECT_EQ(calls, cases);
}

TEST(OrnikaLoader, SurvivesAFamilyWithoutACallback) {
  tarvo::OrnikaLoader loader;
  loader.parse("KR2", 1);
}

}  // namespace
