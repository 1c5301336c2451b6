#!/bin/bash
# bare-root.sh SUITE [PACKAGE]: Lumora in a new root of a Debian suite (bookworm, trixie) in which nothing else is. Builds
# the package there, or takes PACKAGE, which was built on that suite. Installs it, opens a photo and saves it under another
# name by real keys and clicks, purges the package and compares the lists of files before and after. Runs in the project's
# folder. Only root may make roots: for others it ends with 77.
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
    package=$(echo "$folder"/build/root/lumora/build/package/lumora_*.deb)
fi

# What presses the keys, what looks at the picture, and a user as a login makes one.
quietly "$log" inside bare apt-get -q install -y --no-install-recommends xvfb xdotool libjpeg-turbo-progs
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
lumora owl.jpg &
program=$!

# window TITLE: its number, once the program shows it; fails after the given seconds.
window() {
    for ((n = 0; n < $2 * 5; ++n)); do
        xdotool search --onlyvisible --all --pid "$program" --name "$1" 2>/dev/null && return
        sleep 0.2
    done
    return 1
}
main=$(window '^Lumora$' 120) || { echo "no window" >&2; exit 1; }
xdotool windowfocus --sync "$main"
for ((tries = 0; ; ++tries)); do # until the photo is there to be saved
    xdotool key ctrl+s
    dialog=$(window '^Save' 3) && break
    [ $tries -lt 20 ] || { echo "no window to save" >&2; exit 1; }
done
for ((tries = 0; tries < 5; ++tries)); do # until it listens to the keys
    sleep 1
    xdotool windowfocus --sync "$dialog" key ctrl+a type --delay 50 "$HOME/again.jpg" || true # it may have closed
    xdotool key Return
    for ((n = 0; n < 100; ++n)); do
        [ ! -e again.jpg ] || break 2
        sleep 0.2
    done
done
# It fails on warnings too, such as that of an early end.
djpeg -outfile "$XDG_RUNTIME_DIR/seen" again.jpg && [ "$(sed '2!d;q' "$XDG_RUNTIME_DIR/seen")" = "1600 1200" ] ||
    { echo "the saved picture is not whole" >&2; exit 1; }
rm "$XDG_RUNTIME_DIR/seen"
for ((tries = 0; tries < 20; ++tries)); do # the window of the save may still be closing
    kill -0 "$program" 2>/dev/null || break
    xdotool mousemove 1248 24 click 1 # the door at the top right
    sleep 2
    xdotool mousemove 557 504 click 1 # "Yes" of the question
    sleep 2
done
! kill -KILL "$program" 2>/dev/null || { echo "it does not end" >&2; exit 1; }
wait "$program" || { echo "it ends with $?" >&2; exit 1; }
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
