#!/bin/bash
# Builds the library for every target and runs all tests: Linux and Windows (in Wine), 64 and 32 bits, then 64 bits of
# Linux under AddressSanitizer and UBSan; looks at the sources with scripts/lint.sh. Installs what it needs (Debian,
# Ubuntu). The last lines say how long each stage took and count the tests.
set -uo pipefail
cd "$(dirname "$0")/.." || exit 1
source scripts/install-packages.sh
source scripts/install-wine.sh

# stage NAME COMMAND...: runs the command and notes how long it took.
times=()
stage() {
    local name=$1 start=$SECONDS status=0
    shift
    "$@" || status=$?
    times+=("$(printf '%-36s %4d s' "$name" $((SECONDS - start)))")
    return $status
}

stage "packages" install_packages g++ g++-multilib g++-mingw-w64-i686-posix g++-mingw-w64-x86-64-posix cmake \
    ninja-build pkg-config libgtest-dev libbenchmark-dev python3 python3-mpmath binutils qemu-user valgrind xvfb xauth libsndfile1-dev libcairo2-dev sox ||
    exit 1

# 32-bit Wine first: it must not need the 64-bit one.
presets=(linux-x86_64 linux-i386 windows-i686 windows-x86_64 linux-x86_64-sanitize)
failed=0
ran=()
skipped=()
for preset in "${presets[@]}"; do
    echo "== $preset"
    rm -f "build/$preset"/ctest.xml "build/$preset"/tests/*.xml
    # The benchmarks are built on one target, and beside few peers, to see that they still are.
    [ "$preset" = linux-x86_64 ] && bench=ON || bench=OFF
    stage "$preset: configure" cmake --preset "$preset" -DZPP_BUILD_BENCH=$bench -DZPP_BENCH_PEERS=OFF \
        -DZPP_BUILD_EXAMPLES=ON -DZPP_WARNINGS_AS_ERRORS=ON >/dev/null &&
        stage "$preset: build" cmake --build --preset "$preset" || { failed=1; continue; }
    if [[ $preset = windows-* ]] && ! stage "$preset: Wine" install_wine "${preset#windows-}"; then
        skipped+=("--skipped=$preset: built, but there is no Wine here to run it in")
        continue
    fi
    stage "$preset: tests" ctest --preset "$preset" --parallel "$(nproc)" \
        --output-junit "$PWD/build/$preset/ctest.xml" || failed=1
    ran+=("$preset")
done
echo "== lint"
stage "lint" scripts/lint.sh || failed=1

digest() {
    case $1 in
    windows-*) scripts/wine.sh "${1#windows-}" "build/$1/bin/zpp-check.exe" --hash 2>/dev/null | tr -d '\r' ;;
    *) "build/$1/check/zpp-check" --hash ;;
    esac
}
# What is promised to the last bit is the same on every target.
digests=$(for preset in "${ran[@]}"; do digest "$preset"; done) || failed=1
echo "$digests"
if [ "$(sort -u <<<"$digests" | wc -l)" != 1 ] || [ "$(wc -l <<<"$digests")" != ${#ran[@]} ]; then
    echo "the targets compute different results"
    failed=1
fi
printf '%s\n' "${times[@]}" "$(printf '%-36s %4d s' "all" $SECONDS)"
python3 scripts/count-tests.py "${skipped[@]}" "${ran[@]/#/build/}" || failed=1
exit $failed
