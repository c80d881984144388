#!/usr/bin/env bash
# Installs the build into a temporary prefix, then runs the installed program with the source
# and build trees hidden under empty tmpfs mounts in a private mount namespace: whatever it
# needs must come from the prefix. Needs root or unprivileged user namespaces.
# Usage: check_install.sh BUILD_DIR SOURCE_DIR
set -uo pipefail
if [[ $1 != __hidden ]]; then
  work=$(mktemp -d /tmp/lunoval-install.XXXXXX)
  trap 'rm -rf "$work"' EXIT
  cmake --install "$1" --prefix "$work/prefix" >/dev/null || exit 1
  namespace=(unshare --mount --propagation private)
  [ "$(id -u)" -eq 0 ] || namespace+=(--map-root-user)
  # Bash reads on from the file it opened, hidden or not.
  "${namespace[@]}" bash "$0" __hidden "$work" "$(realpath "$1")" "$(realpath "$2")"
  exit
fi
work=$2
# The build tree first: it may lie inside the source tree.
for tree in "$3" "$4"; do mount -t tmpfs none "$tree" || exit 1; done
export HOME=$work LC_ALL=C TZ=UTC
unset XDG_CONFIG_HOME XDG_DATA_HOME XDG_RUNTIME_DIR LUNOVAL_RESOURCE_PATH
lunoval=$work/prefix/bin/lunoval
paris=(--location "48.8566,2.3522" --timezone Europe/Paris --at 2025-10-07T03:48:00Z)
failed=0
check() {  # NAME EXPECTED-TEXT COMMAND...
  local output
  output=$("${@:3}" 2>&1) && grep -q -- "$2" <<<"$output" && return
  failed=$((failed + 1))
  echo "FAIL $1: ${output:0:2000}"
}

check record '"phaseType":"fullMoon"' "$lunoval" record --json "${paris[@]}"
check gallery '^13$' sh -c "'$lunoval' gallery ${paris[*]} --out '$work/gallery' &&
  ls '$work/gallery' | wc -l"
check eclipses '"key":"' "$lunoval" eclipses --from 2025 --to 2025 --json
check german 'Vollmond' "$lunoval" record --locale de_DE "${paris[@]}"
# Without its translations or its data the program says so and fails, rather than answering
# in the wrong language or without phases.
rm -r "$work/prefix/share/locale"
check missing-translations 'cannot find the translations' sh -c "! '$lunoval' eclipses"
rm -r "$work/prefix/share/lunoval/com.orvane.Orvane"
check missing-data 'cannot find the phase tables' sh -c "! '$lunoval' record --lat 1 --lng 1"
echo "$failed failed"
[ "$failed" -eq 0 ]
