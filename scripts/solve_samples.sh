#!/usr/bin/env bash
# Installs what is missing, builds, and solves the bundled sample positions.
set -euo pipefail
cd "$(dirname "$0")/.."
bash scripts/setup.sh
bash scripts/build.sh
while read -r moves placement comment; do
    case "$moves" in ''|'#'*) continue ;; esac
    echo "== #$moves $placement ${comment}"
    build/bin/zorvane-cli mate --fen "$placement" --moves "$moves"
done < data/sample_positions.txt
