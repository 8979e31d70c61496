#include "default/point_files/readers/lzf.h"

#include <cstddef>
#include <cstdio>
#include <cstring>

namespace tarvo::skarnvisor {

namespace {

constexpr unsigned literalLimit = 32;      // a control byte below it counts literals
constexpr unsigned extendedLength = 7;     // a length field that the next byte adds to
constexpr unsigned shortestReference = 2;  // added to every length field
constexpr std::size_t copySlack = 16;      // short references may write a full step of this many bytes

// Copies forward. Where source and target overlap, the bytes just written are read again, which repeats the pattern.
inline void copyReference(std::uint8_t *target, const std::uint8_t *source, std::size_t length, std::size_t room) {
  const std::size_t distance = static_cast<std::size_t>(target - source);
  if (distance >= copySlack && length <= copySlack && room >= copySlack) {
    std::memcpy(target, source, copySlack);
    return;
  }
  if (distance >= length) {
    std::memcpy(target, source, length);
    return;
  }
  if (distance == 1) {
    std::memset(target, *source, length);
    return;
  }
  for (std::size_t i = 0; i < length; ++i) target[i] = source[i];
}

inline void copyLiterals(std::uint8_t *target, const std::uint8_t *source, std::size_t length, std::size_t room,
                         std::size_t left) {
  if (room >= literalLimit && left >= literalLimit)
    std::memcpy(target, source,
                literalLimit);  // the longest run: one fixed copy is quicker than one of the right length
  else
    std::memcpy(target, source, length);
}

}  // namespace

// One loop over control bytes, kept whole: its state is the two positions, and every check belongs to the byte just
// read.
bool lzfDecompress(const std::uint8_t *input, std::uint32_t inputSize, std::uint8_t *output, std::uint32_t outputSize) {
  std::size_t ip = 0;
  std::size_t op = 0;
  while (ip < inputSize) {
    const unsigned control = input[ip++];
    if (control < literalLimit) {
      const unsigned length = control + 1;
      if (op + length > outputSize) {
        std::printf("错误: 字面量操作输出缓冲区溢出 (op=%zu, len=%u, output_size=%u)\n", op, length, outputSize);
        return false;
      }
      if (ip + length > inputSize) {
        std::printf("错误: 字面量操作输入缓冲区溢出 (ip=%zu, len=%u, input_size=%u)\n", ip, length, inputSize);
        return false;
      }
      copyLiterals(output + op, input + ip, length, outputSize - op, inputSize - ip);
      ip += length;
      op += length;
      continue;
    }
    unsigned length = control >> 5;
    if (ip >= inputSize) {
      std::printf("错误: 匹配操作输入缓冲区溢出 (ip=%zu, input_size=%u)\n", ip, inputSize);
      return false;
    }
    if (length == extendedLength) {
      length += input[ip++];
      if (ip >= inputSize) {
        std::printf("错误: 扩展长度后输入缓冲区溢出 (ip=%zu, input_size=%u)\n", ip, inputSize);
        return false;
      }
    }
    length += shortestReference;
    const std::size_t distance = (static_cast<std::size_t>(control & 31) << 8) + input[ip++] + 1;
    if (op + length > outputSize) {
      std::printf("错误: 匹配操作输出缓冲区溢出 (op=%zu, len=%u, output_size=%u)\n", op, length, outputSize);
      return false;
    }
    if (distance > op) {
      // The address is only printed; it is worked out as a number, since no pointer may stand before the block.
      const auto reference = reinterpret_cast<std::uintptr_t>(output) + op - distance;
      std::printf("错误: 无效的引用位置 (ref=%p, output_start=%p)\n",
                  reinterpret_cast<void *>(reference),  // NOLINT(performance-no-int-to-ptr)
                  static_cast<void *>(output));
      return false;
    }
    copyReference(output + op, output + op - distance, length, outputSize - op);
    op += length;
  }
  if (op != outputSize) {
    std::printf("解压失败: 输出大小不匹配 (实际=%zu, 期望=%u)\n", op, outputSize);
    return false;
  }
  return true;
}

}  // namespace tarvo::skarnvisor
