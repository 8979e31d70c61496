#include "default/frame/row_sort.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <numeric>
#include <random>
#include <taskflow/taskflow.hpp>
#include <vector>

namespace tarvo::skarnvisor {
namespace {

constexpr double none = std::numeric_limits<double>::quiet_NaN();
constexpr double endless = std::numeric_limits<double>::infinity();

/// The order of a table column as it reads: numbers by size, what is none behind them.
bool before(double a, double b, int order) {
  if (std::isnan(a) || std::isnan(b)) return std::isnan(b) && !std::isnan(a);
  return order > 0 ? a < b : a > b;
}

void expectSorted(tf::Executor &executor, const std::vector<double> &values, int order) {
  std::vector<std::uint32_t> rows(values.size());
  std::iota(rows.rbegin(), rows.rend(), 0U);  // backwards, so that ties show whether the order is kept
  std::vector<std::uint32_t> expected = rows;
  std::stable_sort(expected.begin(), expected.end(),
                   [&](std::uint32_t a, std::uint32_t b) { return before(values[a], values[b], order); });
  const RowBefore byFunction = [&](int a, int b) {
    return before(values[static_cast<std::size_t>(a)], values[static_cast<std::size_t>(b)], order);
  };
  const RowKeys keys = [&](std::span<const std::uint32_t> run, std::uint64_t *out) {
    for (const std::uint32_t row : run) *out++ = sortKey(values[row]);
  };
  std::vector<std::uint32_t> sorted = rows;
  sortRows(executor, sorted, order, keys, {});
  EXPECT_EQ(sorted, expected) << values.size() << " rows by keys, order " << order;
  sortRows(executor, rows, order, {}, byFunction);
  EXPECT_EQ(rows, expected) << values.size() << " rows by the function, order " << order;
}

TEST(RowSort, RowsOfAnySizeAndRangeComeInTheOrderOfTheirValues) {
  tf::Executor executor(2);
  std::mt19937 random(11);
  const auto many = [&random](std::size_t count, auto make) {
    std::vector<double> values(count);
    for (double &value : values) value = make();
    return values;
  };
  std::uniform_real_distribution<double> wide(-1e300, 1e300);
  const std::vector<double> cases[] = {
      {},
      {3.0},
      {2.0, 2.0, 2.0},
      {none, 1.0, -endless, none, endless, -1.0, 0.0, -0.0, 1e-310},
      many(20'000, [&] { return static_cast<float>(random() % 20'000) * 0.01F; }),
      many(20'000, [&] { return static_cast<double>(random() % 3); }),
      many(20'000, [&] { return random() % 50 == 0 ? none : wide(random); }),
      many(9'001, [&] { return static_cast<double>(random()); }),
  };
  for (const std::vector<double> &values : cases)
    for (const int order : {1, -1}) expectSorted(executor, values, order);

  std::vector<std::uint32_t> rows{2, 0, 1};
  sortRows(executor, rows, 0, {}, [](int, int) { return true; });
  EXPECT_EQ(rows, (std::vector<std::uint32_t>{2, 0, 1})) << "no order is asked for";
}

}  // namespace
}  // namespace tarvo::skarnvisor
