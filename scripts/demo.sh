#!/bin/bash
# Builds the library and its demo and runs it: scripts/demo.sh [RECORDING...]
# Without a recording it takes the voice of Debian's alsa-utils. Results are in build/demo/results.
# Installs what it needs (Debian, Ubuntu).
set -euo pipefail
recordings=()
for recording in "$@"; do recordings+=("$(realpath -- "$recording")"); done
cd "$(dirname "$0")/.."
source scripts/install-packages.sh
install_packages g++ cmake ninja-build pkg-config libsndfile1-dev libcairo2-dev fonts-open-sans alsa-utils

cmake --preset linux-x86_64 -B build/demo -DZPP_BUILD_TESTS=OFF -DZPP_BUILD_CHECK=OFF -DZPP_BUILD_EXAMPLES=ON >/dev/null
cmake --build build/demo
build/demo/examples/speech-band --output build/demo/results "${recordings[@]}"
