#!/bin/bash
# session.sh LUMORA: a session that ends while a question is open holds nothing up and loses no photo: the session manager
# of X, a signal or the X server ends the program, and its next start offers the photo. Runs in the project's folder.
set -euo pipefail
. tests/desktop/display.sh

folder=$(mktemp -d)
remove_at_end "$folder"
home_of_its_own "$folder"
photos="$(realpath "$(dirname "$1")")/My Photos/animals"
program_of_its_own "$1" "$folder/program"
printf '[Welcome]\nShow=0\n' >"$folder/program/Lumora.ini"
cat >"$folder/start" <<START
#!/bin/sh
echo \$\$ >$folder/program.pid
exec $folder/program/lumora "$photos/owl.jpg"
START
chmod +x "$folder/start"
echo "$folder/start" >"$HOME/.xsmstartup"

# wait_until WHAT COMMAND...: until that is true.
wait_until() {
    local what=$1
    shift
    for _ in $(seq 300); do
        "$@" >/dev/null 2>&1 && return
        sleep 0.1
    done
    fail "$ending: no $what"
}
has_window() { xdotool search --onlyvisible --name "^$1\$"; }
is_over() { ! kill -0 "$1"; }
has_copy() { find "$XDG_STATE_HOME/lumora/recovery" -name copy | grep .; }

for ending in session signal server; do
    rm -f "$folder/program.pid"
    case $ending in
    session) xsm >"$folder/xsm.log" 2>&1 & ;;
    *) "$folder/start" 2>"$folder/program.log" & ;;
    esac
    leader=$!
    wait_until "window" has_window Lumora
    window=$(has_window Lumora | tail -1)
    program=$(cat "$folder/program.pid")
    xdotool windowfocus --sync "$window"
    for _ in $(seq 20); do # a pasted photo is in no file
        has_copy >/dev/null 2>&1 && break
        xdotool key --clearmodifiers ctrl+c
        sleep 0.5
        xdotool key --clearmodifiers ctrl+v
        sleep 0.5
    done
    wait_until "copy of the photo" has_copy
    xdotool mousemove 1248 24 click 1 # the Exit button
    wait_until "question" has_window Exit
    case $ending in
    session | signal) kill -TERM "$leader" ;;
    server) xkill -id "$window" >/dev/null ;;
    esac
    wait_until "end of the program" is_over "$program"
    wait_until "end of the session" is_over "$leader"
    "$folder/program/lumora" "$photos/ladybird.jpg" &
    program=$!
    wait_until "photo offered" has_window "Welcome back"
    xdotool windowfocus --sync "$(has_window "Welcome back" | tail -1)" key --clearmodifiers Return
    wait_until "answer" bash -c '! xdotool search --onlyvisible --name "^Welcome back\$"'
    kill -KILL "$program" # and is offered again
    wait "$program" 2>/dev/null || true
    rm -rf "$XDG_STATE_HOME/lumora/recovery"
done
