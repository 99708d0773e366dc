# Shared by the scripts in this folder: sourced, never run.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."

# configure_and_build PRESET [TARGET...]
configure_and_build() {
    local preset=$1
    shift
    if [ ! -f "build/$preset/build.ninja" ] || [ CMakePresets.json -nt "build/$preset/build.ninja" ]; then
        cmake --preset "$preset" > "build/$preset.configure.log" 2>&1 || {
            cat "build/$preset.configure.log"
            return 1
        }
    fi
    cmake --build "build/$preset" ${1:+--target "$@"}
}

# with_display COMMAND...: on the display that is there, or on a virtual one.
with_display() {
    if [ -n "${DISPLAY:-}${WAYLAND_DISPLAY:-}" ]; then
        "$@"
    else
        xvfb-run --auto-servernum --server-args="-screen 0 1600x1200x24" "$@"
    fi
}

# with_sound COMMAND...: on the sound server that is there, or on one of our own with a null sink.
with_sound() {
    if pactl info > /dev/null 2>&1; then
        "$@"
        return
    fi
    local runtime status=0
    runtime=$(mktemp -d)
    pulseaudio -n --daemonize=no --exit-idle-time=-1 --disable-shm --log-target=null --use-pid-file=no \
        --load="module-null-sink" --load="module-native-protocol-unix socket=$runtime/pulse" &
    local server=$!
    PULSE_SERVER="unix:$runtime/pulse" "$@" || status=$?
    kill "$server" 2> /dev/null || true
    wait "$server" 2> /dev/null || true
    rm -rf "$runtime"
    return "$status"
}

# start_provider OPTIONS...: sets PROVIDER_URL and PROVIDER_PID.
start_provider() {
    local output
    output=$(mktemp)
    "build/$PRESET/bin/ondavia-demo-provider" --port 0 "$@" > "$output" &
    PROVIDER_PID=$!
    PROVIDER_URL=
    while [ -z "$PROVIDER_URL" ]; do
        kill -0 "$PROVIDER_PID" 2> /dev/null || {
            echo "the demo provider did not start" >&2
            return 1
        }
        PROVIDER_URL=$(sed -n 's/^listening on //p' "$output")
        sleep 0.1
    done
    rm -f "$output"
}
