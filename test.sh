#!/usr/bin/env bash
# Installs what is missing, builds, runs every test.
#   ./test.sh              release code, all tests
#   ./test.sh --sanitize   the same under the address and undefined-behaviour sanitizers, for all but the viewer
#   ./test.sh --threads    under the thread sanitizer, for all but the viewer
# Further words go to ctest, for instance: ./test.sh -L host
set -euo pipefail
cd "$(dirname "$0")"
preset=ci
case "${1:-}" in
  --sanitize) preset=asan-ubsan; shift ;;
  --threads) preset=tsan; shift ;;
esac
scripts/setup.sh
scripts/build.sh "$preset"
ctest --preset "$preset" "$@"
