#!/usr/bin/env bash
# The editor in its real window, driven by hand on a display in memory: keys, clicks, drags, the wheel, Chinese from the
# clipboard. What it saves must be what the recorded session makes again without a screen.
#   edit_xvfb_test.sh TVO
# Nothing here waits for a time: the display keeps the order of events, and what must have happened is looked for.
set -uo pipefail
tvo=$1
for tool in Xvfb xdotool xclip; do
    command -v $tool >/dev/null || { echo "skipped: $tool is not installed (./dev test installs it)"; exit 77; }
done

folder=$(mktemp -d)
children=()
cleanup() {
    for pid in "${children[@]}"; do kill "$pid" 2>/dev/null; done
    wait 2>/dev/null
    rm -rf "$folder"
}
trap cleanup EXIT
fail() {
    echo "FAILED: $*"
    echo "--- the recording"; cat "$folder/session.play" 2>/dev/null
    echo "--- the editor"; cat "$folder/editor.txt" 2>/dev/null
    exit 1
}
# until_true WHAT COMMAND...: up to two minutes
until_true() {
    local what=$1 tries
    shift
    for ((tries = 0; tries < 1200; ++tries)); do
        "$@" >/dev/null 2>&1 && return 0
        sleep 0.1
    done
    fail "waited in vain: $what"
}

cd "$folder" || exit 1
export HOME=$folder XDG_CONFIG_HOME=$folder/config XDG_STATE_HOME=$folder/state XDG_RUNTIME_DIR=$folder
unset WAYLAND_DISPLAY QT_QPA_PLATFORM QT_SCALE_FACTOR QT_IM_MODULE
Xvfb -displayfd 3 -screen 0 1200x900x24 -nolisten tcp 3>display 2>/dev/null &
children+=($!)
until_true "a display" test -s display
export DISPLAY=:$(tr -d '\n' <display)

printf 'line 0 0 12000 0\nline 12000 0 12000 9000\nline 0 9000 12000 9000\nline 0 0 0 9000\nsave model.tvo\n' | "$tvo" run - >/dev/null || fail "no model to begin with"
"$tvo" edit model.tvo --size 1000x760 --record session.play >editor.txt 2>&1 &
editor=$!
children+=($editor)
until_true "the window" xdotool search --onlyvisible --name model
window=$(xdotool search --onlyvisible --name model | head -1)
focused() { xdotool windowfocus "$window" && [ "$(xdotool getwindowfocus)" = "$window" ]; }
until_true "the focus" focused

paste() {
    printf '%s' "$1" | xclip -selection clipboard
    xdotool key ctrl+v
    xdotool key Return
    until_true "$1 in the line" grep -q "^input $1" session.play
}
at() { xdotool mousemove --window "$window" "$1" "$2"; }

# A wall by its name from the clipboard and typed points, the second one by a blank.
paste 直线
xdotool type --delay 5 '3000,0'
xdotool key Return
xdotool type --delay 5 '@0,9000 '
# The right button repeats; two clicks.
at 400 300; xdotool click 3
at 300 200; xdotool click 1
at 520 340; xdotool click 1
# The wheel and the middle button move the view while a circle waits for its rim; then it is given up.
xdotool type --delay 5 'circle'; xdotool key Return
at 500 300; xdotool click 1
xdotool click 4 click 4 click 5
xdotool mousedown 2; at 540 330; at 560 350; xdotool mouseup 2
at 600 400; xdotool key Escape
# A window about something, the second way to select, and away from it.
paste 删除
xdotool key Tab
xdotool key Escape Escape
xdotool key F3 F7 F7 F3 F6 F6 F5
# The keyboard's pointer: a line from where it stands, one step on.
xdotool type --delay 5 'line'; xdotool key Return
xdotool type --delay 5 '4000,4000'; xdotool key Return
xdotool type --delay 5 '@0,3000'; xdotool key Return
before=$(stat -c %i model.tvo)
paste 保存
saved() { [ -s model.tvo ] && [ "$(stat -c %i model.tvo)" != "$before" ]; }
until_true "the saved model" saved

for event in mdown mup rdown ldown "wheel .* 120" "wheel .* -120" "key tab" "key esc" "key F5"; do
    grep -q "^$event" session.play || fail "the recording has no $event"
done
kill -TERM $editor
wait $editor
status=$?
[ $status -eq 0 ] || fail "the editor ended with status $status"

"$tvo" play session.play >played.txt 2>&1 || fail "the recording can't be played: $(cat played.txt)"
dump() { printf 'open %s\ndump\nstat\n' "$1" | "$tvo" run - | grep -v '"type":"open"'; }
dump model.tvo >by_hand.txt
dump session.play.tvo >by_play.txt
cmp -s by_hand.txt by_play.txt || { diff by_hand.txt by_play.txt; fail "the played session ends in another model"; }
# What was typed stands where it was meant: the wall's ends on the borders, the last line.
for node in '"x":3000.0,"y":0.0' '"x":3000.0,"y":9000.0' '"x":4000.0,"y":4000.0' '"x":4000.0,"y":7000.0'; do
    grep -q "$node" by_hand.txt || { cat by_hand.txt; fail "no node at $node"; }
done
echo "passed: $(grep -c '"type":"line"' by_hand.txt) lines"
