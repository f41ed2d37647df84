#!/bin/bash
# Builds the benchmarks and prints how the library compares:
#
#     scripts/bench.sh [options]              in time, with its peers, or with --builds its builds with each other
#     scripts/bench.sh accuracy [options]     the transforms in error
#     scripts/bench.sh ulp [options]          the elementary functions in error
#     scripts/bench.sh report                 in time, both targets, all of it, written to docs/performance.md
#
# bench/compare, bench/accuracy and bench/ulp tell the options by --help. Times are also written to build/bench/bench.csv and
# bench.png. TARGET=linux-i386 takes the library for 32 bits. Installs what it needs (Debian, Ubuntu).
set -euo pipefail
cd "$(dirname "$0")/.."
source scripts/install-packages.sh
install_packages g++ cmake ninja-build pkg-config libbenchmark-dev libfftw3-dev libeigen3-dev libvolk2-dev \
    libopenblas-dev python3 python3-matplotlib python3-numpy
install_packages libsleef-dev || echo "Without SLEEF" >&2
install_packages libhwy-dev || echo "Without the sort of Highway" >&2
install_packages clang-19 || install_packages clang || echo "Without the loops of clang" >&2

# Debian's own Python, which is the one that has the packages.
python=/usr/bin/python3
[ -x $python ] || python=python3

# build TARGET: where its benchmarks are
build() {
    if [ "$1" = linux-i386 ]; then
        install_packages g++-multilib libbenchmark-dev:i386 >&2
    fi
    cmake --preset "$1" -B "build/bench-$1" -DZPP_BUILD_TESTS=OFF -DZPP_BUILD_BENCH=ON >/dev/null
    cmake --build "build/bench-$1" >&2
    echo "build/bench-$1"
}

report() {
    echo "# Performance"
    echo
    echo "Made by \`scripts/bench.sh report\`; \`CONTRIBUTING.md\` tells how to read it."
    local target
    for target in linux-x86_64 linux-i386; do
        printf '\n## %s\n\n```text\n' "$target"
        $python bench/compare --build "build/bench-$target"
        printf '```\n\n### The builds beside each other\n\n```text\n'
        $python bench/compare --build "build/bench-$target" --builds
        printf '```\n'
    done
}

case "${1:-}" in
    report)
        build linux-x86_64 >/dev/null
        build linux-i386 >/dev/null
        report >build/performance.md
        mv build/performance.md docs/performance.md
        ;;
    accuracy)
        shift
        exec $python bench/accuracy --build "$(build linux-x86_64)" "$@"
        ;;
    ulp)
        shift
        exec $python bench/ulp --build "$(build linux-x86_64)" "$@"
        ;;
    *) exec $python bench/compare --build "$(build "${TARGET:-linux-x86_64}")" "$@" ;;
esac
