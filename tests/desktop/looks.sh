#!/bin/bash
# looks.sh LUMORA-PLAY dark|large|300: opens every window on a dark desktop of GTK, on one with large letters, or on one of
# three times as many pixels, and looks whether all of it is in view; the first button looks as on any other desktop. Runs
# in the project's folder.
set -euo pipefail
screen=1024x768
[ "$2" = 300 ] && screen=3072x2304
. tests/desktop/display.sh

folder=$(mktemp -d)
remove_at_end "$folder"
home_of_its_own "$folder"
export SANE_CONFIG_DIR=$PWD/tests/support/sane
mkdir -p "$XDG_CONFIG_HOME/gtk-3.0"
case $2 in
dark) printf '[Settings]\ngtk-theme-name=Adwaita\ngtk-application-prefer-dark-theme=1\n' ;;
large) printf '[Settings]\ngtk-font-name=Sans 20\n' ;;
300)
    echo "Xft.dpi: 288" | xrdb -nocpp -merge
    printf '[Settings]\n'
    ;;
esac >"$XDG_CONFIG_HOME/gtk-3.0/settings.ini"
[ "$2" = dark ] && export GTK_THEME=Adwaita:dark

# play SCRIPT
play() {
    said=$("$1" --patience 60000 "$2" 2>&1) || fail "$said"
}
{
    echo 'setting Display Message/Value=0'
    sed -e '/^shot /d' tests/play/languages/every-window.play
} >"$folder/every.play"
play "$1" "$folder/every.play"
[ "$2" = 300 ] && exit
# What comes from the desktop's palette or letters would show here: a window, its title, a field, a list and ticks.
for looks in --remake-looks ""; do
    printf '%s\n' 'setting Display Message/Value=0' 'setting Welcome/Show=0' 'start advanced' 'click cmdOptions' \
        'point frmOptions.TabStrip1' "expect-look $folder/options.png frmOptions" 'quit' >"$folder/options.play"
    if [ -n "$looks" ]; then # on a desktop without a theme
        env -u QT_QPA_PLATFORMTHEME -u GTK_THEME "$1" $looks "$folder/options.play" >/dev/null
    else
        play "$1" "$folder/options.play"
    fi
done
