# A virtual display whose file dialogs are those of a GTK desktop (GNOME, Xfce, Cinnamon, MATE). Sourced by the others
# here; runs in the project's folder.

fail() {
    echo "$*" >&2
    exit 1
}
. scripts/display.sh

# start_touch_screen WIDTHxHEIGHT FOLDER: an X server without hardware, whose touch screen does what is written into the
# socket FOLDER/touch (see touch.py).
start_touch_screen() {
    mkdir -p build/log
    cat >"$2/xorg.conf" <<CONF
Section "ServerFlags"
    Option "AutoAddDevices" "false"
    Option "AutoAddGPU" "false"
EndSection
Section "InputDevice"
    Identifier "touch"
    Driver "inputtest"
    Option "DeviceType" "Touch"
    Option "TouchCount" "5"
    Option "SocketPath" "$2/touch"
EndSection
Section "Device"
    Identifier "card"
    Driver "dummy"
    VideoRam 65536
EndSection
Section "Monitor"
    Identifier "monitor"
    HorizSync 5-1000
    VertRefresh 5-200
EndSection
Section "Screen"
    Identifier "screen"
    Device "card"
    Monitor "monitor"
    DefaultDepth 24
    SubSection "Display"
        Modes "$1"
        Virtual ${1/x/ }
    EndSubSection
EndSection
Section "ServerLayout"
    Identifier "layout"
    Screen "screen"
    InputDevice "touch" "CorePointer"
EndSection
CONF
    exec 9< <(exec /usr/lib/xorg/Xorg -displayfd 1 -config "$2/xorg.conf" -configdir "$2/none" -logfile "$2/xorg.log" \
        -novtswitch -sharevts -nolisten tcp -noreset 2>build/log/xorg.log)
    local server=$! number
    # shellcheck disable=SC2064 # the process number as it is now
    trap "kill $server 2>/dev/null || true" EXIT
    read -r -t 30 number <&9 || fail "The touch screen did not start; see build/log/xorg.log."
    export DISPLAY=:$number QT_QPA_PLATFORM=xcb
    unset WAYLAND_DISPLAY
}

[ "${screen:-}" = none ] || start_virtual_display "${screen:-1280x800}"
# Neither settings nor services of the desktop that runs the tests.
export QT_QPA_PLATFORMTHEME=gtk3 GSETTINGS_BACKEND=memory NO_AT_BRIDGE=1
unset DBUS_SESSION_BUS_ADDRESS

# home_of_its_own FOLDER: what the program keeps of its user goes there.
home_of_its_own() {
    mkdir -p "$1/home/Documents" "$1/run" "$1/tmp"
    chmod 700 "$1/run"
    export HOME=$1/home XDG_RUNTIME_DIR=$1/run XDG_CONFIG_HOME=$1/config XDG_DATA_HOME=$1/data XDG_STATE_HOME=$1/state XDG_CACHE_HOME=$1/cache
    export TMPDIR=$1/tmp
}

# remove_at_end FOLDER: with the display.
remove_at_end() {
    local stop_display
    stop_display=$(trap -p EXIT | cut -d"'" -f2)
    # shellcheck disable=SC2064 # both as they are now
    trap "rm -rf '$1'; $stop_display" EXIT
}

# program_of_its_own LUMORA FOLDER: a copy in there, since the program writes beside itself. It needs a Lumora.ini.
program_of_its_own() {
    local bin each
    bin=$(realpath "$(dirname "$1")")
    mkdir -p "$2"
    ln "$1" "$2/lumora" 2>/dev/null || cp "$1" "$2/lumora"
    for each in languages "My Photos" Videos lumora-devices; do
        ln -s "$bin/$each" "$2/"
    done
    cp "$bin/language.ini" "$2/"
}
