#!/bin/bash
# opened-files.sh LUMORA: what a start with a photo opens, seen by its system calls, and in which order: what the first
# picture does not need must not cost it time.
set -euo pipefail
lumora=$(realpath "$1")
folder=$(mktemp -d)
trap 'rm -r "$folder"' EXIT
export HOME=$folder/home QT_QPA_PLATFORM=offscreen
unset XDG_CONFIG_HOME XDG_CACHE_HOME XDG_STATE_HOME XDG_DATA_HOME
mkdir "$HOME" "$folder/program"
# A copy: the program writes settings into its folder.
cp -r "$lumora" "$(dirname "$lumora")"/{lumora-devices,Lumora.ini,language.ini,languages} "$folder/program"
photo="$(dirname "$lumora")/My Photos/animals/owl.jpg"
strace -f -qq -o "$folder/trace" -e trace=openat,execve timeout -s TERM 5 "$folder/program/lumora" "$photo" >/dev/null 2>&1 ||
    [ $? -eq 124 ]
# Of the program itself, without what it starts.
sed -n '\|execve(.*/lumora-devices|q;p' "$folder/trace" | grep -v ENOENT >"$folder/opened"
fail() {
    echo "$1" >&2
    exit 1
}
for library in libcurl libheif; do
    ! grep -q "/$library\.so" "$folder/opened" || fail "$library is loaded although nothing needs it"
done
! grep -q '/imageformats/.*\.so' "$folder/opened" || fail "the toolkit's image plugins are loaded before the first picture"
for file in "$photo" "$folder/program/language.ini"; do
    times=$(grep -cF "\"$file\"" "$folder/opened" || true)
    [ "$times" -eq 1 ] || fail "$file is opened $times times"
done
line() { grep -nF -m 1 "$1" "$folder/trace" | cut -d : -f 1; }
[ "$(line "\"$photo\"")" -lt "$(line .ttf)" ] || fail "the photo is not read while the window is built"
[ -n "$(line 'lumora-devices"')" ] || fail "nothing looks for scanners"

# The thread that reads the photo may begin before the one with the windows and end after it.
strace -f -qq -o /dev/null -P "$photo" -e trace=pread64 -e inject=pread64:delay_enter=1000000:when=1 \
    timeout -s TERM 5 "$folder/program/lumora" "$photo" >"$folder/said" 2>&1 || [ $? -eq 124 ]
! grep 'main() thread' "$folder/said" >&2 || fail "the toolkit takes the thread that reads the photo for the main one"
