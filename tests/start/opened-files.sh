#!/bin/bash
# opened-files.sh LUMORA: what a start with a photo opens, seen by its system calls, and in which order: what the first
# picture does not need must not cost it time.
set -euo pipefail
. "$(dirname "$0")/../support/traced-start.sh" "$(realpath "$1")"
trace_start openat,execve
# Of the program itself, without what it starts.
sed -n '\|execve(.*/lumora-devices|q;p' "$folder/trace" | grep -v ENOENT >"$folder/opened"
for library in libcurl libheif libhwy; do
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
