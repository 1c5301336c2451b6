#!/bin/bash
# ends.sh LUMORA: SIGTERM ends the program while a file dialog of the desktop is open, whose event loop is not Qt's.
# Runs in the project's folder.
set -euo pipefail
. tests/desktop/display.sh

folder=$(mktemp -d)
remove_at_end "$folder"
home_of_its_own "$folder"
bin=$(dirname "$1")
program_of_its_own "$1" "$folder/program"
printf '[Welcome]\nShow=0\n[Dialogs]\nStyle=1\n' >"$folder/program/Lumora.ini"

# window TITLE: its number, once the program shows it.
window() {
    for _ in $(seq 300); do
        xdotool search --onlyvisible --all --pid "$program" --name "^$1\$" 2>/dev/null && return
        sleep 0.1
    done
    fail "no window \"$1\""
}

for dialog in "Open ctrl+o" "Save ctrl+s"; do
    read -r title keys <<<"$dialog"
    "$folder/program/lumora" "$bin/My Photos/animals/ladybird.jpg" &
    program=$!
    sleep 1
    xdotool windowfocus --sync "$(window Lumora)"
    for _ in $(seq 20); do # until the photo is there to be saved
        xdotool key --clearmodifiers "$keys"
        sleep 1
        xdotool search --onlyvisible --all --pid "$program" --name "^$title" >/dev/null 2>&1 && break
    done
    window "$title.*" >/dev/null
    kill -TERM "$program"
    for _ in $(seq 100); do
        kill -0 "$program" 2>/dev/null || break
        sleep 0.1
    done
    if kill -KILL "$program" 2>/dev/null; then
        fail "SIGTERM does not end the program while the dialog \"$title\" is open"
    fi
    wait "$program" || fail "SIGTERM ends the program with code $?"
done
