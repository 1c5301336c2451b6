#!/bin/sh
# play.sh LUMORA-PLAY SCRIPT SIZE whole|shortened LANGUAGE...
# Plays a script of this folder on a screen of that size in each of these languages, several at a time: a play mostly
# waits. "whole": a text that is shortened fails it.
play=$1 script=$2 size=$3 texts=$4
shift 4
if [ $# -gt 1 ]; then
  printf '%s\n' "$@" | xargs -P 6 -n 1 sh "$0" "$play" "$script" "$size" "$texts"
  exit
fi
expect=expect-fits
[ "$texts" = whole ] && expect='expect-fits whole'
# The notice about small screens, which would come first, has a script of its own.
said=$( (echo 'setting Display Message/Value=0'; echo "language $1"
  sed -e '/^shot /d' -e "s/^expect-fits\$/$expect/" "$(dirname "$0")/$script.play") |
  "$play" --patience 30000 --size "$size" - 2>&1) && exit
printf '%s in %s:\n%s\n' "$script" "$1" "$said"
exit 1
