#!/bin/bash
# Builds the library for every target and runs all tests: Linux and Windows (in Wine), 64 and 32 bits, then 64 bits of
# Linux under AddressSanitizer and UBSan. Installs what it needs (Debian, Ubuntu). The last lines count the tests.
set -uo pipefail
cd "$(dirname "$0")/.."
source scripts/install-packages.sh
source scripts/install-wine.sh
install_packages g++ g++-multilib g++-mingw-w64-i686-posix g++-mingw-w64-x86-64-posix cmake ninja-build pkg-config \
    libgtest-dev python3 binutils qemu-user valgrind xvfb xauth libsndfile1-dev libcairo2-dev || exit 1

presets=(linux-x86_64 linux-i386 windows-x86_64 windows-i686 linux-x86_64-sanitize)
failed=0
ran=()
skipped=()
for preset in "${presets[@]}"; do
    echo "== $preset"
    rm -f "build/$preset"/ctest.xml "build/$preset"/tests/*.xml
    cmake --preset "$preset" -DZPP_BUILD_EXAMPLES=ON -DZPP_WARNINGS_AS_ERRORS=ON >/dev/null &&
        cmake --build --preset "$preset" || { failed=1; continue; }
    if [[ $preset = windows-* ]] && ! install_wine "${preset#windows-}"; then
        skipped+=("--skipped=$preset: built, but there is no Wine here to run it in")
        continue
    fi
    ctest --preset "$preset" --parallel "$(nproc)" --output-junit "$PWD/build/$preset/ctest.xml" || failed=1
    ran+=("$preset")
done

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
python3 scripts/count-tests.py "${skipped[@]}" "${ran[@]/#/build/}" || failed=1
exit $failed
