#!/usr/bin/env bash
# Installs what is missing, builds, and solves the bundled sample problems.
set -euo pipefail
cd "$(dirname "$0")/.."
bash scripts/setup.sh
bash scripts/build.sh
build/bin/zorvane-cli solve data/sample_problems.cp --brief
