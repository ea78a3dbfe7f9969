#!/usr/bin/env bash
# Screenshots of the alerts the console shows at start when its settings cannot be used
# as they are: a settings file that does not parse, and a computer list that does not
# decode, each at 1000x700 and at 800x600, into docs/screenshots/.
set -euo pipefail
cd "$(dirname "$0")/../.."
build=${TELVANE_BUILD_DIR:-build}
cmake --build "$build" --target telvane screen_grab > /dev/null
out=docs/screenshots
mkdir -p "$out"

# shoot NAME WIDTHxHEIGHT SUITE-CONTENTS
shoot() {
    local name=$1 size=$2 suite=$3
    local home
    home=$(mktemp -d /tmp/telvane-screenshot.XXXXXX)
    mkdir -p "$home/.config/Quorvel"
    printf '%b' "$suite" > "$home/.config/Quorvel/group.com.quorvel.Telvane.conf"
    env -u XDG_CONFIG_HOME -u XDG_DATA_HOME -u QT_QPA_PLATFORM HOME="$home" \
        xvfb-run -a -s "-screen 0 ${size}x24" bash -c '
            "$1" 2> /dev/null > /dev/null &
            console=$!
            xdotool search --sync --onlyvisible --name "could not be read" > /dev/null
            sleep 1 # let the box finish painting
            "$2" "$3"
            kill "$console"
            wait "$console" || true' _ \
        "$build/src/app/telvane" "$build/tests/gui/screen_grab" "$out/startup-alert-$name-$size.png"
    rm -rf "$home"
    echo "screenshots: $out/startup-alert-$name-$size.png"
}

for size in 1000x700 800x600; do
    shoot unreadable-settings "$size" '[General\nremoteComputers=@ByteArray([])\n'
    shoot undecodable-list "$size" \
        '[General]\nremoteComputers="@ByteArray([{\\"name\\":\\"Studio\\",\\"host\\":\\"studio.local\\",\\"port\\":70000}])"\n'
done
