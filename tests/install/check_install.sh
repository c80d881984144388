#!/usr/bin/env bash
# Installs the build into a temporary prefix, then runs the installed program with the source
# and build trees hidden under empty tmpfs mounts in a private mount namespace: whatever it
# needs must come from the prefix. Needs root or unprivileged user namespaces.
# Usage: check_install.sh BUILD_DIR SOURCE_DIR
set -euo pipefail
build=$(realpath "$1") source=$(realpath "$2")
work=$(mktemp -d /tmp/lunoval-install.XXXXXX)
trap 'rm -rf "$work"' EXIT
cmake --install "$build" --prefix "$work/prefix" >/dev/null
cp "$(dirname "$0")/installed_commands.sh" "$work/"
namespace=(unshare --mount --propagation private)
[ "$(id -u)" -eq 0 ] || namespace=(unshare --map-root-user --mount --propagation private)
"${namespace[@]}" bash "$work/installed_commands.sh" "$work" "$source" "$build"
