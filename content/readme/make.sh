#!/bin/bash
# Makes the first picture of README.md again from the running program: content/readme/make.sh [LUMORA-PLAY]
# Without a program it takes build/release/bin/lumora-play.
set -euo pipefail
root=$(readlink -f "$(dirname "$(readlink -f "$0")")/../..")
play=$(readlink -f "${1:-$root/build/release/bin/lumora-play}")
QT_QPA_PLATFORM=offscreen LUMORA_PLAY_OUT=$root/docs/images "$play" --size 1280x800 --patience 30000 \
    "$root/content/readme/main.play"
