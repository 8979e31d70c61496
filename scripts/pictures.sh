#!/usr/bin/env bash
# Takes the manual's pictures from the running program and puts them under docs/pictures.
set -euo pipefail
cd "$(dirname "$0")/.."
scripts/build.sh ci test_window skarnvisor_default skarnvisor-sim
mkdir -p docs/pictures
SKARNVISOR_PICTURES=$PWD/docs/pictures build/ci/bin/test_window --gtest_filter='ManualPictures.*' --gtest_brief=1
ls -l docs/pictures
