#!/bin/bash
# Looks at the sources without running them: format (clang-format), faults of C++ (clang-tidy, with the checks of
# .clang-tidy), of shell scripts (shellcheck), and long lines of text. Installs what it needs (Debian, Ubuntu).
set -uo pipefail
cd "$(dirname "$0")/.." || exit 1
source scripts/install-packages.sh
install_packages clang-format-14 clang-tidy-14 shellcheck cmake ninja-build g++ python3 || exit 1

failed=0
check() {
    local name=$1 start=$SECONDS verdict=clean
    shift
    "$@" || { failed=1 verdict=FAILED; }
    printf '%-14s %s, %d s\n' "$name" "$verdict" $((SECONDS - start))
}

files() { git ls-files --cached --others --exclude-standard -- "$@"; }

format() { files '*.c' '*.cpp' '*.h' | xargs clang-format-14 --dry-run --Werror; }

shell() { files '*.sh' .ci/run | xargs shellcheck --external-sources --severity=warning; }

long_lines() {
    # What programs print is as wide as it is.
    files '*.md' | xargs awk 'FNR == 1 { code = 0 } /^```/ { code = !code }
        length > 120 && !code { print FILENAME ":" FNR; found = 1 } END { exit found }'
}

# Leaves those of the compile commands that are to be read, prints their files, and takes out what only GCC knows.
chosen_commands() {
    python3 - "$1" <<'END'
import json, re, sys
chosen = re.compile(r" -o (CMakeFiles/zpp_(avx2|frame)|check/CMakeFiles/zpp-check)\.dir/[\w/.]+\.cpp\.o ")
with open(sys.argv[1]) as file:
    commands = [entry for entry in json.load(file)
                if chosen.search(entry["command"]) and "/tests/" not in entry["file"]]
for entry in commands:
    entry["command"] = entry["command"].replace(" -fno-ipa-ra", "")
    print(entry["file"])
with open(sys.argv[1], "w") as file:
    json.dump(commands, file)
sys.exit(0 if commands else 1)
END
}

# Each family file as one ISA build compiles it, the frame, and zpp-check. Not the tests: GoogleTest's headers and
# macros would take most of the time, and what the macros become is not ours to mend.
tidy() {
    cmake --preset linux-x86_64 -B build/lint -DCMAKE_CXX_COMPILER_LAUNCHER= >build/lint.log &&
        chosen_commands build/lint/compile_commands.json >build/lint/files || return 1
    # Its count of the warnings in system headers is no news.
    xargs -P "$(nproc)" -n 1 clang-tidy-14 -p build/lint --quiet <build/lint/files \
        2> >(grep -v '^[0-9]* warnings\? generated\.$' >&2)
}

mkdir -p build
check "clang-format" format
check "shellcheck" shell
check "long lines" long_lines
check "clang-tidy" tidy
exit $failed
