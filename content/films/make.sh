#!/bin/bash
# Makes the films of the help again from the running program: content/films/make.sh [LUMORA-PLAY [LANGUAGE [FILM...]]]
# Plays each *.play of this folder unseen in that language (en, de, fr; without one in all three) and encodes its frames
# into resources/installed/Videos/*.webm (English) or Videos/LANGUAGE/*.webm: a title with the tool's picture and name,
# the film, and the photo before and after. Beside each film are its captions in all languages (WebVTT), and the page
# that shows the films. FILM is a script's name without .play; without one it makes all. The names of tools come from the
# language files, what is said from words-LANGUAGE.ini.
# Needs ffmpeg, imagemagick and librsvg2-bin. Without a program it takes build/release/bin/lumora-play.
set -euo pipefail
here=$(dirname "$(readlink -f "$0")")
root=$(readlink -f "$here/../..")
play=$(readlink -f "${1:-$root/build/release/bin/lumora-play}")
shift || true
languages=(en de fr)
videos="$root/resources/installed/Videos"
width=1024
height=768
rate=12      # frames a second, as in the scripts
titleTime=2  # seconds
endTime=4    # seconds
fadeTime=0.4 # seconds from one part to the next
paper='#fcfaf3'
line='#cfc9ae'
ink='#2b2840'

for tool in ffmpeg convert rsvg-convert; do
    if ! command -v $tool >/dev/null; then
        echo "$tool is missing. Please install it: apt-get install ffmpeg imagemagick librsvg2-bin" >&2
        exit 1
    fi
done
if [ ! -x "$play" ]; then
    echo "$play not found. Build it first, with ./run for instance, or name another one." >&2
    exit 1
fi
letters=$(fc-match -f '%{file}' Andika:bold)

# The folder is seen in the windows for opening and saving: a short name looks best.
stage=/tmp/lumora
mkdir "$stage" 2>/dev/null || stage=$(mktemp -d)
trap 'rm -rf "$stage"' EXIT
mkfifo "$stage/film"

# --- Words ---------------------------------------------------------------------------------------------------------

# value FILE SECTION KEY: what an ini file says there.
value() {
    awk -v section="[$2]" -v key="$3=" '{ sub(/\r$/, "") } $0 == section { on = 1; next } /^\[/ { on = 0 }
        on && index($0, key) == 1 { print substr($0, length(key) + 1); exit }' "$1"
}

# caption LANGUAGE ID: that text of the program.
caption() {
    local file="$root/resources/installed/languages/language-$1.ini" text
    [ "$1" != en ] || file="$root/resources/installed/language.ini"
    text=$(value "$file" "$2" Caption)
    if [ -z "$text" ]; then
        echo "$file has no text $2" >&2
        return 1
    fi
    echo "${text//&&/&}"
}

# words LANGUAGE SECTION KEY: what the films say, with the names of the program's texts filled in.
words() {
    local text id name
    text=$(value "$here/words-$1.ini" "$2" "$3")
    while [[ $text =~ \{([A-Za-z0-9 ]+)\} ]]; do
        id=${BASH_REMATCH[1]}
        name=$(caption "$1" "$id")
        text=${text//"{$id}"/"$name"}
    done
    echo "$text"
}

# head_of FILM PART: the title's text or the icon that the script names.
head_of() {
    local both
    both=$(sed -n 's/^# title \(.*\), icon \(.*\)$/\1 \2/p' "$here/$1.play")
    [ "$2" = icon ] && echo "${both#* }" || echo "${both% *}"
}

folder_of() {
    [ "$1" = en ] && echo "$videos" || echo "$videos/$1"
}

# --- Cards ---------------------------------------------------------------------------------------------------------

# icon NAME SIZE: a PNG file of it.
icon() {
    local file="$stage/icon-$1-$2.png"
    [ -e "$file" ] || rsvg-convert -w "$2" -h "$2" "$root/resources/icons/$1.svg" -o "$file"
    echo "$file"
}

# written TEXT SIZE WIDTH FILE: the text as a picture, in as many lines as it needs.
written() {
    convert -background none -fill "$ink" -font "$letters" -pointsize "$2" -size "$3x" -gravity center \
        caption:"$1" "$4"
}

title_card() {
    written "$2" 62 880 "$stage/name.png"
    convert -size ${width}x$height "xc:$paper" "$(icon "$(head_of "$1" icon)" 240)" -gravity north -geometry +0+150 \
        -composite "$stage/name.png" -gravity north -geometry +0+430 -composite \
        "$(icon simple-mode 130)" -gravity southeast -geometry +40+30 -composite "$stage/title.png"
}

# The photo before and after, an arrow between them, and the arrow of a repetition.
end_card() {
    local side
    for side in before after; do
        convert "$stage/$side.png" -resize 452x360 -bordercolor "$line" -border 3 "$stage/$side-small.png"
        written "$(words "$3" page $side)" 40 452 "$stage/$side-name.png"
    done
    written "$2" 40 800 "$stage/name.png"
    convert -size ${width}x$height "xc:$paper" "$(icon "$(head_of "$1" icon)" 84)" -gravity north -geometry +0+16 \
        -composite "$stage/name.png" -gravity north -geometry +0+102 -composite \
        "$stage/before-small.png" -gravity west -geometry +24+10 -composite \
        "$stage/after-small.png" -gravity east -geometry +24+10 -composite \
        "$(icon right 84)" -gravity center -geometry +0+10 -composite \
        "$stage/before-name.png" -gravity southwest -geometry +24+130 -composite \
        "$stage/after-name.png" -gravity southeast -geometry +24+130 -composite \
        "$(icon redo 84)" -gravity south -geometry +0+20 -composite "$stage/end.png"
}

# --- Films ---------------------------------------------------------------------------------------------------------

# Photos that no sample is: one that was held askew, and one that is too dark.
make_photos() {
    local samples="$root/resources/installed/My Photos"
    convert "$samples/old buildings/lighthouse.jpg" -rotate -5 +repage -gravity center -crop 1400x1000+0+0 +repage \
        -quality 92 "$stage/crooked.jpg"
    convert "$samples/machines/blue tractor.jpg" -gamma 0.5 -modulate 100,70 -quality 92 "$stage/dark.jpg"
}

# The script, preceded by the settings that all films share.
whole_script() {
    cat <<END
setting Welcome/Show=0
setting MyDocs/Value=0
setting Working Directory/Path=\$OUT/My Photos
setting Dialogs/Style=0
setting SFX/Advanced=0
setting Resize/Advanced=0
setting Popart/Level=0
setting Tips/Crop=0
END
    [ "$2" = en ] || echo "language $2"
    sed "s/@name@/$(words "$2" "$1" name)/" "$here/$1.play"
}

# record FILM LANGUAGE: its frames as they are, the photo before and after, and what the player printed.
record() {
    local recorder
    rm -rf "$stage/My Photos" "$stage/run"
    mkdir "$stage/My Photos" "$stage/run"
    ffmpeg -nostdin -y -loglevel error -f rawvideo -pixel_format bgr0 -video_size ${width}x$height -framerate $rate \
        -i "$stage/film" -c:v libx264rgb -qp 0 -preset ultrafast "$stage/take.mkv" &
    recorder=$!
    whole_script "$1" "$2" >"$stage/film.play"
    if ! QT_QPA_PLATFORM=offscreen QT_SCALE_FACTOR=1 LUMORA_PLAY_OUT=$stage "$play" --size ${width}x$height \
        --in "$stage/run" --patience 60000 --timeout 600 "$stage/film.play" >"$stage/diary" 2>"$stage/log"; then
        kill $recorder 2>/dev/null || true
        cat "$stage/log" >&2
        exit 1
    fi
    wait $recorder
}

# encode FILE: title, film and end, one fading into the next. AV1 takes half of what VP9 does for windows and letters.
encode() {
    local frames times
    frames=$(sed -n 's/^\([0-9]*\) frames$/\1/p' "$stage/diary")
    times=$(awk -v f="$frames" -v r=$rate -v t=$titleTime -v d=$fadeTime 'BEGIN { print t - d, t - d + f / r - d }')
    ffmpeg -nostdin -y -loglevel error -loop 1 -framerate $rate -t $titleTime -i "$stage/title.png" \
        -i "$stage/take.mkv" -loop 1 -framerate $rate -t $endTime -i "$stage/end.png" -filter_complex \
        "[0]format=yuv420p,settb=1/$rate[a];[1]format=yuv420p,settb=1/$rate[b];[2]format=yuv420p,settb=1/$rate[c];
        [a][b]xfade=duration=$fadeTime:offset=${times% *}[ab];[ab][c]xfade=duration=$fadeTime:offset=${times#* }" \
        -an -c:v libsvtav1 -crf 57 -preset 5 -g 600 -svtav1-params scm=1 -f webm "$1" 2>"$stage/log" ||
        { cat "$stage/log" >&2 && exit 1; }
}

# captions FILM LANGUAGE: WebVTT; each cue lasts until the next one, the last one for half of the end.
captions() {
    local key text times
    printf 'WEBVTT\n'
    awk -v r=$rate -v rest=$((endTime / 2)) -v lead="$(awk "BEGIN { print $titleTime - $fadeTime }")" '
        function stamp(s) { return sprintf("%02d:%02d:%06.3f", s / 3600, s / 60 % 60, s % 60) }
        $1 == "cue" { if (key) print key, stamp(from) " --> " stamp(lead + $3 / r); key = $2; from = lead + $3 / r }
        $2 == "frames" { print key, stamp(from) " --> " stamp(lead + $1 / r + rest) }' "$stage/diary" |
        while read -r key times; do
            text=$(words "$2" "$1" "$key")
            if [ -z "$text" ]; then
                echo "words-$2.ini says nothing for cue $key of $1" >&2
                exit 1
            fi
            text=${text//&/&amp;}
            printf '\n%s\n%s\n' "$times" "${text//</&lt;}"
        done
}

# make_film FILM LANGUAGE
make_film() {
    local folder file title each
    folder=$(folder_of "$2")
    file="$folder/$1.webm"
    title=$(caption "$2" "$(head_of "$1" title)")
    mkdir -p "$folder" "$videos/posters"
    record "$1" "$2"
    title_card "$1" "$title"
    end_card "$1" "$title" "$2"
    encode "$file"
    for each in "${languages[@]}"; do
        captions "$1" "$each" >"$folder/$1.$each.vtt"
    done
    # What has become of the photo, for all languages.
    convert "$stage/after.png" -resize 512x384^ -gravity center -extent 512x384 -quality 78 "$videos/posters/$1.jpg"
    echo "$2/$1: $(($(stat -c %s "$file") / 1000)) kB"
}

# --- Page ----------------------------------------------------------------------------------------------------------

# Captions and pictures are part of the page, since a browser loads no captions from beside a page on the disk.
inlined() {
    printf 'data:%s;base64,%s' "$1" "$(base64 -w0 "$2")"
}

make_page() {
    local up name title each folder script file selected
    folder=$(folder_of "$1")
    [ "$1" = en ] && up= || up=../
    fill() {
        sed -e "s|@language@|$1|g" -e "s|@title@|$(words "$1" page title)|g" -e "s|@hint@|$(words "$1" page hint)|g" \
            "$2"
    }
    fill "$1" <(sed '/<!-- languages -->/,$d' "$here/page.html")
    for each in "${languages[@]}"; do
        file=$(folder_of "$each")
        [ -d "$file" ] || continue
        selected=
        [ "$each" != "$1" ] || selected=' class="chosen"'
        file=${file#"$videos"}
        printf '<a href="%s%s" lang="%s"%s>%s</a>\n' "$up" "${file:+${file#/}/}index.html" "$each" "$selected" \
            "$(caption "$each" LanguageName)"
    done
    fill "$1" <(sed '1,/<!-- languages -->/d; /<!-- films -->/,$d' "$here/page.html")
    for script in "$here"/*.play; do
        name=$(basename "$script" .play)
        title=$(caption "$1" "$(head_of "$name" title)")
        printf '<figure>\n<video src="%s.webm" poster="%sposters/%s.jpg" preload="none" controls loop>\n' \
            "$name" "$up" "$name"
        for each in "${languages[@]}"; do
            file="$folder/$name.$each.vtt"
            [ ! -e "$file" ] || printf '<track kind="captions" srclang="%s" label="%s" src="%s">\n' "$each" \
                "$(caption "$each" LanguageName)" "$(inlined text/vtt "$file")"
        done
        printf '</video>\n<p class="says"></p>\n<figcaption><img src="%s" alt="">%s</figcaption>\n</figure>\n' \
            "$(inlined image/svg+xml "$root/resources/icons/$(head_of "$name" icon).svg")" "${title//&/&amp;}"
    done
    fill "$1" <(sed '1,/<!-- films -->/d' "$here/page.html")
}

if [ $# -gt 0 ]; then
    wanted=("$1")
    shift
else
    wanted=("${languages[@]}")
fi
if [ $# -eq 0 ]; then
    for script in "$here"/*.play; do
        set -- "$@" "$(basename "$script" .play)"
    done
fi
make_photos
for language in "${wanted[@]}"; do
    for film in "$@"; do
        make_film "$film" "$language"
    done
done
for language in "${languages[@]}"; do
    if [ -d "$(folder_of "$language")" ]; then
        make_page "$language" >"$stage/page"
        cp "$stage/page" "$(folder_of "$language")/index.html"
    fi
done
du -sh "$videos"
