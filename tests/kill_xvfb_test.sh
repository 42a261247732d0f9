#!/usr/bin/env bash
# The editor's real window killed in the middle of a drag, of a save and of what it keeps for a crash, three times each.
# What comes back is the model after the last step that had reached the disk, or the one that was on its way.
#   kill_xvfb_test.sh TVO
. "$(dirname "${BASH_SOURCE[0]}")/xvfb_editor.sh"

lines() { dump "$1" | grep -c '"type":"line"'; }
journal() { stat -c %s .model.tvo-journal 2>/dev/null || echo 0; }
grown() { [ "$(journal)" -gt "$1" ]; }
wall() {  # a wall of its own, typed; $1: its number
    local before
    before=$(journal)
    xdotool type --delay 2 "line"; xdotool key Return
    xdotool type --delay 2 "$((1000 * $1)),1000"; xdotool key Return
    xdotool type --delay 2 "@0,2000"; xdotool key Return
    [ "${2:-wait}" = hurry ] || until_true "wall $1 in the journal" grown "$before"
}
kill_it() {
    kill -KILL $editor
    wait $editor 2>/dev/null
}
# recovered LEAST MOST WHEN: so many lines come back
recovered() {
    local file=model.tvo count
    rm -f back.tvo
    if "$tvo" recover model.tvo --journal -o back.tvo >recover.txt 2>&1; then file=back.tvo; fi
    count=$(lines $file) || fail "$3: the model can't be read: $(cat recover.txt)"
    [ "$count" -ge "$1" ] && [ "$count" -le "$2" ] || fail "$3: $count lines, not $1 to $2: $(cat recover.txt)"
}
begin() {
    rm -rf .model.tvo* model.tvo* state
    printf 'line 0 0 12000 0\nsave model.tvo\n' | "$tvo" run - >/dev/null || fail "no model to begin with"
    start_editor model model.tvo
    wall 1
    wall 2
}

for round in 1 2 3; do
    begin
    at 500 300; xdotool mousedown 2; at $((520 + 10 * round)) 330; at 560 350
    kill_it
    recovered 3 3 "in a drag, round $round"
    xdotool mouseup 2

    begin
    printf 保存 | xclip -selection clipboard
    xdotool key ctrl+v Return
    sleep 0.0$round
    kill_it
    recovered 3 3 "in a save, round $round"

    begin
    wall 3 hurry
    sleep 0.0$round
    kill_it
    recovered 3 4 "in a step, round $round"
done
echo "passed"
