#!/usr/bin/env bash
# Runs an assistive client with a display server and a session bus of its own: assistive_client.sh BIN_DIR [CLIENT.py]
set -euo pipefail
here=$(cd "$(dirname "$0")" && pwd)
runtime=$(mktemp -d)
trap 'rm -rf "$runtime"' EXIT
export XDG_RUNTIME_DIR=$runtime NO_AT_BRIDGE=0
exec dbus-run-session -- xvfb-run -a /usr/bin/python3 -B -W ignore::DeprecationWarning "$here/${2:-assistive_client.py}" "$1"
