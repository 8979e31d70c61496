#include "default/telemetry/fault_messages.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace tarvo::skarnvisor::test {
namespace {

std::vector<std::string> shown(const std::vector<unsigned char> &packets) {
  std::vector<std::string> rows;
  for (const NamedValue &row : faultRows(packets.data(), static_cast<int>(packets.size() / 6)))
    rows.push_back((row.name + '=' + row.value.toString()).toStdString());
  return rows;
}

TEST(FaultMessages, EachFieldShowsItsDistinctValuesInAscendingOrder) {
  EXPECT_EQ(shown({2, 0xF8, 0xF7, 0x02, 0x01, 1,    // state 7, type 3, 15 codes, code 0x0102
                   1, 0x47, 0x0F, 0x10, 0x00, 255,  // state 2, type 0, 0 codes, code 0x0010
                   9, 0x10, 0x90, 0xAD, 0xDE, 0,    // not valid
                   2, 0xF8, 0xF7, 0x02, 0x01, 1,    // the first again
                   1, 0x47, 0x0F, 0xCD, 0xAB, 1}),  // code 0xabcd
            (std::vector<std::string>{"Fault Message Version=1", "Fault Message Version=2", "Lidar State=2",
                                      "Lidar State=7", "Fault Code Type=0", "Fault Code Type=3",
                                      "Total Fault Code Num=0", "Total Fault Code Num=15", "Fault Code 1=0x0010",
                                      "Fault Code 2=0x0102", "Fault Code 3=0xabcd"}));
  EXPECT_TRUE(shown({1, 2, 3, 4, 5, 0}).empty());
  EXPECT_TRUE(shown({}).empty());
}

TEST(FaultMessages, AStormOfPacketsShowsTheFirstThousandCodes) {
  std::vector<unsigned char> packets;
  for (unsigned i = 0; i < 300'000; ++i) {
    const unsigned code = (i * 40'503) & 0xFFFF;
    packets.insert(packets.end(), {static_cast<unsigned char>(i), static_cast<unsigned char>(i >> 3), 0,
                                   static_cast<unsigned char>(code), static_cast<unsigned char>(code >> 8), 1});
  }
  const auto rows = faultRows(packets.data(), 300'000);
  EXPECT_EQ(rows.size(), 256U + 8U + 4U + 1U + 1000U);
  EXPECT_EQ(rows.back().name, "Fault Code 1000");
  EXPECT_EQ(rows.back().value.toString().size(), 6);
}

}  // namespace
}  // namespace tarvo::skarnvisor::test
