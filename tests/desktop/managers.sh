#!/bin/bash
# managers.sh LUMORA MANAGER SCALE [SCREENS]: uses the program's windows as a person does, with real events, under a window
# manager of X (openbox, xfwm4, metacity) or under the Wayland compositor weston, see managers.py. One program pixel is
# SCALE pixels of the screen; there are one or two screens of 1024 x 768 program pixels, side by side. Runs in the
# project's folder.
set -euo pipefail
lumora=$1 manager=$2 scale=$3 screens=${4:-1}
read -r width height <<<"$(awk -v scale="$scale" 'BEGIN { print 1024 * scale, 768 * scale }')"
screen=$((width * screens))x$height
. tests/desktop/display.sh
unset QT_QPA_PLATFORMTHEME

folder=$(mktemp -d)
remove_at_end "$folder"
home_of_its_own "$folder"
program_of_its_own "$lumora" "$folder/program"
printf '[Welcome]\nShow=0\n[Dialogs]\nStyle=0\n' >"$folder/program/Lumora.ini"
if [ "$manager" != weston ]; then
    echo "Xft.dpi: $(awk -v scale="$scale" 'BEGIN { print 96 * scale }')" | xrdb -nocpp -merge
    if [ "$screens" = 2 ]; then
        xrandr --setmonitor left "$width/300x$height/200+0+0" screen --setmonitor right "$width/300x$height/200+$width+0" none
    fi
fi
export QT_LINUX_ACCESSIBILITY_ALWAYS_ON=1
dbus-run-session -- /usr/bin/python3 tests/desktop/managers.py "$folder" "$(dirname "$lumora")" "$manager" "$scale" "$screens"
