#!/usr/bin/env bash
# Gives the assistive client a display and a session bus of its own: assistive_client.sh BIN_DIR
set -euo pipefail
here=$(cd "$(dirname "$0")" && pwd)
runtime=$(mktemp -d)
trap 'rm -rf "$runtime"' EXIT
export XDG_RUNTIME_DIR=$runtime NO_AT_BRIDGE=0
exec dbus-run-session -- xvfb-run -a /usr/bin/python3 -W ignore::DeprecationWarning "$here/assistive_client.py" "$1"
