#!/bin/bash
# Makes the pictures of README.md again, from the running program and from the first film of the help:
# content/readme/make.sh [LUMORA-PLAY]
# Without a program it takes build/release/bin/lumora-play. Needs ffmpeg.
set -euo pipefail
root=$(readlink -f "$(dirname "$(readlink -f "$0")")/../..")
play=$(readlink -f "${1:-$root/build/release/bin/lumora-play}")
for script in main simple; do
    QT_QPA_PLATFORM=offscreen LUMORA_PLAY_OUT=$root/docs/images "$play" --size 1280x800 --patience 30000 \
        "$root/content/readme/$script.play"
done
ffmpeg -v error -y -i "$root/resources/installed/Videos/01 First Steps.webm" -vf 'fps=6,scale=640:-1:flags=lanczos' \
    -loop 0 -c:v libwebp_anim -quality 60 -compression_level 6 "$root/docs/images/first-steps.webp"
