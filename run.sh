#!/usr/bin/env bash
# Installs what is missing, builds a release, makes the sample capture if there is none, and opens it: in a window where
# there is a display, as pictures and a summary under out/ where there is none.
#   ./run.sh [CAPTURE] [options of the viewer]
#   ./run.sh --pictures    takes the pictures of docs/manual.md anew
set -euo pipefail
cd "$(dirname "$0")"
scripts/setup.sh
if [ "${1:-}" = --pictures ]; then
  exec scripts/pictures.sh
fi
scripts/build.sh release
bin=build/release/bin

sample=samples/street.pcap
capture=${1:-$sample}
[ $# -gt 0 ] && shift
if [ "$capture" = "$sample" ] && [ ! -s "$sample" ]; then
  mkdir -p samples
  echo "Writing the sample capture $sample ..."
  "$bin/skarnvisor-sim" --scene street --seconds 10 --rate 10 --telemetry --faults --imu --calibration inside --out "$sample"
fi

if [ -n "${DISPLAY:-}${WAYLAND_DISPLAY:-}" ]; then
  exec "$bin/skarnvisor" view "$capture" "$@"
fi
mkdir -p out
rm -f out/frame-*.png out/summary.txt
"$bin/skarnvisor" play "$capture" --pictures out --count 5 --summary out/summary.txt "$@"
echo
cat out/summary.txt
echo
echo "Pictures:"
ls out/frame-*.png
