#!/bin/bash
# reader.sh LUMORA: looks at the windows as a screen reader does, see reader.py. Runs in the project's folder.
set -euo pipefail
. tests/desktop/display.sh
unset QT_QPA_PLATFORMTHEME # the theme of GTK would show windows of its own to the screen reader

folder=$(mktemp -d)
stop_display=$(trap -p EXIT | cut -d"'" -f2)
# shellcheck disable=SC2064 # both as they are now
trap "rm -rf '$folder'; $stop_display" EXIT
home_of_its_own "$folder"
# The program writes beside itself.
bin=$(realpath "$(dirname "$1")")
mkdir "$folder/program"
ln "$1" "$folder/program/lumora" 2>/dev/null || cp "$1" "$folder/program/lumora"
for each in languages "My Photos" Videos lumora-devices; do
    ln -s "$bin/$each" "$folder/program/"
done
cp "$bin/language.ini" "$folder/program/"
printf '[Welcome]\nShow=0\n[Dialogs]\nStyle=0\n[SFX]\nAdvanced=1\n[Resize]\nAdvanced=0\n[Popart]\nLevel=1\n[E-mail]\nValue=1\n[Sender]\nAddress=anna@school.example\n' \
    >"$folder/program/Lumora.ini"
export QT_LINUX_ACCESSIBILITY_ALWAYS_ON=1
dbus-run-session -- /usr/bin/python3 tests/desktop/reader.py "$folder/program"
