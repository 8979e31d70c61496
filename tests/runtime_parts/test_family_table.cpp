#include <gtest/gtest.h>

#include <string>
#include <utility>
#include <vector>

#include "contracts/runtime/ornika_loader.h"

namespace {

TEST(OrnikaLoader, CallsTheCallbackOfTheTypesFamilyWithTypeAndPort) {
  const std::vector<std::pair<std::string, std::string>> cases = {
      {"KR2", "KR"},      {"NB41X", "KR"},        {"KR8_19", "LM"},     {"NB41-6_20", "NB"},
      {"QSQ_V21", "QS"},  {"FMCW_V4", "FMCW"},    {"VD8", "default"},   {"", "default"},
      {"kr2", "default"}, {"FMCW_V5", "default"}, {"XNB41X", "default"}};
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
  tarvo::OrnikaLoader().parse("KR2", 1);  // a family without a callback
}

}  // namespace
