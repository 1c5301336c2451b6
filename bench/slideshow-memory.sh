#!/bin/bash
# How much memory a slideshow over 2,000 photos of 24 megapixels takes: bench/slideshow-memory.sh [LUMORA-PLAY [PHOTOS]]
# Plays the real program on a screen of 1920 x 1080, a photo a second, so it takes 35 minutes; prints the memory that the
# process has (VmRSS) at each tenth and the most it ever had (VmHWM). The photos are hard links to six files: plain and
# progressive JPEG, one stored on its side, one without subsampling, PNG. Needs ImageMagick (package imagemagick).
set -euo pipefail
root=$(readlink -f "$(dirname "$(readlink -f "$0")")/..")
play=$(readlink -f "${1:-$root/build/release/bin/lumora-play}")
photos=${2:-2000}
command -v convert >/dev/null || { echo "ImageMagick is missing: apt-get install imagemagick" >&2; exit 1; }
stage=$(mktemp -d)
trap 'rm -rf "$stage"' EXIT
samples="$root/resources/installed/My Photos"

large() { convert "$1" -resize '6000x4000!' "${@:3}" "$stage/$2"; }
mkdir "$stage/show"
large "$samples/animals/ladybird.jpg" 1.jpg -quality 92
large "$samples/animals/clownfish.jpg" 2.jpg -quality 92 -interlace JPEG
large "$samples/machines/steam locomotive.jpg" 3.jpg -quality 92 -sampling-factor 4:4:4 -interlace JPEG
large "$samples/old buildings/windmill.jpg" 4.jpg -quality 92 -sampling-factor 4:4:4
large "$samples/animals/tree frog.jpg" 5.jpg -quality 92 -rotate 90
large "$samples/geographical features/mountain lake.jpg" 6.png
made=("$stage"/[1-6].*)
for ((i = 0; i < photos; ++i)); do
    file=${made[$((i % 6))]}
    ln "$file" "$stage/show/photo $i.${file##*.}"
done
cat >"$stage/show.play" <<END
setting Welcome/Show=0
setting Slideshow/Delay=1
start advanced
click Toolbar1.keySlideShow
choose $stage/show
expect frmSlideShow@visible true
wait $((photos * 1000 + 5000))
expect XShow1@accessibleName photo *
key Escape
quit
END

QT_QPA_PLATFORM=offscreen "$play" --size 1920x1080 --patience 30000 --timeout $((photos + 600)) "$stage/show.play" \
    >"$stage/log" 2>&1 &
process=$!
memory() { sed -n "s/^$1:[^0-9]*\([0-9]*\) kB/\1/p" "/proc/$process/status" 2>/dev/null; }
megabytes() { echo "$(($1 * 1024 / 1000000)) MB"; }
most=0
for ((tenth = 1; ; ++tenth)); do
    for ((second = 0; second < photos / 10; ++second)); do
        sleep 1
        now=$(memory VmHWM) || true
        [ -z "$now" ] || most=$now
    done
    kill -0 "$process" 2>/dev/null || break
    echo "about $((photos * tenth / 10)) photos: $(megabytes "$(memory VmRSS)"), at most $(megabytes "$most")"
done
wait "$process" || { cat "$stage/log" >&2; exit 1; }
echo "at most $(megabytes "$most") over $photos photos"
