#!/usr/bin/env bash
# Installs what is missing, builds, and runs every test but the minutes-long
# corpus runs labelled "slow" (ctest --test-dir build -L slow runs those).
set -euo pipefail
cd "$(dirname "$0")/.."
bash scripts/setup.sh
bash scripts/build.sh
ctest --test-dir build --output-on-failure -j2 -LE slow
