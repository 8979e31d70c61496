#!/usr/bin/env bash
# Configures and builds one preset: scripts/build.sh PRESET [TARGET...]. Quiet when all is well; the whole log otherwise.
set -euo pipefail
cd "$(dirname "$0")/.."
preset=$1
shift
mkdir -p "build/$preset"
log=build/$preset/build.log
targets=()
for target in "$@"; do targets+=(--target "$target"); done
echo "Building ($preset) ..."
if ! { cmake --preset "$preset" && cmake --build --preset "$preset" -j "$(nproc)" "${targets[@]}"; } >"$log" 2>&1; then
  cat "$log" >&2
  exit 1
fi
