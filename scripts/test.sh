#!/bin/bash
# Builds the library for every target and runs all tests: 64 and 32 bits, then 64 bits under AddressSanitizer and
# UBSan. Installs what it needs (Debian, Ubuntu). The last lines count the tests.
set -uo pipefail
cd "$(dirname "$0")/.."
source scripts/install-packages.sh
install_packages g++ g++-multilib cmake ninja-build pkg-config libgtest-dev libgmock-dev python3 binutils qemu-user \
    libsndfile1-dev libcairo2-dev || exit 1

presets=(linux-x86_64 linux-i386 linux-x86_64-sanitize)
failed=0
for preset in "${presets[@]}"; do
    echo "== $preset"
    rm -f "build/$preset"/ctest.xml "build/$preset"/tests/unit.xml
    cmake --preset "$preset" -DZPP_BUILD_EXAMPLES=ON -DZPP_WARNINGS_AS_ERRORS=ON >/dev/null &&
        cmake --build --preset "$preset" &&
        ctest --preset "$preset" --output-junit "$PWD/build/$preset/ctest.xml" || failed=1
done

# What is promised to the last bit is the same on every target.
digests=$(for preset in "${presets[@]}"; do "build/$preset/check/zpp-check" --hash; done) || failed=1
echo "$digests"
if [ "$(sort -u <<<"$digests" | wc -l)" != 1 ]; then
    echo "the targets compute different results"
    failed=1
fi
python3 scripts/count-tests.py "${presets[@]/#/build/}" || failed=1
exit $failed
