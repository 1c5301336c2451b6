#!/bin/sh
# play.sh LUMORA-PLAY ON LANGUAGE [LINE...]
# Plays aloud.play in that language, with reading aloud switched on (1) or off (0), while a real speech service listens.
# It has to be told to say these lines; tests/support/speech-server.sh has the voices.
play=$1 on=$2 language=$3
shift 3
here=$(dirname "$0")
folder=$(mktemp -d)
sh "$here/../../support/speech-server.sh" "$folder" &
server=$!
trap 'kill $server; rm -rf "$folder"' EXIT
until [ -S "$folder/socket" ]; do
  kill -0 $server || exit 1
  sleep 0.1
done
(echo "setting For me/ReadAloud=$on"; echo "language $language"; cat "$here/aloud.play") |
  SPEECHD_ADDRESS="unix_socket:$folder/socket" "$play" --patience 30000 - || exit 1
touch "$folder/said"
{ [ $# -eq 0 ] || printf '%s\n' "$@"; } >"$folder/expected"
grep -v '^[A-Z][a-z]*\. ' "$folder/said" | diff "$folder/expected" - # without what was said to the end
