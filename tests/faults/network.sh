#!/bin/bash
# network.sh LUMORA-PLAY SOURCE: a session with every way in and out of the program but the mail, under strace: nothing
# goes out, not even a question for a name.
set -euo pipefail
play=$(realpath "$1")
folder=$(mktemp -d)
trap 'rm -r "$folder"' EXIT
export QT_QPA_PLATFORM=offscreen LUMORA_PLAY_OUT=$folder SANE_CONFIG_DIR=$(dirname "$2")/../content/guide/sane
strace -f -qq -o "$folder/trace" -e trace=connect,sendto,sendmsg,sendmmsg,bind "$play" --patience 60000 "$2" >/dev/null
# Sockets of this machine's own programs (the desktop, the print system) are files.
out=$(grep -E 'AF_INET6?' "$folder/trace" || true)
[ -z "$out" ] || { echo "it talks to the network:" >&2; echo "$out" >&2; exit 1; }
echo "$(grep -c AF_UNIX "$folder/trace" || true) messages to programs of this machine, none to the network"
