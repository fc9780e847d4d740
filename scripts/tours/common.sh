# Common parts of the tours: the program with a virtual camera, the mouse, screenshots, and waiting for
# the result of a step. Sourced with
#
#   bin   directory of the programs
#   out   directory for the screenshots
export VIRTUALCAMERA_SOCKET=$XDG_RUNTIME_DIR/virtualcamera.socket
log=$out/MarvikTools.log
serial=SVAA009500551

"$bin/virtualcamera" --control "$VIRTUALCAMERA_SOCKET" --plug "cam1,serial=$serial" -- \
    "$bin/MarvikTools" 2>"$log" &
virtualcamera=$!
trap 'kill "$virtualcamera" 2>/dev/null || true' EXIT

step=0
seen=0
# Says what went wrong: the step, what the screen shows, and what the program reported. Errors and
# warnings come first, because the cause of a failed step is often long before its end.
fail() {
    {
        echo "tour: failed after step $step: $*"
        kill -0 "$virtualcamera" 2>/dev/null || echo "tour: the program has ended"
        if import -window root "$out/failed.png" 2>/dev/null; then
            echo "tour: the screen: $out/failed.png"
        fi
        echo "tour: errors and warnings since the last mark:"
        tail -c +$((seen + 1)) "$log" | grep -aE '^[^ ]+ [WCF] |[Ee]rror|[Ff]ailed|not found' |
            tail -n 10 | sed 's/^/    /' || true
        echo "tour: the last lines of $log:"
        tail -n 15 "$log" | sed 's/^/    /'
    } >&2
    exit 1
}
camera() { "$bin/virtualcamera-ctl" "$@"; }
shot() {
    step=$((step + 1))
    local file
    file=$(printf '%s/%02d-%s.png' "$out" "$step" "$1")
    import -window root -crop "${frame[2]}x${frame[3]}+${frame[0]}+${frame[1]}" +repage "$file"
    echo "tour: $file"
}

# The main window is found by its size; dialogs and overlays have other names.
frame=(0 0 800 760)
find_window() {
    local id X Y WIDTH HEIGHT
    for _ in $(seq 100); do
        for id in $(xdotool search --onlyvisible --name '^MarvikTools$' 2>/dev/null); do
            eval "$(xdotool getwindowgeometry --shell "$id")"
            if [ "$WIDTH" = 360 ] && [ "$HEIGHT" = 680 ]; then
                frame=("$X" "$Y" 360 680)
                return
            fi
        done
        sleep 0.1
    done
    fail "the window does not appear"
}
point() { xdotool mousemove $((frame[0] + $1)) $((frame[1] + $2)); sleep 0.15; }
click() { point "$1" "$2"; xdotool click 1; sleep "${3:-0.4}"; }
wheel() { # x, y, notches down
    local button=5 count=$3
    if [ "$count" -lt 0 ]; then button=4 count=$((-count)); fi
    point "$1" "$2"
    xdotool click --repeat "$count" --delay 20 "$button"
    sleep 0.3
}
# "logged" searches the log from this point on.
mark() { seen=$(wc -c <"$log"); }
logged() { # text, seconds
    for _ in $(seq $((${2:-8} * 10))); do
        tail -c +$((seen + 1)) "$log" | grep -qF -- "$1" && return
        sleep 0.1
    done
    fail "not in the log: $1"
}
service() { "$bin/updateservice-ctl" "$UPDATESERVICE_SOCKET" "$@" >/dev/null; }
# The buttons of the update dialogs, which are in the middle of the window.
click_firmware_update() { click 180 505 "${1:-0.8}"; }
click_update() { click 231 462 "${1:-0.3}"; }
click_stop() { click 180 462 "${1:-0.5}"; }
click_later() { click 233 378 "${1:-0.3}"; } # tries again
click_retry() { click 126 379 "${1:-0.5}"; } # gives up
register() {
    for _ in $(seq 50); do
        camera registers cam1 | grep -qx "$1=$2" && return
        sleep 0.1
    done
    fail "the camera's $1 is not $2: $(camera registers cam1 | tr '\n' ' ')"
}

