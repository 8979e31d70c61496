#!/usr/bin/env bash
# Reads the sources with clang-tidy and cppcheck: ./scripts/tidy.sh [FOLDER...], all of them without a folder. Needs a
# build folder that has been built (the generated headers), and the Debian packages clang-tidy and cppcheck.
set -euo pipefail
cd "$(dirname "$0")/.."

for tool in clang-tidy cppcheck; do
  command -v "$tool" >/dev/null || { echo "tidy: $tool is missing; its Debian package has the same name" >&2; exit 1; }
done
commands=$(ls -t build/*/compile_commands.json 2>/dev/null | grep -v '^build/tidy/' | head -n 1 || true)
[ -n "$commands" ] || { echo "tidy: build the tree first (cmake --preset dev && cmake --build --preset dev)" >&2; exit 1; }

# The commands without what only the other compiler understands: its precompiled headers and its warnings.
mkdir -p build/tidy
sed -E 's# -include [^ ]*cmake_pch\.hxx##g; s/ -Winvalid-pch//g; s/ -W(no-)?error(=[a-z-]+)?//g' "$commands" \
  > build/tidy/compile_commands.json

folders=("$@")
[ ${#folders[@]} -gt 0 ] || folders=(app contracts default host libtarvo runtime tools)
status=0
git ls-files -- "${folders[@]}" | grep '\.cpp$' |
  nice -n 19 xargs -P "$(nproc)" -n 2 clang-tidy -p build/tidy --quiet --warnings-as-errors='*' 2>/dev/null || status=1
nice -n 19 cppcheck --quiet --enable=warning,performance,portability --std=c++20 --language=c++ --library=qt -I . \
  --suppressions-list=scripts/cppcheck-suppressions.txt --error-exitcode=1 "${folders[@]}" || status=1
exit $status
