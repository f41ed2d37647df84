#!/bin/bash
# Builds the benchmarks and prints how the library compares, in time or with "accuracy" as the first argument in error;
# see bench/compare --help and bench/accuracy --help for the options it passes on. The times are also written to
# build/bench/bench.csv and bench.png. Installs what it needs (Debian, Ubuntu).
set -euo pipefail
cd "$(dirname "$0")/.."
source scripts/install-packages.sh
install_packages g++ cmake ninja-build pkg-config libbenchmark-dev libfftw3-dev python3 python3-matplotlib python3-numpy

cmake --preset linux-x86_64 -B build/bench -DZPP_BUILD_TESTS=OFF -DZPP_BUILD_CHECK=OFF -DZPP_BUILD_BENCH=ON >/dev/null
cmake --build build/bench
# Debian's own Python, which is the one that has the packages.
python=/usr/bin/python3
[ -x $python ] || python=python3
tool=compare
if [ "${1:-}" = accuracy ]; then
    tool=$1
    shift
fi
exec $python bench/$tool "$@"
