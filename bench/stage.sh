# For the scripts that measure starts: a screen of 1280 x 800 and a home of their own, and a photo. From "$0 [LUMORA
# [ROUNDS]]" it sets $lumora and $rounds, and $stage, a folder with photo.jpg that goes at the end. Sourced after `bench`.
lumora=$(readlink -f "${1:-$bench/../build/release/bin/lumora}")
rounds=${2:-15}
[ -x "$lumora" ] || { echo "$lumora is missing: cmake --preset release && cmake --build --preset release" >&2; exit 1; }
for needed in Xvfb:xvfb convert:imagemagick python3:python3 dbus-run-session:dbus-daemon; do
    command -v "${needed%:*}" >/dev/null || { echo "${needed%:*} is missing: apt-get install ${needed#*:}" >&2; exit 1; }
done
stage=$(mktemp -d)
trap '[ -z "${screen:-}" ] || kill "$screen"; rm -rf "$stage"' EXIT

# As large as a camera's file, with a field of one colour in the middle by which it is known on the screen.
convert "$bench/../resources/installed/My Photos/animals/ladybird.jpg" -resize '4000x3000!' -attenuate 0.25 +noise Gaussian \
    -fill '#ff00ff' -draw 'rectangle 1200,900 2800,2100' -sampling-factor 4:2:0 -quality 92 "$stage/photo.jpg"

export HOME=$stage/home XDG_RUNTIME_DIR=$stage/run
unset XDG_CONFIG_HOME XDG_CACHE_HOME XDG_STATE_HOME XDG_DATA_HOME QT_QPA_PLATFORM WAYLAND_DISPLAY DBUS_SESSION_BUS_ADDRESS
mkdir -m 700 "$HOME" "$XDG_RUNTIME_DIR"
Xvfb -displayfd 3 -screen 0 1280x800x24 -nolisten tcp 3>"$stage/display" 2>/dev/null &
screen=$!
until [ -s "$stage/display" ]; do sleep 0.1; done
DISPLAY=:$(cat "$stage/display")
export DISPLAY
