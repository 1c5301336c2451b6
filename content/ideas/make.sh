#!/bin/bash
# Makes the finished examples of the ideas window, resources/ideas/*.jpg, with Lumora's own tools from the sample
# photos. Run it again when the photos, the frames or the effects have become better, and look at every picture.
# Usage: content/ideas/make.sh [folder of the built programs, build/dev/bin at first]
set -euo pipefail
here=$(dirname "$(readlink -f "$0")")
programs=${1:-$here/../../build/dev/bin}
pictures=$here/../../resources/ideas
made=$(mktemp -d)
trap 'rm -rf "$made"' EXIT
export QT_QPA_PLATFORM=offscreen LUMORA_PLAY_OUT=$made
for script in "$here"/*.play; do
    echo "$(basename "$script" .play)"
    "$programs/lumora-play" --size 1280x800 "$script"
done
mkdir -p "$pictures"
mv "$made"/*.jpg "$pictures/"
