#!/bin/bash
# reader.sh LUMORA: looks at the windows as a screen reader does, see reader.py. Runs in the project's folder.
set -euo pipefail
. tests/desktop/display.sh
unset QT_QPA_PLATFORMTHEME # the theme of GTK would show windows of its own to the screen reader

folder=$(mktemp -d)
remove_at_end "$folder"
home_of_its_own "$folder"
program_of_its_own "$1" "$folder/program"
cat >"$folder/program/Lumora.ini" <<'INI'
[Welcome]
Show=0
[Dialogs]
Style=0
[SFX]
Advanced=1
[Resize]
Advanced=0
[Popart]
Level=1
[E-mail]
Value=1
[Sender]
Address=anna@school.example
[Mail Server]
Server=127.0.0.1
User=anna
[Slideshow]
Delay=1
[Scanner]
Device=0
[Scan]
Autoscan=1
INI
export QT_LINUX_ACCESSIBILITY_ALWAYS_ON=1 SANE_CONFIG_DIR=$PWD/tests/support/sane
dbus-run-session -- /usr/bin/python3 tests/desktop/reader.py "$folder/program"
