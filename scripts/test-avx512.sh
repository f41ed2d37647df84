#!/bin/bash
# Runs the unit tests, or zpp-check, with the AVX-512 build on a machine that has no AVX-512: Debian's Linux, started in
# the emulator Bochs. Installs what it needs (Debian 12, 64 bits) and writes to build/ only. Slow: see CONTRIBUTING.md.
set -uo pipefail
cd "$(dirname "$0")/.." || exit 1
source scripts/install-packages.sh

usage() {
    cat <<END
Usage: scripts/test-avx512.sh [OPTION]...
  --preset PRESET      test this target only: linux-x86_64 or linux-i386 (default: both)
  --filter FILTER      run the unit tests that this GoogleTest filter chooses (default: all but those bound to
                       another ISA build and those that the emulator fails)
  --check 'ARGUMENTS'  run zpp-check with these arguments, and no unit tests
  --timeout SECONDS    stop the emulator after this time (default: $limit)
END
}

presets=(linux-x86_64 linux-i386)
# Bochs 2.7 rounds single precision to half upwards in a tie, in vcvtps2ph of any width: there the avx2 build, which
# processors run rightly, gives the same wrong results in these tests.
emulator_fails='*ConvertHalf.FromSingle/*:*ConvertHalf.FromIntegers/*'
filter="*-*/*_x87:*/*_sse:*/*_sse2:*/*_avx2:$emulator_fails"
check=
programs=(zpp_tests)
limit=3600
while [ $# -gt 0 ]; do
    case $1 in
        --help) usage; exit 0 ;;
        --preset | --filter | --check | --timeout)
            [ $# -gt 1 ] || { usage >&2; exit 2; } ;;&
        --preset) presets=("$2") ;;
        --filter) filter=$2 ;;
        --check) check=$2; programs=(zpp-check) ;;
        --timeout) limit=$2 ;;
        *) usage >&2; exit 2 ;;
    esac
    shift 2
done

install_packages g++ g++-multilib cmake ninja-build pkg-config libgtest-dev python3 binutils \
    bochs bochs-term bochsbios vgabios isolinux syslinux-common xorriso cpio || exit 1

machine=build/avx512
root=$machine/root
iso=$machine/iso
rm -rf "$root" "$iso"
mkdir -p "$root"/{bin,dev,proc,tmp} "$iso/isolinux" || exit 1

# What the machine runs is only unpacked, never installed.
fetch_system() {
    local kernel package
    kernel=$(apt-cache depends linux-image-cloud-amd64 | sed -n 's/^ *Depends: \(linux-image-.*\)/\1/p' | head -n 1)
    [ -n "$kernel" ] && (cd "$machine" && apt-get -qq download "$kernel" busybox-static) || return 1
    for package in "$machine"/*.deb; do
        dpkg -x "$package" "$machine/system" || return 1
    done
}
if ! ls $machine/system/boot/vmlinuz-* $machine/system/bin/busybox >/dev/null 2>&1; then
    rm -rf $machine/system $machine/*.deb
    fetch_system 2>/dev/null || { as_root apt-get -qq update >&2 && fetch_system; } || exit 1
fi
cp $machine/system/boot/vmlinuz-* "$iso/vmlinuz" &&
    cp /usr/lib/ISOLINUX/isolinux.bin /usr/lib/syslinux/modules/bios/ldlinux.c32 tests/emulated/isolinux.cfg \
        "$iso/isolinux" &&
    cp $machine/system/bin/busybox "$root/bin" && cp tests/emulated/init "$root/init" || exit 1

# Puts a program and its libraries into the machine, and a line into /run that starts it.
add_program() {
    local preset=$1 program=$2 library
    mkdir -p "$root/$preset/lib"
    cp "$(find "build/$preset" -type f -name "$program" -perm -u+x)" "$root/$preset" || return 1
    for library in $(ldd "$root/$preset/$program" | grep -o '/[^ ]*'); do
        case $library in
            */ld-linux*) mkdir -p "$root${library%/*}" && cp -L "$library" "$root$library" ;;
            *) cp -L "$library" "$root/$preset/lib" ;;
        esac || return 1
    done
    local arguments=$check
    [ "$program" = zpp_tests ] && arguments="--gtest_color=no --gtest_filter='$filter'"
    cat >>"$root/run" <<END
echo "== $preset $program"
LD_LIBRARY_PATH=/$preset/lib /$preset/$program $arguments
echo "$preset $program exited with \$?"
END
}
for preset in "${presets[@]}"; do
    cmake --preset "$preset" >/dev/null && cmake --build --preset "$preset" --target "${programs[@]}" || exit 1
    for program in "${programs[@]}"; do
        add_program "$preset" "$program" || exit 1
    done
done
(cd "$root" && find . | cpio -o -H newc -R 0:0 --quiet) >"$iso/initrd" &&
    xorriso -as mkisofs -quiet -o $machine/machine.iso -b isolinux/isolinux.bin -c isolinux/boot.cat \
        -no-emul-boot -boot-load-size 4 -boot-info-table "$iso" 2>$machine/xorriso.log ||
    { cat $machine/xorriso.log >&2; exit 1; }

echo "Starting the emulated machine, which says nothing for a minute or more"
cp tests/emulated/bochsrc $machine/bochsrc
echo continue >$machine/commands  # Debian's Bochs has its debugger built in, which waits for this
: >$machine/serial.txt
(cd $machine && TERM=vt100 exec timeout -k 5 "$limit" bochs -q -f bochsrc -rc commands </dev/null >screen.txt 2>&1) &
emulator=$!
trap 'kill $emulator 2>/dev/null' EXIT
tail -n +1 -f --pid=$emulator $machine/serial.txt 2>/dev/null | sed -u 's/\r$//' | tee $machine/output.txt
wait $emulator 2>/dev/null  # without the news that it was killed
status=$?
trap - EXIT

echo
if [ "${programs[0]}" = zpp_tests ]; then echo "The filter was $filter"; fi
if [ $status -eq 124 ] || [ $status -eq 137 ]; then
    echo "FAILED: the emulated machine was stopped after $limit seconds; see --timeout, --preset and --filter"
    exit 1
fi
failed=0
complain() {
    echo "FAILED: $*"
    failed=1
}
for preset in "${presets[@]}"; do
    for program in "${programs[@]}"; do
        grep -qx "$preset $program exited with 0" $machine/output.txt ||
            complain "$preset $program: $(grep -x "$preset $program exited with .*" $machine/output.txt ||
                echo "did not end; the emulator's log is $machine/bochs.log")"
    done
done
lacking=$(grep -x 'The emulated machine lacks .*' $machine/output.txt) && complain "$lacking"
if [ "${programs[0]}" = zpp_tests ]; then
    # A filter that chooses nothing, or nothing for AVX-512, would pass, too.
    for preset in "${presets[@]}"; do
        count=$(sed -n "/^== $preset zpp_tests/,/^$preset zpp_tests exited/p" $machine/output.txt |
            grep -c '^\[       OK \] .*/px_avx512 ')
        echo "$preset: $count unit tests bound to AVX-512 passed"
        [ "$count" -gt 0 ] || complain "$preset: no such test"
    done
fi
[ $failed -eq 0 ] && echo "Passed: ${programs[*]} with AVX-512 on ${presets[*]}"
exit $failed
