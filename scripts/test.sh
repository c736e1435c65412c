#!/usr/bin/env bash
# Installs what is missing, builds, and runs every test. Tests labelled "long"
# (the five- and six-movers of the corpus, minutes of work) run only with
# ZORVANE_LONG_TESTS=1.
set -euo pipefail
cd "$(dirname "$0")/.."
bash scripts/setup.sh
bash scripts/build.sh
if [ "${ZORVANE_LONG_TESTS:-0}" = 1 ]; then
    ctest --test-dir build --output-on-failure -j2
else
    ctest --test-dir build --output-on-failure -j2 -LE long
fi
