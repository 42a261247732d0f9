#!/usr/bin/env bash
# The editor in its real window, driven by hand on a display in memory: keys, clicks, drags, the wheel, Chinese from the
# clipboard. What it saves must be what the recorded session makes again without a screen.
#   edit_xvfb_test.sh TVO
# Nothing here waits for a time: the display keeps the order of events, and what must have happened is looked for.
. "$(dirname "${BASH_SOURCE[0]}")/xvfb_editor.sh"

printf 'line 0 0 12000 0\nline 12000 0 12000 9000\nline 0 9000 12000 9000\nline 0 0 0 9000\nsave model.tvo\n' | "$tvo" run - >/dev/null || fail "no model to begin with"
start_editor model model.tvo --record session.play

paste() {
    printf '%s' "$1" | xclip -selection clipboard
    xdotool key ctrl+v
    xdotool key Return
    until_true "$1 in the line" grep -q "^input $1" session.play
}

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
dump model.tvo >by_hand.txt
dump session.play.played/1/model.tvo >by_play.txt
cmp -s by_hand.txt by_play.txt || { diff by_hand.txt by_play.txt; fail "the played session ends in another model"; }
# What was typed stands where it was meant: the wall's ends on the borders, the last line.
for node in '"x":3000.0,"y":0.0' '"x":3000.0,"y":9000.0' '"x":4000.0,"y":4000.0' '"x":4000.0,"y":7000.0'; do
    grep -q "$node" by_hand.txt || { cat by_hand.txt; fail "no node at $node"; }
done
echo "passed: $(grep -c '"type":"line"' by_hand.txt) lines"
