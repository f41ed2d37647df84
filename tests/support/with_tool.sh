#!/bin/sh
# with_tool.sh PACKAGE TOOL ARGUMENTS...: runs the tool, or says which package of Debian has it and skips the test.
package=$1
shift
if ! command -v "$1" >/dev/null; then
    echo "skipped: $1 (Debian: $package) is not installed, so this was not run: $*"
    exit 77
fi
exec "$@"
