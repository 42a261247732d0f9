# What the tests of the editor's real window have in common: a display in memory, a folder of its own, waiting.
# Sourced with the program as $1.
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


around=()  # a program that runs the editor, such as env with what it sets
# start_editor TITLE ARGUMENTS...: opens it and gives its window the keys
start_editor() {
    local title=$1
    shift
    "${around[@]}" "$tvo" edit --size 1000x760 "$@" >editor.txt 2>&1 &
    editor=$!
    children+=($editor)
    until_true "the window" xdotool search --onlyvisible --name "$title"
    window=$(xdotool search --onlyvisible --name "$title" | head -1)
    until_true "the focus" focused
}
focused() { xdotool windowfocus "$window" && [ "$(xdotool getwindowfocus)" = "$window" ]; }
at() { xdotool mousemove --window "$window" "$1" "$2"; }
dump() { printf 'open %s\ndump\nstat\n' "$1" | "$tvo" run - | grep -v '"type":"open"'; }
