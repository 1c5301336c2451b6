#!/bin/bash
# folders.sh LUMORA: which folders the program itself uses, seen by its system calls: the player of the scripts has its
# own.
set -euo pipefail
lumora=$(realpath "$1")
folder=$(mktemp -d)
trap 'rm -r "$folder"' EXIT
export HOME=$folder/home QT_QPA_PLATFORM=offscreen
unset XDG_CONFIG_HOME XDG_CACHE_HOME XDG_STATE_HOME XDG_DATA_HOME
mkdir "$HOME" "$folder/program"
# A copy: the program writes settings into its folder.
cp -r "$lumora" "$(dirname "$lumora")"/{Lumora.ini,language.ini,languages} "$folder/program"
photo="$(dirname "$lumora")/My Photos/animals/owl.jpg"
strace -f -qq -o "$folder/trace" -e trace=file timeout -s TERM 5 "$folder/program/lumora" "$photo" >/dev/null 2>&1 ||
    [ $? -eq 124 ]
for path in /etc/lumora/Lumora.ini "$HOME/.config/lumora/ForMe.ini" "$HOME/.local/state/lumora/recovery" \
    "$HOME/.cache/lumora"; do
    grep -q "\"$path" "$folder/trace" || { echo "it never looks for $path" >&2; exit 1; }
done
[ -d "$HOME/.cache/lumora" ] || { echo "there is no cache" >&2; exit 1; }
