#include "app/window/theme.h"

#include <array>

namespace tarvo::skarnvisor::app {
namespace {

struct Row {
  QPalette::ColorRole role;
  QRgb dark;
  QRgb light;
};

constexpr std::array<Row, 16> rows{{
    {QPalette::Window, 0xff1b2026, 0xfff0f2f4},
    {QPalette::WindowText, 0xffd6dce2, 0xff1d242b},
    {QPalette::Base, 0xff14181d, 0xffffffff},
    {QPalette::AlternateBase, 0xff20262d, 0xfff4f6f8},
    {QPalette::Text, 0xffd6dce2, 0xff1d242b},
    {QPalette::Button, 0xff2a3139, 0xffe1e5e9},
    {QPalette::ButtonText, 0xffd6dce2, 0xff1d242b},
    {QPalette::BrightText, 0xffffffff, 0xffffffff},
    {QPalette::Light, 0xff3a434d, 0xffffffff},
    {QPalette::Midlight, 0xff323a43, 0xffe8ebee},
    {QPalette::Mid, 0xff3a434d, 0xffc2c8ce},
    {QPalette::Dark, 0xff101317, 0xffa4acb4},
    {QPalette::ToolTipBase, 0xff2a3139, 0xff1d242b},
    {QPalette::ToolTipText, 0xffd6dce2, 0xfff0f2f4},
    {QPalette::Highlight, 0xff3d8bd9, 0xff2470b8},
    {QPalette::HighlightedText, 0xffffffff, 0xffffffff},
}};

}  // namespace

QPalette themePalette(bool dark) {
  QPalette palette;
  for (const Row &row : rows) palette.setColor(row.role, QColor(dark ? row.dark : row.light));
  for (const QPalette::ColorRole role : {QPalette::WindowText, QPalette::Text, QPalette::ButtonText})
    palette.setColor(QPalette::Disabled, role, dark ? QColor(0x6a, 0x73, 0x7c) : QColor(0x96, 0x9e, 0xa6));
  return palette;
}

}  // namespace tarvo::skarnvisor::app
