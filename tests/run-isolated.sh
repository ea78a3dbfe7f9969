#!/usr/bin/env bash
# Runs a test binary with a private HOME and private XDG folders, so that it never
# reads or writes the user's real settings, documents or downloads.
set -eu
root=$(mktemp -d "${TMPDIR:-/tmp}/telvane-test.XXXXXX")
trap 'rm -rf "$root"' EXIT
export HOME="$root/home"
export XDG_CONFIG_HOME="$root/config" XDG_DATA_HOME="$root/data" XDG_CACHE_HOME="$root/cache"
export XDG_STATE_HOME="$root/state" XDG_RUNTIME_DIR="$root/runtime"
export XDG_DOCUMENTS_DIR="$HOME/Documents" XDG_DOWNLOAD_DIR="$HOME/Downloads"
export QT_QPA_PLATFORM="${QT_QPA_PLATFORM:-offscreen}"
mkdir -p "$HOME/Documents" "$HOME/Downloads" "$XDG_CONFIG_HOME" "$XDG_DATA_HOME" "$XDG_CACHE_HOME" \
    "$XDG_STATE_HOME" "$XDG_RUNTIME_DIR"
chmod 700 "$XDG_RUNTIME_DIR"
# user-dirs.dirs makes QStandardPaths resolve Documents and Downloads inside HOME.
cat > "$XDG_CONFIG_HOME/user-dirs.dirs" <<DIRS
XDG_DOCUMENTS_DIR="\$HOME/Documents"
XDG_DOWNLOAD_DIR="\$HOME/Downloads"
DIRS
"$@"
