#!/bin/bash
# touch.sh LUMORA: uses the program by fingers alone, with the events of a touch screen, see touch.py. Runs in the project's
# folder.
set -euo pipefail
screen=none
. tests/desktop/display.sh
unset QT_QPA_PLATFORMTHEME

folder=$(mktemp -d)
start_touch_screen 1024x768 "$folder"
remove_at_end "$folder"
home_of_its_own "$folder"
program_of_its_own "$1" "$folder/program"
printf '[Welcome]\nShow=0\n[Dialogs]\nStyle=0\n[SFX]\nAdvanced=1\n' >"$folder/program/Lumora.ini"
export QT_LINUX_ACCESSIBILITY_ALWAYS_ON=1
dbus-run-session -- /usr/bin/python3 tests/desktop/touch.py "$folder" "$(dirname "$1")"
