#!/bin/bash
# Runs a Windows program in Wine: scripts/wine.sh i686|x86_64 PROGRAM [ARGUMENTS]
# Each of the two has its own prefix, in build/wine. Programs in one prefix share a desktop, and where the first of them
# had no display, none has one: ZPP_WINE_DESKTOP names another. scripts/install-wine.sh brings Wine here.
set -euo pipefail
processor=$1
shift
wine_home=$(dirname "$(dirname "$(realpath "$0")")")/build/wine
unpacked=$wine_home/unpacked # where the 32-bit Wine lies that could not be installed

export WINEPREFIX=$wine_home/$processor${ZPP_WINE_DESKTOP:+-$ZPP_WINE_DESKTOP}
export WINEDEBUG=${WINEDEBUG:--all}
export WINEDLLOVERRIDES="mscoree,mshtml,winemenubuilder.exe=" # nothing that asks or downloads at the first start
if [ "$processor" = x86_64 ]; then
    export WINEARCH=win64
    loader=/usr/lib/wine/wine64
else
    export WINEARCH=win32
    loader=/usr/lib/wine/wine
    if [ ! -x $loader ]; then
        loader=$unpacked/usr/lib/wine/wine
        export WINESERVER=$unpacked/usr/lib/wine/wineserver32
        export LD_LIBRARY_PATH=$unpacked/usr/lib/i386-linux-gnu:$unpacked/lib/i386-linux-gnu
    fi
fi
if [ ! -x "$loader" ]; then
    echo "There is no Wine for $processor programs: scripts/install-wine.sh brings it." >&2
    exit 77
fi
mkdir -p "$WINEPREFIX"
if [[ $loader = $unpacked/* && ! -d $WINEPREFIX/drive_c ]]; then
    # Debian's Wine takes it for user32.dll and others from here.
    mkdir -p "$WINEPREFIX/drive_c/windows/system32"
    cp /usr/i686-w64-mingw32/lib/zlib1.dll "$WINEPREFIX/drive_c/windows/system32/"
fi
exec "$loader" "$@"
