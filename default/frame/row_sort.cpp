#include "default/frame/row_sort.h"

#include <algorithm>
#include <utility>
#include <vector>

#include "default/frame/parallel_runs.h"

namespace tarvo::skarnvisor {

namespace {

constexpr unsigned widestDigit = 11;  ///< more buckets than this leave the first-level cache
constexpr std::size_t keyRun = 4096;  ///< rows whose keys a thread works out at once

/// The bits in which the keys differ, as a run from `low` on.
struct KeyBits {
  unsigned low = 0;
  unsigned width = 0;
};

KeyBits differingBits(std::span<const std::uint64_t> keys) {
  std::uint64_t differing = 0;
  for (const std::uint64_t key : keys) differing |= key ^ keys.front();
  if (differing == 0) return {};
  const auto low = static_cast<unsigned>(std::countr_zero(differing));
  return {low, static_cast<unsigned>(std::bit_width(differing)) - low};
}

template <typename Key>
struct Entry {
  Key key;
  std::uint32_t row;
};

/// Sorts digit by digit from the lowest. Each thread counts the digits of its share of the rows, so that it knows where
/// its own rows go in each bucket: behind those of the shares in front of it.
template <typename Key>
class DigitSort {
 public:
  DigitSort(tf::Executor &executor, std::span<std::uint32_t> rows, std::span<const std::uint64_t> keys, KeyBits bits)
      : m_executor(executor),
        m_digits((bits.width + widestDigit - 1) / widestDigit),
        m_digitWidth((bits.width + m_digits - 1) / m_digits),
        m_shares(std::max<std::size_t>(1, executor.num_workers())),
        m_shareLength((rows.size() + m_shares - 1) / m_shares),
        m_from(rows.size()),
        m_to(rows.size()),
        m_counts(m_shares << m_digitWidth) {
    eachShare([&](std::size_t begin, std::size_t end) {
      for (std::size_t i = begin; i < end; ++i) m_from[i] = {static_cast<Key>(keys[i] >> bits.low), rows[i]};
    });
  }

  void sortInto(std::span<std::uint32_t> rows) {
    for (unsigned digit = 0; digit < m_digits; ++digit) sortByDigit(digit * m_digitWidth);
    eachShare([&](std::size_t begin, std::size_t end) {
      for (std::size_t i = begin; i < end; ++i) rows[i] = m_from[i].row;
    });
  }

 private:
  template <typename Body>
  void eachShare(const Body &body) {
    parallelRuns(m_executor, m_from.size(), m_shareLength, body);
  }

  void sortByDigit(unsigned shift) {
    const std::size_t buckets = std::size_t{1} << m_digitWidth;
    const auto mask = static_cast<Key>(buckets - 1);
    std::fill(m_counts.begin(), m_counts.end(), 0U);
    eachShare([&](std::size_t begin, std::size_t end) {
      std::uint32_t *const counts = &m_counts[begin / m_shareLength * buckets];
      for (std::size_t i = begin; i < end; ++i) ++counts[m_from[i].key >> shift & mask];
    });
    std::uint32_t before = 0;
    for (std::size_t bucket = 0; bucket < buckets; ++bucket) {
      for (std::size_t share = 0; share < m_shares; ++share) {
        const std::uint32_t count = std::exchange(m_counts[share * buckets + bucket], before);
        before += count;
      }
    }
    eachShare([&](std::size_t begin, std::size_t end) {
      std::uint32_t *const places = &m_counts[begin / m_shareLength * buckets];
      for (std::size_t i = begin; i < end; ++i) m_to[places[m_from[i].key >> shift & mask]++] = m_from[i];
    });
    m_from.swap(m_to);
  }

  tf::Executor &m_executor;
  unsigned m_digits;
  unsigned m_digitWidth;
  std::size_t m_shares;
  std::size_t m_shareLength;
  std::vector<Entry<Key>> m_from;
  std::vector<Entry<Key>> m_to;
  std::vector<std::uint32_t> m_counts;  ///< buckets of share 0, then of share 1, ...
};

}  // namespace

void sortRows(tf::Executor &executor, std::span<std::uint32_t> rows, std::span<const std::uint64_t> keys) {
  if (rows.size() < 2) return;
  const KeyBits bits = differingBits(keys.first(rows.size()));
  if (bits.width == 0) return;
  if (bits.width <= 32)
    DigitSort<std::uint32_t>(executor, rows, keys, bits).sortInto(rows);
  else
    DigitSort<std::uint64_t>(executor, rows, keys, bits).sortInto(rows);
}

void sortRows(tf::Executor &executor, std::span<std::uint32_t> rows, int order, const RowKeys &keys,
              const RowBefore &before) {
  if (order != 1 && order != -1) return;
  if (keys) {
    std::vector<std::uint64_t> worked(rows.size());
    parallelRuns(executor, rows.size(), keyRun, [&](std::size_t begin, std::size_t end) {
      const auto run = std::span(worked).subspan(begin, end - begin);
      keys(rows.subspan(begin, end - begin), run.data());
      if (order < 0) std::ranges::transform(run, run.begin(), reversedSortKey);
    });
    sortRows(executor, rows, worked);
  } else if (before) {
    std::ranges::stable_sort(
        rows, [&](std::uint32_t a, std::uint32_t b) { return before(static_cast<int>(a), static_cast<int>(b)); });
  }
}

}  // namespace tarvo::skarnvisor
