#!/usr/bin/env bash
# Runs a command with $HOME/Downloads on a 1 MiB tmpfs of its own, inside a private mount
# namespace, and TELVANE_SMALL_DOWNLOADS set; the machine's mounts are never touched. Needs
# root; elsewhere the command runs as it is, without the variable, and the test says it skips.
set -eu
if [ "$(id -u)" -eq 0 ] && unshare --mount --propagation private true 2>/dev/null; then
    mkdir -p "$HOME/Downloads"
    exec unshare --mount --propagation private -- sh -c '
        mount -t tmpfs -o size=1m telvane-small "$HOME/Downloads" || exec "$@"
        TELVANE_SMALL_DOWNLOADS=1 exec "$@"' sh "$@"
fi
exec "$@"
