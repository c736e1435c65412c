#!/usr/bin/env bash
# Installs the Debian packages Zorvane needs to build, test, benchmark and fuzz.
# Idempotent: packages already present are left alone. Runs as root (or via sudo).
set -euo pipefail

PACKAGES=(
    cmake ninja-build g++            # build
    libgtest-dev libgmock-dev        # tests
    libbenchmark-dev                 # benchmarks
    libcli11-dev                     # command line of zorvane-cli
    libtbb-dev                       # parallel loops of the endgame tables
    gaviotatb libgaviotatb-dev       # an independent check of the 3-man tables (tests only)
    clang-14 libclang-rt-14-dev      # libFuzzer targets
    clang-format-14                  # the sources' format, checked by the tests
    qt6-base-dev qt6-svg-dev         # desktop window
    fonts-dejavu-core                # chess glyphs of the board view
)

SUDO=""
if [ "$(id -u)" -ne 0 ]; then
    command -v sudo >/dev/null || { echo "setup.sh: run as root or install sudo" >&2; exit 1; }
    SUDO="sudo"
fi

missing=()
for package in "${PACKAGES[@]}"; do
    dpkg-query -W -f='${Status}' "$package" 2>/dev/null | grep -q "install ok installed" || missing+=("$package")
done

if [ "${#missing[@]}" -eq 0 ]; then
    echo "setup.sh: all packages present"
    exit 0
fi

echo "setup.sh: installing ${missing[*]}"
$SUDO apt-get update -qq
DEBIAN_FRONTEND=noninteractive $SUDO apt-get install -y -qq --no-install-recommends "${missing[@]}"
