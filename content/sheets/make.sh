#!/bin/bash
# Draws the sheets of all effects and frames in docs/images again: content/sheets/make.sh [LUMORA-SHEET [PHOTO…]]
# Each is on three photos at 1, 12 and 24 megapixels, whole and in a part of one to one. Without a program it takes
# build/release/bin/lumora-sheet, without photos three of the collection. Where build/release/bin/lumora-samples is
# built, it also draws the sheet of all sample photos.
set -euo pipefail
root=$(readlink -f "$(dirname "$(readlink -f "$0")")/../..")
sheet=$(readlink -f "${1:-$root/build/release/bin/lumora-sheet}")
[ -x "$sheet" ] || { echo "$sheet not found: ninja -C build/release lumora-sheet, or name another one." >&2; exit 1; }
photos=("${@:2}")
collection="$root/resources/installed/My Photos"
[ ${#photos[@]} -gt 0 ] ||
    photos=("$collection/animals/elephants.jpg" "$collection/animals/clownfish.jpg" "$collection/machines/steam locomotive.jpg")
"$sheet" "$root/docs/images" "${photos[@]}"
samples=$root/build/release/bin/lumora-samples
[ ! -x "$samples" ] || "$samples" --sheet "$collection" "$root/docs/images/sample-photos.jpg"
du -ch "$root"/docs/images/{{effects,frames}-*-megapixels,sample-photos}.jpg
