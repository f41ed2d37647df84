# shellcheck shell=bash
# Sourced by the other scripts, after install-packages.sh: install_wine i686|x86_64 brings what scripts/wine.sh needs,
# or says why it cannot.

# The 32-bit Wine and what it loads, for where apt-get cannot resolve it beside the packages of the machine.
# Without FreeType: Wine says that it misses it, and shows windows without letters.
wine32_packages=(wine32 libwine libunwind8 liblzma5 libx11-6 libxext6 libxcb1 libxau6 libxdmcp6 libbsd0 libmd0)

# Unpacks the 32-bit Wine below build/wine.
unpack_wine32() {
    local root=$PWD/build/wine/unpacked packages=$PWD/build/wine/packages
    install_packages libc6-i386 libz-mingw-w64 || return 1
    rm -rf "$root" "$root.part" "$packages"
    mkdir -p "$packages"
    (cd "$packages" && apt-get -qq download "${wine32_packages[@]/%/:i386}") || return 1
    local package
    for package in "$packages"/*.deb; do
        dpkg -x "$package" "$root.part" || return 1
    done
    rm -rf "$packages"
    # Debian's script looks for the server below /usr/lib/wine, where one is only if 64-bit Wine is installed.
    printf '#!/bin/sh\nexec "${0%%/*}/wineserver32" -p0 "$@"\n' >"$root.part/usr/lib/wine/wineserver" || return 1
    mv "$root.part" "$root"
}

bring_wine32() {
    local log=$1
    [ -x /usr/lib/wine/wine ] || [ -x build/wine/unpacked/usr/lib/wine/wine ] && return 0
    install_packages wine32:i386 >"$log" 2>&1 && return 0
    echo "wine32:i386 cannot be installed here; unpacking it below build/wine" >&2
    unpack_wine32 >>"$log" 2>&1 && return 0
    cat "$log" >&2
    return 1
}

install_wine() {
    local log=build/wine/install.log
    mkdir -p build/wine
    if [ "$1" = x86_64 ]; then
        install_packages wine64 || return 1
    else
        bring_wine32 "$log" || return 1
    fi
    timeout -k 5 120 scripts/wine.sh "$1" cmd /c exit >"$log" 2>&1 </dev/null || { tail -40 "$log" >&2; return 1; }
}
