#include "default/point_files/readers/lzf.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <memory>
#include <random>
#include <string>
#include <vector>

namespace tarvo::skarnvisor {
namespace {

using Bytes = std::vector<std::uint8_t>;

struct Result {
  bool good = false;
  std::string text;    ///< the output block
  std::string report;  ///< what was printed
};

/// Both blocks are exactly as large as said, so that the sanitizers see every step past an end.
Result expand(const Bytes &input, std::size_t outputSize) {
  const std::unique_ptr<std::uint8_t[]> in(new std::uint8_t[input.size()]);
  std::copy(input.begin(), input.end(), in.get());
  const std::unique_ptr<std::uint8_t[]> out(new std::uint8_t[outputSize]());
  testing::internal::CaptureStdout();
  Result result;
  result.good = lzfDecompress(in.get(), static_cast<std::uint32_t>(input.size()), out.get(),
                              static_cast<std::uint32_t>(outputSize));
  std::fflush(stdout);
  result.report = testing::internal::GetCapturedStdout();
  result.text.assign(out.get(), out.get() + outputSize);
  return result;
}

TEST(Lzf, HandMadeStreamsExpand) {
  struct Case {
    const char *what;
    Bytes input;
    std::string text;
  };
  const Case cases[] = {
      {"nothing", {}, ""},
      {"one literal", {0, 'a'}, "a"},
      {"distance 1 repeats a byte", {0, 'a', 7 << 5, 1, 0}, "a" + std::string(10, 'a')},
      {"distance 2 repeats a pair", {1, 'a', 'b', 5 << 5, 1}, "ab" + std::string("abababa")},
      {"shortest reference", {2, 'a', 'b', 'c', 1 << 5, 2}, "abcabc"},
      {"distance 3, length 12", {2, 'a', 'b', 'c', 7 << 5, 3, 2}, "abcabcabcabcabc"},
      {"the longest reference", {0, 'z', 7 << 5, 255, 0}, std::string(265, 'z')},
      {"references up to the end", {3, 'a', 'b', 'c', 'd', 2 << 5, 3, 1 << 5, 0}, "abcdabcdddd"},
  };
  for (const Case &c : cases) {
    const Result result = expand(c.input, c.text.size());
    EXPECT_TRUE(result.good) << c.what << ": " << result.report;
    EXPECT_EQ(result.text, c.text) << c.what;
    EXPECT_EQ(result.report, "") << c.what;
  }
}

TEST(Lzf, FarReferencesUseTheHighBits) {
  std::mt19937 random(3);
  std::string text;
  Bytes input;
  for (int run = 0; run < 300; ++run) {
    input.push_back(31);
    for (int i = 0; i < 32; ++i) {
      input.push_back(static_cast<std::uint8_t>(random()));
      text += static_cast<char>(input.back());
    }
  }
  const std::size_t distance = 8192;
  const std::uint8_t high = 31;
  input.insert(input.end(), {static_cast<std::uint8_t>(7 << 5 | high), 100, 255});
  for (int i = 0; i < 109; ++i) text += text[text.size() - distance];
  const Result result = expand(input, text.size());
  EXPECT_TRUE(result.good) << result.report;
  EXPECT_EQ(result.text, text);
}

TEST(Lzf, EachFaultSaysWhatItIs) {
  struct Case {
    Bytes input;
    std::size_t outputSize;
    std::string report;
  };
  const Case cases[] = {
      {{2, 'a', 'b', 'c'}, 2, "错误: 字面量操作输出缓冲区溢出 (op=0, len=3, output_size=2)\n"},
      {{2, 'a', 'b'}, 8, "错误: 字面量操作输入缓冲区溢出 (ip=1, len=3, input_size=3)\n"},
      {{0, 'a', 1 << 5}, 8, "错误: 匹配操作输入缓冲区溢出 (ip=3, input_size=3)\n"},
      {{0, 'a', 7 << 5, 1}, 80, "错误: 扩展长度后输入缓冲区溢出 (ip=4, input_size=4)\n"},
      {{0, 'a', 7 << 5}, 80, "错误: 匹配操作输入缓冲区溢出 (ip=3, input_size=3)\n"},
      {{0, 'a', 1 << 5, 0}, 3, "错误: 匹配操作输出缓冲区溢出 (op=1, len=3, output_size=3)\n"},
      {{0, 'a'}, 2, "解压失败: 输出大小不匹配 (实际=1, 期望=2)\n"},
      {{}, 1, "解压失败: 输出大小不匹配 (实际=0, 期望=1)\n"},
  };
  for (const Case &c : cases) {
    const Result result = expand(c.input, c.outputSize);
    EXPECT_FALSE(result.good);
    EXPECT_EQ(result.report, c.report);
  }
  const Result before = expand({0, 'a', 1 << 5, 1}, 8);
  EXPECT_FALSE(before.good);
  EXPECT_EQ(before.report.rfind("错误: 无效的引用位置 (ref=0x", 0), 0U) << before.report;
}

TEST(Lzf, NoiseNeverReachesPastTheBlocks) {
  std::mt19937 random(11);
  for (int round = 0; round < 2000; ++round) {
    Bytes input(random() % 40);
    for (auto &byte : input) byte = static_cast<std::uint8_t>(random() % 3 == 0 ? random() : random() % 40);
    const std::unique_ptr<std::uint8_t[]> in(new std::uint8_t[input.size()]);
    std::copy(input.begin(), input.end(), in.get());
    const std::size_t room = random() % 300;
    const std::unique_ptr<std::uint8_t[]> out(new std::uint8_t[room + 1]);
    out[room] = 0x5a;
    testing::internal::CaptureStdout();
    static_cast<void>(
        lzfDecompress(in.get(), static_cast<std::uint32_t>(input.size()), out.get(), static_cast<std::uint32_t>(room)));
    testing::internal::GetCapturedStdout();
    ASSERT_EQ(out[room], 0x5a);
  }
}

}  // namespace
}  // namespace tarvo::skarnvisor
