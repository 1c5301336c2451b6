#!/bin/bash
# Makes the pictures of the user guide again from the running program: content/guide/make.sh [LUMORA-PLAY]
# Plays each *.play of this folder unseen, at double density (by Lumora's own scale where the script says "# scale: own"),
# in each language that has a folder of pages below resources/guide, and compresses the screenshots into resources/guide/*.jpg (English) and resources/guide/LANGUAGE/*.jpg.
# Needs ImageMagick (package imagemagick). Without a program it takes build/release/bin/lumora-play.
set -euo pipefail
here=$(dirname "$(readlink -f "$0")")
root=$(readlink -f "$here/../..")
play=$(readlink -f "${1:-$root/build/release/bin/lumora-play}")
[ -x "$play" ] || { echo "$play not found. Build it first, with ./run for instance, or name another one." >&2; exit 1; }
command -v convert >/dev/null || { echo "ImageMagick is missing: apt-get install imagemagick" >&2; exit 1; }

# The folder is seen in the windows for opening and saving: a short name looks best.
stage=/tmp/school
mkdir "$stage" 2>/dev/null || stage=$(mktemp -d)
trap 'rm -rf "$stage"' EXIT
mkdir "$stage/My Photos"
ln -s "$root/resources/installed/My Photos/"*/*.jpg "$stage/My Photos/"

# Shown at half their pixels: at most 560 x 380 on the page, sharp on a screen of double density.
pack() { convert "$1" -resize '1120x760>' -strip -sampling-factor 4:2:0 "${@:3}" "$2"; }

for pages in "$root"/resources/guide/*/index.html; do
    language=$(basename "$(dirname "$pages")")
    guide=$root/resources/guide
    [ "$language" = en ] || guide=$guide/$language
    rm -f "$stage"/*.png
    for script in "$here"/*.play; do
        size=$(sed -n 's/^# size: //p' "$script")
        factor=QT_SCALE_FACTOR=2
        grep -q '^# scale: own' "$script" && factor=-uQT_SCALE_FACTOR
        echo "$language $(basename "$script")"
        { [ "$language" = en ] || echo "language $language"; cat "$script"; } |
            env $factor QT_QPA_PLATFORM=offscreen LUMORA_PLAY_OUT=$stage SANE_CONFIG_DIR=$here/sane \
                "$play" --size "${size:-2048x1536}" --patience 30000 - >/dev/null 2>"$stage/log" ||
            { cat "$stage/log" >&2; exit 1; }
    done
    for shot in "$stage"/*.png; do
        packed=$guide/$(basename "$shot" .png).jpg
        pack "$shot" "$packed" -quality 72
        [ "$(stat -c %s "$packed")" -lt 100000 ] || pack "$shot" "$packed" -define jpeg:extent=96kB
    done
done
du -ch "$root"/resources/guide/*.jpg "$root"/resources/guide/*/*.jpg | tail -1
