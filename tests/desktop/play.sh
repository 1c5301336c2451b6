#!/bin/bash
# play.sh LUMORA-PLAY SCRIPT: plays a script with the file dialogs of the desktop.
set -euo pipefail
. tests/desktop/display.sh
"$1" --desktop-dialogs --patience 30000 "$2"
