#!/bin/bash
# recovery.sh LUMORA-PLAY MOMENT...: kills the program so many milliseconds after a change of the photo, or once the copy
# is "written", and looks at what the next start offers: a whole picture, the last change or the one before it; the last
# one where there was time to write it.
# Then every answer: Yes opens it, No removes it, Esc keeps it for another start. What else a crash leaves is swept.
set -euo pipefail

fail() {
    echo "$*" >&2
    exit 1
}

play=$(realpath "$1")
shift
moments=("$@")
folder=$(mktemp -d)
trap 'rm -r "$folder"' EXIT
export QT_QPA_PLATFORM=offscreen

# run: plays the script from the standard input where the last one played; the hashes of its photos.
run() {
    { printf 'setting %s\n' Welcome/Show=0 Resize/Advanced=0; cat; } >"$folder/script"
    "$play" --in "$folder/stage" --patience 60000 "$folder/script" 2>"$folder/errors" || {
        [ $? -eq 137 ] || { cat "$folder/errors" >&2; fail "${moment:-}: the script above failed"; }
    }
}

# offered ANSWER: what the next start offers, after that answer; empty when it asks nothing.
offered() {
    run <<SCRIPT
start advanced \$SAMPLES/animals/owl.jpg
expect frmRecover@visible true
click frmRecover.cmdYes
expect state.PhotoModified 1
hash
$1
quit
SCRIPT
}

copies() {
    find "$folder/stage/state" -path '*/recovery/*' -type f -name 'copy*' 2>/dev/null
}

# Two changes of a photo, to 24 megapixels and of 24 megapixels, with a line after each.
changes() {
    cat <<SCRIPT
start advanced \$SAMPLES/animals/ladybird.jpg
click cmdTool4
click optSize4
type txtWidth 5000
type txtHeight 4800
click cmdApplyResize
expect state.size 5000x4800
click cmdResizeExit
$1
click cmdTool8
item FT3 keyInvert
$2
SCRIPT
}

another_stage() {
    rm -rf "$folder/stage"
    mkdir "$folder/stage"
}

another_stage
{ changes hash 'expect state.undo 2'; echo 'hash'; echo 'quit'; } | run >"$folder/hashes"
mapfile -t hashes <"$folder/hashes"
[ ${#hashes[@]} -eq 2 ] && [ "${hashes[0]}" != "${hashes[1]}" ] || fail "the photo was not changed twice: ${hashes[*]}"

seen_before=0
for moment in "${moments[@]}"; do
    another_stage
    {
        if [ "$moment" = written ]; then
            changes 'wait 5000' 'expect state.undo 2'
            echo 'wait 5000'
        else
            changes 'wait 5000' "wait $moment"
        fi
        echo kill
    } | run
    [ -n "$(copies)" ] || fail "$moment: nothing is kept"
    answer=$(offered kill)
    case $answer in
    "${hashes[1]}") ;;
    "${hashes[0]}")
        [ "$moment" != written ] || fail "the last change is not offered although there was time to write it"
        seen_before=$((seen_before + 1))
        ;;
    *) fail "$moment: $answer is offered instead of ${hashes[*]}" ;;
    esac
done
echo "The last change was not yet kept in $seen_before of ${#moments[@]} crashes."

# Right after the photo was recovered the program crashed once more. Esc keeps the copy, and what else a crash leaves in the
# temporary folder is swept: the number of the process that made it is another's now.
mkdir -p "$folder/stage/cache/lumora/lumora-history-$$-abcdef"
touch "$folder/stage/cache/lumora/lumora-history-$$-abcdef/step-1"
run >/dev/null <<'SCRIPT'
start advanced
expect frmRecover@visible true
key Escape
expect state.windows frmMain
expect state.PhotoLoaded 0
quit
SCRIPT
[ ! -e "$folder/stage/cache/lumora/lumora-history-$$-abcdef" ] || fail "the undo steps of a crash are still there"
[ "$(offered kill)" = "${hashes[1]}" ] || fail "the recovered photo is lost by a second crash"

# No removes it, and nothing is asked any more.
run >/dev/null <<'SCRIPT'
start advanced
expect frmRecover@visible true
click frmRecover.cmdNo
expect state.windows frmMain
expect state.PhotoLoaded 0
quit
SCRIPT
[ -z "$(copies)" ] || fail "No keeps the copy"
run >/dev/null <<'SCRIPT'
start advanced
wait 1500
expect state.windows frmMain
quit
SCRIPT

# A pasted picture counts as unchanged, but is in no file: it is kept too.
another_stage
pasted=$(run <<'SCRIPT'
start advanced $SAMPLES/animals/owl.jpg
item Toolbar1 keyCopy
item Toolbar1 keyPaste
expect state.PhotoModified 0
hash
wait 5000
kill
SCRIPT
)
[ -n "$(copies)" ] || fail "the pasted picture is not kept"
[ "$(offered kill)" = "$pasted" ] || fail "the pasted picture is not offered"

# A damaged copy is told and put aside, not offered and not deleted.
copies | while read -r copy; do truncate -s -1 "$copy"; done
run >/dev/null <<'SCRIPT'
start advanced
click msgCopyDamaged.OK
expect state.windows frmMain
quit
SCRIPT
[[ "$(copies)" == */damaged-* ]] || fail "the damaged copy is gone"
run >/dev/null <<'SCRIPT'
start advanced
wait 1500
expect state.windows frmMain
quit
SCRIPT
