#include "libtarvo/UdpParser/energy_deduct_data_loaders.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <locale>
#include <numeric>

#include "libtarvo/UdpParser/text_table.h"

namespace tarvo::lidar {
namespace {

// "true reflectivity" in Chinese, GBK code, as the tables of one bench write their header.
constexpr std::string_view trueReflectivityGbk = "\xD5\xE6\xCA\xB5\xB7\xB4\xC9\xE4\xC2\xCA";

std::vector<std::string_view> tableFields(std::string_view line) {
  std::vector<std::string_view> fields = splitAtCommas(line);
  for (std::string_view &field : fields) field = withoutLeading(field, " \t");
  return fields;
}

int findColumn(const std::vector<std::string_view> &header, std::string_view part) {
  const auto found = std::find_if(header.begin(), header.end(), [part](std::string_view field) {
    return field.find(part) != std::string_view::npos;
  });
  return found == header.end() ? -1 : static_cast<int>(found - header.begin());
}

/// A table file: its header, then rows that have at least the fields asked for.
class Table {
 public:
  explicit Table(const std::string &path) : text_(readDataFile(path)) {
    if (!text_) return;
    rest_ = *text_;
    std::string_view line;
    valid_ = takeLine(rest_, line);
    if (valid_) header_ = tableFields(withoutByteOrderMark(line));
  }

  [[nodiscard]] bool isValid() const { return valid_; }
  [[nodiscard]] const std::vector<std::string_view> &header() const { return header_; }

  /// Calls `take(fields)` for each row that has field `lastField`.
  template <typename Take>
  void eachRow(int lastField, Take &&take) {
    std::string_view line;
    while (takeLine(rest_, line)) {
      if (line.empty()) continue;
      const std::vector<std::string_view> fields = tableFields(line);
      if (static_cast<int>(fields.size()) > lastField) take(fields);
    }
  }

 private:
  std::optional<std::string> text_;
  std::string_view rest_;
  std::vector<std::string_view> header_;
  bool valid_ = false;
};

/// Reads rows of raw and mapped value, `take(raw, mapped)` says whether the row counts; true when any does.
template <typename Mapped, typename Take>
bool readMapping(Table &table, int rawColumn, int mappedColumn, Take &&take) {
  bool any = false;
  table.eachRow(std::max(rawColumn, mappedColumn), [&](const std::vector<std::string_view> &fields) {
    const auto raw = leadingNumber<int>(fields[static_cast<std::size_t>(rawColumn)]);
    const auto mapped = leadingNumber<Mapped>(fields[static_cast<std::size_t>(mappedColumn)]);
    if (raw && mapped && take(*raw, *mapped)) any = true;
  });
  return any;
}

void defaultReflectivityCurve(float (&lut)[64]) {
  constexpr std::array<float, 10> begin = {0.0F, 0.015625F, 0.03125F, 0.0625F, 0.125F, 0.25F, 0.5F, 1.0F, 4.0F, 7.0F};
  std::iota(std::begin(lut), std::end(lut), 0.0F);
  std::copy(begin.begin(), begin.end(), std::begin(lut));
}

/// What a kernel file said so far.
struct KernelText {
  int rows = 0;
  int cols = 0;
  bool dataSeen = false;
  std::vector<float> &values;

  /// One line that is neither empty nor a comment; false: a cell is no number.
  bool take(const std::vector<std::string_view> &fields) {
    std::string tag(fields[0]);
    std::transform(tag.begin(), tag.end(), tag.begin(),
                   [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
    if (fields.size() > 1 && (tag == "rows" || tag == "cols")) return takeSize(tag == "rows" ? rows : cols, fields[1]);
    const bool sizes = !dataSeen && rows < 1 && cols < 1 && fields.size() > 1;
    dataSeen = true;
    if (sizes) return takeSize(rows, fields[0]) && takeSize(cols, fields[1]);
    for (const std::string_view field : fields) {
      if (field.empty()) continue;
      const auto value = leadingNumber<float>(field);
      if (!value) return false;
      values.push_back(*value);
    }
    return true;
  }

  /// Works out the shape from the sizes given and the count of values; false: they don't fit.
  bool settle() {
    const auto count = static_cast<std::int64_t>(values.size());
    if (rows > 0 && cols > 0 && static_cast<std::int64_t>(rows) * cols == count) return true;
    if (count == 0) return false;
    if (cols < 1) {
      const auto side = static_cast<std::int64_t>(std::sqrt(static_cast<double>(count)));
      if (side * side != count) return false;
      rows = cols = static_cast<int>(side);
      return side > 0;
    }
    if (count % cols != 0) return false;
    rows = static_cast<int>(count / cols);
    return rows >= 1;
  }

 private:
  static bool takeSize(int &size, std::string_view field) {
    const auto number = leadingNumber<int>(field);
    if (number) size = *number;
    return number.has_value();
  }
};

}  // namespace

bool loadEnergyDistCoefCsv(const std::string &path, std::vector<float> &out) {
  Table table(path);
  if (!table.isValid()) return false;
  int column = findColumn(table.header(), "dist_coef");
  if (column < 0) column = table.header().size() >= 2 ? 1 : 0;
  out.clear();
  table.eachRow(column, [&](const std::vector<std::string_view> &fields) {
    if (const auto value = leadingNumber<float>(fields[static_cast<std::size_t>(column)])) out.push_back(*value);
  });
  return !out.empty();
}

bool loadReflectivityByteLut(const std::string &path, std::uint8_t (&lut)[256], bool &loaded) {
  loaded = false;
  std::iota(std::begin(lut), std::end(lut), std::uint8_t{0});
  Table table(path);
  if (!table.isValid()) return false;
  const int raw = findColumn(table.header(), "reflectivity_raw");
  const int mapped = findColumn(table.header(), "reflectivity_nonlinear_mapped");
  if (raw < 0 || mapped < 0) return false;
  loaded = readMapping<int>(table, raw, mapped, [&](int from, int to) {
    if (from < 0 || from > 255) return false;
    lut[from] = static_cast<std::uint8_t>(std::clamp(to, 0, 255));
    return true;
  });
  return loaded;
}

bool loadReflectivityFloatLut(const std::string &path, float (&lut)[64], bool &loaded) {
  loaded = false;
  defaultReflectivityCurve(lut);
  Table table(path);
  if (!table.isValid()) return false;
  const int raw = std::max(0, findColumn(table.header(), "reflectivity_raw"));
  int mapped = findColumn(table.header(), "reflectivity_nonlinear");
  if (mapped < 0) mapped = findColumn(table.header(), trueReflectivityGbk);
  if (mapped < 0) mapped = raw == 0 ? 1 : 0;
  loaded = readMapping<double>(table, raw, mapped, [&](int from, double to) {
    if (from < 0 || from > 63) return false;
    lut[from] = static_cast<float>(to);
    return true;
  });
  return loaded;
}

bool loadEnergyKernelCsv(const std::string &path, int &rows, int &cols, std::vector<float> &values) {
  rows = cols = 0;
  values.clear();
  const std::optional<std::string> text = readDataFile(path);
  if (!text) return false;
  KernelText kernel{.values = values};
  std::string_view rest = *text;
  std::string_view line;
  bool numbers = true;
  while (numbers && takeLine(rest, line)) {
    line = trimmed(withoutByteOrderMark(line));
    if (line.empty() || line.front() == '#') continue;
    std::vector<std::string_view> fields = splitAtCommas(line);
    for (std::string_view &field : fields) field = trimmed(field);
    numbers = kernel.take(fields);
  }
  const bool fits = numbers && kernel.settle();
  rows = kernel.rows;
  cols = kernel.cols;
  return fits;
}

bool saveEnergyKernelCsv(const std::string &path, int rows, int cols, const std::vector<float> &values) {
  if (rows < 1 || cols < 1 || static_cast<std::uint64_t>(rows) * static_cast<std::uint64_t>(cols) != values.size())
    return false;
  std::ofstream out(path, std::ios::trunc);
  out.imbue(std::locale::classic());
  out << "# Energy deduct convolution kernel (row-major)\nrows," << rows << "\ncols," << cols << '\n';
  for (std::size_t i = 0; i < values.size(); ++i)
    out << values[i] << ((i + 1) % static_cast<std::size_t>(cols) == 0 ? '\n' : ',');
  out.flush();
  return out.good();
}

void defaultEnergyKernel(int &rows, int &cols, std::vector<float> &values) {
  constexpr int side = 17;
  constexpr int centre = side / 2;
  constexpr int reach = 3;  // columns of the stripe on each side of the centre
  constexpr float edge = -0.0002F;
  // By distance from the centre row, 0 to 8.
  constexpr std::array<float, centre + 1> inner = {-0.008F,  -0.008F,  -0.008F,  -0.001F, -0.001F,
                                                   -0.0006F, -0.0006F, -0.0003F, -0.0003F};
  rows = cols = side;
  values.assign(static_cast<std::size_t>(side) * side, 0.0F);
  for (int row = 0; row < side; ++row) {
    float *const line = values.data() + static_cast<std::ptrdiff_t>(row) * side;
    for (int column = centre - reach; column <= centre + reach; ++column)
      line[column] =
          std::abs(column - centre) == reach ? edge : inner[static_cast<std::size_t>(std::abs(row - centre))];
  }
  values[static_cast<std::size_t>(centre) * side + centre] = 1.0F;
}

}  // namespace tarvo::lidar
