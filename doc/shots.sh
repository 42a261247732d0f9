#!/usr/bin/env bash
# Makes the README's pictures by driving the real window on a screen of its own.
#   doc/shots.sh TVO FOLDER     TVO: the program; the pictures go into FOLDER
set -euo pipefail

tvo=$(readlink -f "$1")
mkdir -p "$2"
out=$(readlink -f "$2")
top=$(cd "$(dirname "$(readlink -f "${BASH_SOURCE[0]}")")/.." && pwd)
work=$(mktemp -d)
editor= screen=
cleanup() {
    [ -z "$editor" ] || kill "$editor" 2>/dev/null || true
    [ -z "$screen" ] || kill "$screen" 2>/dev/null || true
    rm -rf "$work"
}
trap cleanup EXIT

# A screen, and settings of nobody.
mkfifo "$work/number"
Xvfb -displayfd 3 -screen 0 1280x860x24 -nolisten tcp 3>"$work/number" 2>/dev/null &
screen=$!
read -r number <"$work/number"
export DISPLAY=:$number XDG_CONFIG_HOME=$work/config XDG_STATE_HOME=$work/state QT_QPA_PLATFORM=xcb
unset WAYLAND_DISPLAY

wait_for() {  # until a command succeeds, twenty seconds at most
    local i
    for ((i = 0; i < 200; ++i)); do
        if "$@" >/dev/null 2>&1; then return 0; fi
        sleep 0.1
    done
    echo "shots: waited in vain for: $*" >&2
    return 1
}
open_editor() {  # open_editor [FILE]
    rm -rf "$XDG_STATE_HOME"
    (cd "$work" && exec "$tvo" edit --size 1280x860 "$@") &
    editor=$!
    wait_for xdotool search --onlyvisible --name TvoBase
    window=$(xdotool search --onlyvisible --name TvoBase | head -1)
    xdotool windowmove "$window" 0 0 windowfocus "$window"
    sleep 1
}
close_editor() {
    kill "$editor"
    wait "$editor" 2>/dev/null || true
    editor=
}
say() {  # types a line into the command line; what is not ASCII comes by the clipboard
    if [[ $1 =~ ^[[:ascii:]]*$ ]]; then
        xdotool type --delay 5 -- "$1"
    else
        printf '%s' "$1" | xclip -selection clipboard
        xdotool key ctrl+v
    fi
    xdotool key Return
    sleep 0.3
}
at() { xdotool mousemove "$1" "$2"; sleep 0.15; }
click() { at "$1" "$2"; xdotool click "${3:-1}"; sleep 0.3; }
shot() {
    sleep 0.5
    import -window root "$out/$1.png"
    echo "$out/$1.png"
}

# The sample, its plates, and a line on its way with its snap symbol.
open_editor
say 形成板
click 1230 81  # the branch of drawing commands
say 直线
click 447 431
at 630 349
shot editor

# What keeps cells open: a stray line in a room, an end that stops short of a wall.
xdotool key Escape Escape
say 直线
say 2000,2000
say @1500,900
say 直线
say 20000,1500
say @2500,0
say 检查
shot check
close_editor

# A deflection as a cloud, and in space.
open_editor
say 打开场
sleep 1
xdotool type --delay 5 -- "$top/examples/plate_field.txt"
xdotool key Return
sleep 1
say 云图
say 全图
shot field
say 三维场
sleep 1
shot space
close_editor

# The dialog of an axis grid.
open_editor
say 正交轴网
shot axes
close_editor
