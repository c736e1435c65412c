#!/usr/bin/env bash
# Configures and builds Zorvane in ./build (Release unless BUILD_TYPE says otherwise).
set -euo pipefail
cd "$(dirname "$0")/.."
cmake -S . -B build -G Ninja -DCMAKE_BUILD_TYPE="${BUILD_TYPE:-Release}" -DZORVANE_GUI=ON "$@"
cmake --build build
