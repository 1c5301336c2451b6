# Finds a display, or starts a virtual one. Sourced by ../run.

# True when a server accepts connections on this socket. (perl-base is part of every Debian.)
answers() {
    perl -MIO::Socket::UNIX -e 'exit !IO::Socket::UNIX->new(Peer => $ARGV[0])' "$1" 2>/dev/null
}

# True when DISPLAY or WAYLAND_DISPLAY names a screen that can be reached.
has_display() {
    if [ -n "${WAYLAND_DISPLAY:-}" ]; then
        case $WAYLAND_DISPLAY in
        /*) answers "$WAYLAND_DISPLAY" && return 0 ;;
        *) answers "${XDG_RUNTIME_DIR:-}/$WAYLAND_DISPLAY" && return 0 ;;
        esac
    fi
    [ -n "${DISPLAY:-}" ] || return 1
    local host=${DISPLAY%:*} number=${DISPLAY##*:}
    number=${number%%.*}
    if [ -z "$host" ] || [ "$host" = unix ]; then
        answers "/tmp/.X11-unix/X$number"
    else
        timeout 3 bash -c "exec 3<>/dev/tcp/$host/$((6000 + number))" 2>/dev/null
    fi
}

# start_virtual_display WIDTHxHEIGHT: starts an X server that ends with the script.  It refuses nobody because
# another program was the last to leave (-noreset).
start_virtual_display() {
    mkdir -p build/log
    exec 9< <(exec Xvfb -displayfd 1 -screen 0 "$1x24" -nolisten tcp -noreset 2>build/log/xvfb.log)
    local screen=$! number
    # shellcheck disable=SC2064 # the process number as it is now
    trap "kill $screen 2>/dev/null || true" EXIT
    read -r -t 30 number <&9 || fail "The virtual display did not start; see build/log/xvfb.log."
    export DISPLAY=:$number QT_QPA_PLATFORM=xcb
    unset WAYLAND_DISPLAY
}
