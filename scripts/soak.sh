#!/usr/bin/env bash
# scripts/soak.sh MINUTES: simulator and player as two processes on loopback, with loss, disorder, pauses and restarts
# of the sender, while the player's settings change ten times a second. Prints frames, loss and memory every ten
# seconds, and what the player counted at the end. BUILD names the build folder.
set -euo pipefail
cd "$(dirname "$0")/.."

minutes=${1:?usage: scripts/soak.sh MINUTES}
build=${BUILD:-build/release}
port=${PORT:-23682}
seconds=$((minutes * 60))
sender=

endSender() {
  [ -n "$sender" ] || return 0
  kill -CONT "$sender" 2>/dev/null || true
  kill "$sender" 2>/dev/null || true
  wait "$sender" 2>/dev/null || true
  sender=
}

# Sends, pauses and begins anew until the player has gone.
disturb() {
  trap 'endSender; exit 0' TERM INT
  local round=0
  while true; do
    "$build/bin/skarnvisor-sim" --stream "127.0.0.1:$port" --seconds 0 --channels 32 --columns 600 \
      --loss 0.01 --reorder 0.02 --seed "$round" >/dev/null 2>&1 &
    sender=$!
    sleep 7
    kill -STOP "$sender"
    sleep 2
    kill -CONT "$sender"
    sleep 6
    endSender
    sleep 1
    round=$((round + 1))
  done
}

disturb &
disturber=$!
trap 'kill "$disturber" 2>/dev/null; wait "$disturber" 2>/dev/null || true' EXIT
"$build/bin/skarnvisor" play "udp://:$port" --seconds "$seconds" --soak
