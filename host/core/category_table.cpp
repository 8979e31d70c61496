#include "host/core/category_table.h"

#include <array>
#include <cstring>

namespace tarvo::skarnvisor {
namespace {

constexpr const char *classPrefix = "tarvo::skarnvisor::";

struct CategoryRow {
  const char *category;
  const char *producer;
  const char *parser;
  const char *clipLoader;
  ClipRefresh refresh = ClipRefresh::Repeated;
};

constexpr std::array categoryRows{
    CategoryRow{"DefaultSDKCategory", "DefaultSDKProducer", "DefaultSDKParser", "DefaultSDKNetLoader"},
    CategoryRow{"DefaultKRCategory", "DefaultKRProducer", "DefaultKRParser", "DefaultSDKNetLoader"},
    CategoryRow{"DefaultLMCategory", "DefaultLMProducer", "DefaultLMParser", "DefaultSDKNetLoader"},
    CategoryRow{"DefaultQSCategory", "DefaultSDKProducer", "DefaultQSParser", "DefaultSDKNetLoader"},
    CategoryRow{"DefaultFMCWCategory", "DefaultSDKProducer", "DefaultFMCWParser", "DefaultSDKNetLoader"},
    CategoryRow{"DefaultNBCategory", "DefaultSDKProducer", "DefaultNBParser", "DefaultSDKNetLoader"},
    CategoryRow{"DefaultPcdCategory", "DefaultPcdProducer", "DefaultPcdParser", "DefaultPcdFileLoader",
                ClipRefresh::Once},
};

/// A parser for keys (a lidar type and more) with a prefix. It is stored under the name of the row's own parser, which
/// is what the loader looks up, and derives from that class.
struct ParserExchange {
  const char *category;
  const char *keyPrefix;
  const char *parser;
};

constexpr std::array parserExchanges{
    ParserExchange{"DefaultSDKCategory", "VDG", "DefaultVDGParser"},
};

const CategoryRow *findRow(const QString &category) {
  for (const CategoryRow &row : categoryRows) {
    if (category == QLatin1String(row.category)) return &row;
  }
  return nullptr;
}

const char *parserFor(const CategoryRow &row, const QString &key) {
  for (const ParserExchange &exchange : parserExchanges) {
    if (std::strcmp(exchange.category, row.category) == 0 && key.startsWith(QLatin1String(exchange.keyPrefix))) {
      return exchange.parser;
    }
  }
  return row.parser;
}

FunctorRow functorRow(const char *className, const char *nameOf) {
  return {QLatin1String(classPrefix) + QLatin1String(className), QLatin1String(classPrefix) + QLatin1String(nameOf)};
}

}  // namespace

CategoryPlan categoryPlan(const QString &category, const QString &key) {
  const CategoryRow *const row = findRow(category);
  if (row == nullptr) return {};
  return {{functorRow(row->clipLoader, row->clipLoader), functorRow(row->producer, row->producer),
           functorRow(parserFor(*row, key), row->parser)},
          row->refresh};
}

ClipRefresh clipRefreshOf(const QString &category) {
  const CategoryRow *const row = findRow(category);
  return row == nullptr ? ClipRefresh::Repeated : row->refresh;
}

}  // namespace tarvo::skarnvisor
