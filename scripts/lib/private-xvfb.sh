# Sourced by the scripts that drive the real bar under X. start_private_xvfb SCRATCH [SCREEN]
# starts an Xvfb that only this script uses and exports DISPLAY; its pid is left in $xvfb.
#  - The server picks a free display number itself (-displayfd): a number worked out here could
#    meet a server of a parallel test run, or of another job on the same machine.
#  - -noreset: by default the server resets when its last client leaves, and a program started
#    while it resets can fail to connect. The scripts start one program after another, and
#    between them there are no clients at all.
start_private_xvfb() {
    local scratch=$1 screen=${2:-1280x800x24}
    Xvfb -displayfd 3 -noreset -screen 0 "$screen" -nolisten tcp 3>"$scratch/display" \
        >"$scratch/xvfb.log" 2>&1 &
    xvfb=$!
    private_xvfb_log="$scratch/xvfb.log"
    for _ in $(seq 200); do
        [[ -s "$scratch/display" ]] && break
        kill -0 "$xvfb" 2>/dev/null || break
        sleep 0.05
    done
    local number
    number=$(cat "$scratch/display" 2>/dev/null)
    if [[ -z "$number" ]]; then
        echo "Xvfb didn't start:" >&2
        cat "$scratch/xvfb.log" >&2
        return 1
    fi
    export DISPLAY=":$number"
}

# Says why the server is gone, for the scripts to call when a program can't reach it.
private_xvfb_alive() {
    kill -0 "$xvfb" 2>/dev/null && return 0
    echo "the private Xvfb ($DISPLAY) has gone; its log:" >&2
    cat "$private_xvfb_log" >&2
    return 1
}
