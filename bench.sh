#!/usr/bin/env bash
# Builds a release and prints one line a measure: name value unit floor ratio (ratio = floor time / our time; 1 = at the
# floor), then the working set. ./bench.sh [filter] takes the measures whose name holds the filter.
set -euo pipefail
cd "$(dirname "$0")"
scripts/setup.sh
scripts/build.sh release skarnvisor-bench
exec build/release/bin/skarnvisor-bench "$@"
