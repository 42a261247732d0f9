#!/usr/bin/env bash
# The editor's real window killed in the middle of a drag, of a save and of what it keeps for a crash, three times each.
# What comes back is the model after the last step that was written whole.
#   kill_xvfb_test.sh TVO KILL_POINT
kill_point=$2
. "$(dirname "${BASH_SOURCE[0]}")/xvfb_editor.sh"

lines() { dump "$1" | grep -c '"type":"line"'; }
journal() { stat -c %s .model.tvo-journal 2>/dev/null || echo 0; }
grown() { [ "$(journal)" -gt "$1" ]; }
wall() {  # a wall of its own, typed; $1: its number
    xdotool type --delay 2 "line"; xdotool key Return
    xdotool type --delay 2 "$((1000 * $1)),1000"; xdotool key Return
    xdotool type --delay 2 "@0,2000"; xdotool key Return
}
kept_wall() {
    local before
    before=$(journal)
    wall "$1"
    until_true "wall $1 in the journal" grown "$before"
}
dead() { ! kill -0 $editor; }
# recovered LINES WHEN: so many come back
recovered() {
    local file=model.tvo count
    rm -f back.tvo
    if "$tvo" recover model.tvo --journal -o back.tvo >recover.txt 2>&1; then file=back.tvo; fi
    count=$(lines $file) || fail "$2: the model can't be read: $(cat recover.txt)"
    [ "$count" -eq "$1" ] || fail "$2: $count lines, not $1: $(cat recover.txt)"
}
# begin [OPERATION COUNT HOW]: a model of one line in the window, then two walls; it dies at such an operation
begin() {
    rm -rf .model.tvo* model.tvo* state log
    printf 'line 0 0 12000 0\nsave model.tvo\n' | "$tvo" run - >/dev/null || fail "no model to begin with"
    around=()
    [ $# -eq 0 ] || around=(env "TVO_KILL_FOLDER=$folder/" "TVO_KILL_LOG=$folder/log" "TVO_KILL_ON=$1" "TVO_KILL_AT=$2"
        "TVO_KILL_HOW=$3" "LD_PRELOAD=$kill_point" "ASAN_OPTIONS=${ASAN_OPTIONS:-}:verify_asan_link_order=0")
    start_editor model model.tvo
    kept_wall 1
    kept_wall 2
}
# died WHERE
died() {
    until_true "the death at: $1" dead
    wait $editor 2>/dev/null
    tail -1 log | grep -q "^died before $1" || fail "it died elsewhere: $(tail -1 log)"
}
# in_a_save OPERATION COUNT HOW
in_a_save() {
    begin "$@"
    printf 保存 | xclip -selection clipboard
    xdotool key ctrl+v Return
    died "$1"
    recovered 3 "in a save, $*"
}
# in_a_step LINES OPERATION HOW: the third step's; the first such operation begins the journal
in_a_step() {
    begin "$2" 4 "$3"
    wall 3
    died "$2"
    recovered "$1" "in a step, $2 $3"
}

for round in 1 2 3; do
    begin
    at 500 300; xdotool mousedown 2; at $((520 + 10 * round)) 330; at 560 350
    kill -KILL $editor
    wait $editor 2>/dev/null
    recovered 3 "in a drag, round $round"
    xdotool mouseup 2
done

in_a_save "write model.tvo.saving" 3 half
in_a_save "fsync model.tvo.saving" 1 power
in_a_save "rename model.tvo.saving" 2 power  # the first gives the one before its name

in_a_step 3 "write .model.tvo-journal" half
in_a_step 4 "fdatasync .model.tvo-journal" before
in_a_step 3 "fdatasync .model.tvo-journal" power
echo "passed"
