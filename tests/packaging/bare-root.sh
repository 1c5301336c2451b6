#!/bin/bash
# bare-root.sh SUITE [PACKAGE]: Lumora in a new root of a Debian suite (bookworm, trixie) in which nothing else is. Builds
# the package there and keeps it in build/bare-root, or takes PACKAGE, which was built on that suite. Installs it, opens a
# photo and saves it under another name by real keys, purges the package and compares the lists of files before and after.
# Runs in the project's folder. Only root may make roots: for others it ends with 77.
set -euo pipefail
. scripts/setup.sh
suite=$1 package=${2-}
if [ "$(id -u)" -ne 0 ]; then
    say "Only root can make a root of $suite."
    exit 77
fi
need_packages root
folder=$(mktemp -d -p /var/tmp "$suite.XXXXXX")
trap 'rm -rf --one-file-system "$folder"' EXIT # the mounts below it ended with the commands
log=build/log/bare-root-$suite.log

# inside ROOT COMMAND...: runs it in that root; its mounts and its processes end with it.
inside() {
    unshare --mount --pid --fork --kill-child sh -ec '
        mount -t proc proc "$1/proc"
        mount -t tmpfs tmpfs "$1/dev/shm"
        exec env -i HOME=/root LANG=C.UTF-8 PATH=/usr/sbin:/usr/bin:/sbin:/bin DEBIAN_FRONTEND=noninteractive \
            chroot "$@"' - "$folder/$1" "${@:2}"
}

say "Making a root of $suite"
quietly "$log" debootstrap --variant=minbase "$suite" "$folder/bare"
printf '#!/bin/sh\nexit 101\n' >"$folder/bare/usr/sbin/policy-rc.d" # it starts no services, as it has no system
chmod 755 "$folder/bare/usr/sbin/policy-rc.d"

if [ -z "$package" ]; then
    cp -a "$folder/bare" "$folder/build"
    git clone -q . "$folder/build/root/lumora"
    inside build bash -ec 'cd /root/lumora && scripts/package.sh'
    package=build/bare-root/lumora-$suite.deb
    mkdir -p build/bare-root
    cp "$folder"/build/root/lumora/build/package/lumora_*.deb "$package"
fi

# What presses the keys, what looks at the picture, and a user as a login makes one.
quietly "$log" inside bare apt-get -q install -y --no-install-recommends xvfb openbox xdotool libjpeg-turbo-progs
inside bare bash -ec 'useradd --create-home --uid 1234 child
    install -d -m 700 -o child /run/user /run/user/1234
    install -d -m 1777 /tmp/.X11-unix'
install -m 644 "resources/installed/My Photos/animals/owl.jpg" "$folder/bare/home/child/"

# What the package needs comes first, so that what others leave behind is not taken for Lumora's.
say "Installing"
cp "$package" "$folder/bare/root/lumora.deb"
quietly "$log" inside bare sh -ec 'for field in Depends Recommends; do
        apt-get -q satisfy -y "$(dpkg-deb -f /root/lumora.deb $field)"
    done'

# The files, without the lists and logs of the package manager and the sockets of the display.
files() {
    find "$folder/bare" -printf '%P\n' | grep -vE '^var/(lib/(apt|dpkg)|cache/(apt|debconf|ldconfig)|log)/|^tmp/\.X' | sort
}
files >"$folder/before"
quietly "$log" inside bare apt-get -q install -y /root/lumora.deb

say "Opening a photo and saving it under another name"
cat >"$folder/use" <<'END'
set -euo pipefail
cd
export XDG_RUNTIME_DIR=/run/user/1234
coproc exec Xvfb -displayfd 1 -screen 0 1280x800x24 -nolisten tcp -noreset 2>/dev/null
read -r -t 60 number <&"${COPROC[0]}"
export DISPLAY=:$number
more=$(mktemp -d) # what is not Lumora's
HOME=$more openbox >/dev/null 2>&1 &

fail() {
    echo "$1; what runs, and what is on the screen:" >&2
    ps -ef >&2 || true
    for id in $(xdotool search --onlyvisible --name . 2>/dev/null); do
        xdotool getwindowname "$id" >&2
    done
    exit 1
}
# try SECONDS COMMAND...: repeats the command until it succeeds; fails after that time.
try() {
    local end=$((SECONDS + $1))
    until "${@:2}"; do
        [ $SECONDS -lt $end ] || return 1
        sleep 0.2
    done
}
try 60 xdotool get_desktop >/dev/null 2>&1 || fail "no window manager" # it loses windows that open while it starts
lumora owl.jpg &
program=$!

# window TITLE: the number of the program's window whose title begins so; fails while there is none.
window() {
    xdotool search --onlyvisible --all --pid "$program" --name "^$1" 2>/dev/null
}
# press TITLE ARGUMENT...: what xdotool does with these arguments once that window has the keyboard.
press() {
    local id
    id=$(window "$1") && xdotool windowactivate --sync "$id" "${@:2}" 2>/dev/null
}
ended() { ! kill -0 "$program" 2>/dev/null; }
is_saved() { [ -e again.jpg ]; }
ask_to_save() { press Lumora key ctrl+s && try 3 window Save; }
save() { is_saved || { press Save key ctrl+a type --delay 50 "$HOME/again.jpg" && press Save key Return && try 10 is_saved; }; }
ask_to_leave() { press Lumora key alt+F4 && try 3 window Exit; }
leave() { window Corvane || { press Exit key Return && try 10 window Corvane; }; } # back to the first window
end() { ended || { press Corvane key alt+F4 && try 3 ended; }; }

try 120 window Lumora >/dev/null || fail "no window"
try 60 ask_to_save >/dev/null || fail "no window to save"
try 60 save || fail "nothing is saved"
# It fails on warnings too, such as that of an early end.
djpeg -outfile "$more/seen" again.jpg && [ "$(sed '2!d;q' "$more/seen")" = "1600 1200" ] ||
    fail "the saved picture is not whole"
try 60 ask_to_leave >/dev/null || fail "it does not ask before it ends"
try 60 leave >/dev/null || fail "it does not leave the editor"
try 60 end || fail "it does not end"
wait "$program" || fail "it ends with $?"
rm -r "$more"
END
inside bare runuser -u child -- bash -c "$(cat "$folder/use")"

say "Removing"
quietly "$log" inside bare apt-get -q purge -y lumora
files >"$folder/after"
# What the user keeps: the picture, settings, the list of what was saved, and folders that were missing.
kept='again\.jpg|Documents|\.config(/lumora(/.*)?|/QtProject\.conf)?|\.cache(/lumora)?|\.local(/state(/lumora(/.*)?)?)?'
if ! diff "$folder/before" <(grep -vxE "home/child/($kept)" "$folder/after"); then
    fail "Lumora left files behind."
fi
say "Nothing is left of it on $suite."
