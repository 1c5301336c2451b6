# For scripts that look at the system calls of a start: makes $folder, which goes at the end, with an empty home and a copy
# of the program, since that writes settings beside itself. Sourced with the path of lumora. $photo is a photo.
folder=$(mktemp -d)
trap 'rm -r "$folder"' EXIT
export HOME=$folder/home QT_QPA_PLATFORM=offscreen ASAN_OPTIONS=detect_leaks=0 # which does not work below strace
unset XDG_CONFIG_HOME XDG_CACHE_HOME XDG_STATE_HOME XDG_DATA_HOME
mkdir "$HOME" "$folder/program"
cp -r "$1" "$(dirname "$1")"/{lumora-devices,Lumora.ini,language.ini,languages} "$folder/program"
photo="$(dirname "$1")/My Photos/animals/owl.jpg"

# Opens the photo with Lumora for some seconds; its calls of that kind are in $folder/trace, and in $folder/window those of
# the window's thread until it looks for scanners, which waits until the photo is shown.
trace_start() {
    strace -f -qq -o "$folder/trace" -e trace="$1" timeout -s TERM 5 "$folder/program/lumora" "$photo" >/dev/null 2>&1 ||
        [ $? -eq 124 ]
    local thread
    thread=$(grep -m 1 "execve(\"$folder/program/lumora\"" "$folder/trace" | cut -d ' ' -f 1)
    sed '\|execve(.*/lumora-devices|q' "$folder/trace" | grep "^$thread " >"$folder/window"
}

fail() {
    echo "$1" >&2
    exit 1
}
