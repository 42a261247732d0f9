#!/usr/bin/env bash
# The editor's window on a display in memory (Xvfb), driven by xdotool: how long until the first picture, and how long a
# mouse move takes from its arrival to its picture on the screen, and the release that ends a pan.
#   bench/window_bench.sh [TVO]
set -euo pipefail
tvo=${1:-$(dirname "$(readlink -f "$0")")/../build/release/host/tvo}
folder=$(mktemp -d)
children=()
trap 'for pid in "${children[@]}"; do kill "$pid" 2>/dev/null || true; done; wait 2>/dev/null || true; rm -rf "$folder"' EXIT
cd "$folder"
export HOME=$folder XDG_CONFIG_HOME=$folder/config XDG_STATE_HOME=$folder/state
unset WAYLAND_DISPLAY QT_QPA_PLATFORM QT_SCALE_FACTOR
Xvfb -displayfd 3 -screen 0 1920x1200x24 -nolisten tcp 3>display 2>/dev/null &
children+=($!)
until [ -s display ]; do sleep 0.1; done
export DISPLAY=:$(tr -d '\n' <display)

# grid N FILE: N lines each way; their crossings break them
grid() {
    local n=$1 i far=$((($1 - 1) * 1000))
    { for ((i = 0; i < n; ++i)); do
          echo "line $((i * 1000)) 0 $((i * 1000)) $far"
          echo "line 0 $((i * 1000)) $far $((i * 1000))"
      done
      echo plates
      echo "save $2"; } | "$tvo" run - | tail -1 | grep -o '"lines":[0-9]*' | cut -d: -f2
}

start() {  # start FILE
    "$tvo" edit "$1" --size 1280x900 --measure >measured.txt 2>&1 &
    editor=$!
    children+=($editor)
    until grep -q 'first picture' measured.txt; do sleep 0.05; done
    sleep 1
    xdotool windowfocus "$(xdotool search --onlyvisible --name "${1%.tvo}" | head -1)"
}
finish() { sleep 1; kill -TERM $editor; wait $editor; }
moves() {  # 300 of them, 8 ms apart, in a round; with a pen down or not
    local i words=()
    for ((i = 0; i < 300; ++i)); do
        words+=(mousemove $((400 + i * 7 % 400)) $((300 + i * 5 % 250)) sleep 0.008)
    done
    xdotool "${words[@]}"
}
opened() { sed -n 's/opened after \(.*\) ms/\1/p' measured.txt; }
first() { sed -n 's/first picture after \(.*\) ms/\1/p' measured.txt; }
shown() { sed -n 's/\(.*\) mouse moves shown within ms: median \(.*\), 99 of 100 \(.*\), all \(.*\)/\1 | \2 | \3 | \4/p' measured.txt; }
released() { sed -n 's/.* presses and releases shown within ms: .*, all \(.*\)/\1/p' measured.txt; }  # the slowest

printf 'line 0 0 6000 0\nsave small.tvo\n' | "$tvo" run - >/dev/null
live=$(grid 22 live.tvo)  # with nodes and plates 1849 components: a pan runs live
mid=$(grid 31 mid.tvo)
big=$(grid 224 big.tvo)
echo "| lines | ms from the start of the process to the first picture | to the model opened, the middle one of 5 |"
echo "|---|---|---|"
for file in small mid big; do
    : >times.txt
    for round in 1 2 3 4 5; do
        start $file.tvo
        finish
        echo "$(opened) $(first)" >>times.txt
    done
    read -r open picture < <(sort -n times.txt | sed -n 3p)
    case $file in small) count=1 ;; mid) count=$mid ;; big) count=$big ;; esac
    echo "| $count | $picture | $open |"
done
echo
echo "| mouse moves | shown | ms to the screen, median | 99 of 100 | all | the release ms |"
echo "|---|---|---|---|---|---|"
for file in live mid big; do
    case $file in live) count=$live ;; mid) count=$mid ;; big) count=$big ;; esac
    start $file.tvo
    xdotool mousemove 500 400 type --delay 10 'line'
    xdotool key Return
    xdotool click 1
    moves
    finish
    echo "| rubber line, $count lines | $(shown) | |"
    start $file.tvo
    xdotool mousemove 500 400 mousedown 2
    moves
    xdotool mouseup 2
    finish
    echo "| pan, $count lines | $(shown) | $(released) |"
done
