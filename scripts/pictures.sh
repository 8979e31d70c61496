#!/usr/bin/env bash
# Takes the manual's pictures from the running program and puts them under docs/pictures.
set -euo pipefail
cd "$(dirname "$0")/.."
scripts/build.sh ci skarnvisor-drive
mkdir -p docs/pictures
build/ci/bin/skarnvisor-drive pictures docs/pictures
ls -l docs/pictures
