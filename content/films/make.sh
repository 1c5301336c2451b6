#!/bin/bash
# Makes the films of the help again from the running program: content/films/make.sh [LUMORA-PLAY [FILM...]]
# Plays each *.play of this folder unseen and encodes its frames into resources/installed/Videos/*.webm, with a still
# picture of each film and the page that shows them. FILM is a script's name without .play; without one it makes all.
# Needs ffmpeg (package ffmpeg). Without a program it takes build/release/bin/lumora-play.
set -euo pipefail
here=$(dirname "$(readlink -f "$0")")
root=$(readlink -f "$here/../..")
play=$(readlink -f "${1:-$root/build/release/bin/lumora-play}")
shift || true
videos="$root/resources/installed/Videos"
size=1024x768
rate=12 # frames a second, as in the scripts

if ! command -v ffmpeg >/dev/null; then
    echo "ffmpeg is missing. Please install it: apt-get install ffmpeg" >&2
    exit 1
fi
if [ ! -x "$play" ]; then
    echo "$play not found. Build it first, with ./run for instance, or name another one." >&2
    exit 1
fi

# The folder is seen in the windows for opening and saving: a short name looks best.
stage=/tmp/lumora
mkdir "$stage" 2>/dev/null || stage=$(mktemp -d)
trap 'rm -rf "$stage"' EXIT
mkdir -p "$videos/posters" "$stage/My Photos"
ln -s "$root/resources/installed/My Photos/"*/*.jpg "$stage/My Photos/"
mkfifo "$stage/film"

# make_film NAME: first every frame as it is, then two passes over them.
make_film() {
    local take="$stage/take.mkv" packed="$videos/$1.webm" recorder
    ffmpeg -nostdin -y -loglevel error -f rawvideo -pixel_format bgr0 -video_size $size -framerate $rate \
        -i "$stage/film" -c:v libx264rgb -qp 0 -preset ultrafast "$take" &
    recorder=$!
    if ! QT_QPA_PLATFORM=offscreen QT_SCALE_FACTOR=1 LUMORA_PLAY_OUT=$stage \
        "$play" --size $size --patience 30000 "$here/$1.play" >/dev/null 2>"$stage/log"; then
        kill $recorder 2>/dev/null || true
        cat "$stage/log" >&2
        exit 1
    fi
    wait $recorder
    for pass in 1 2; do
        ffmpeg -nostdin -y -loglevel error -i "$take" -an -pix_fmt yuv420p -c:v libvpx-vp9 -crf 44 -b:v 0 -g 600 \
            -tune-content screen -row-mt 1 -cpu-used 3 -pass $pass -passlogfile "$stage/pass" -f webm "$packed"
    done
    # What has become of the photo, shortly before the end.
    ffmpeg -nostdin -y -loglevel error -sseof -0.5 -i "$packed" -frames:v 1 -vf scale=512:-1 -q:v 4 \
        "$videos/posters/$1.jpg"
    rm -f "$stage/My Photos/train.jpg"
    echo "$1: $(($(stat -c %s "$packed") / 1000)) kB"
}

make_page() {
    sed '/<!-- films -->/,$d' "$here/page.html"
    for script in "$here"/*.play; do
        name=$(basename "$script" .play)
        printf '<figure>\n<video src="%s.webm" poster="posters/%s.jpg" preload="none" controls loop></video>\n' \
            "$name" "$name"
        printf '<figcaption>%s</figcaption>\n</figure>\n' "${name#?? }"
    done
    sed '1,/<!-- films -->/d' "$here/page.html"
}

if [ $# -eq 0 ]; then
    for script in "$here"/*.play; do
        set -- "$@" "$(basename "$script" .play)"
    done
fi
for film in "$@"; do
    make_film "$film"
done
make_page >"$videos/index.html"
du -ch "$videos"/*.webm "$videos"/posters/*.jpg | tail -1
