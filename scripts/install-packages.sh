# shellcheck shell=bash
# Sourced by the other scripts: install_packages installs those of the named Debian or Ubuntu packages that are missing,
# without asking. A name may carry an architecture (libc6-dev:i386), which is added to the machine's where it is new.

# Whether a package is installed, in the machine's own architecture unless one is named. (A package for all
# architectures, or one that another provides under this name, counts.)
package_installed() {
    dpkg-query -W -f '${db:Status-Status}\n' "$1" 2>/dev/null | grep -qx installed
}

as_root() {
    if [ "$(id -u)" -eq 0 ]; then
        env DEBIAN_FRONTEND=noninteractive "$@"
    elif command -v sudo >/dev/null; then
        sudo env DEBIAN_FRONTEND=noninteractive "$@"
    else
        echo "Not root, and there is no sudo: cannot run $*" >&2
        return 1
    fi
}

install_packages() {
    local package architecture missing=()
    if ! command -v apt-get >/dev/null; then
        echo "No apt-get here: taking for granted what these Debian packages hold: $*" >&2
        return 0
    fi
    for package in "$@"; do
        package_installed "$package" || missing+=("$package")
    done
    [ ${#missing[@]} -eq 0 ] && return 0
    echo "Installing ${missing[*]}" >&2
    for package in "${missing[@]}"; do
        architecture=${package#*:}
        [ "$architecture" = "$package" ] && continue
        { dpkg --print-architecture; dpkg --print-foreign-architectures; } | grep -qx "$architecture" ||
            as_root dpkg --add-architecture "$architecture" || return 1
    done
    local log status=0
    log=$(mktemp)
    {
        # An index that the mirror is just replacing matters only if a package cannot be had without it.
        as_root apt-get -qq -o DPkg::Lock::Timeout=300 update
        as_root apt-get -qq -o DPkg::Lock::Timeout=300 install -y --no-install-recommends "${missing[@]}"
    } >"$log" 2>&1 || status=$?
    [ $status -eq 0 ] || cat "$log" >&2
    rm -f "$log"
    return $status
}
