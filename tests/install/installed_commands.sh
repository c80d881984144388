#!/usr/bin/env bash
# Run by check_install.sh inside its mount namespace: hides the trees, then runs the commands
# of an installed lunoval. Usage: installed_commands.sh WORK SOURCE_DIR BUILD_DIR
set -uo pipefail
work=$1
# The build tree first: it may lie inside the source tree.
for tree in "$3" "$2"; do mount -t tmpfs none "$tree" || exit 1; done
export HOME=$work/home LC_ALL=C TZ=UTC
unset XDG_CONFIG_HOME XDG_DATA_HOME XDG_RUNTIME_DIR LUNOVAL_RESOURCE_PATH
mkdir -p "$HOME"
lunoval=$work/prefix/bin/lunoval
paris=(--location 48.8566,2.3522 --timezone Europe/Paris --at 2025-10-07T03:48:00Z)
passed=0 failed=0
check() {  # NAME EXPECTED-TEXT COMMAND...
  local name=$1 expected=$2 output
  shift 2
  if output=$("$@" 2>&1) && grep -q -- "$expected" <<<"$output"; then
    passed=$((passed + 1))
  else
    failed=$((failed + 1))
    echo "FAIL $name: $output" | head -c 2000
    echo
  fi
}

check record '"phaseType":"fullMoon"' \
  "$lunoval" record --lat 48.8566 --lng 2.3522 --timezone Europe/Paris \
  --at 2025-10-07T03:48:00Z --json
check timeline '"timezone":"Europe/Paris"' "$lunoval" timeline --json "${paris[@]}"
check render 'PNG' sh -c "'$lunoval' render ${paris[*]} --out '$work/small.png' && file '$work/small.png'"
check gallery '13' sh -c "'$lunoval' gallery ${paris[*]} --out '$work/gallery' && ls '$work/gallery' | wc -l"
check eclipses '"key":"' "$lunoval" eclipses --from 2025 --to 2025 --json
check german 'Vollmond' "$lunoval" record --locale de_DE --lat 48.8566 --lng 2.3522 \
  --timezone Europe/Paris --at 2025-10-07T03:48:00Z
check help-of-a-drawing-command '--scale' "$lunoval" render --help

# Without its translations or its data the program says so and fails, rather than answering
# in the wrong language or without phases.
rm -r "$work/prefix/share/locale"
check missing-translations 'cannot find the translations' sh -c "! '$lunoval' eclipses"
rm -r "$work/prefix/share/lunoval/com.orvane.Orvane"
check missing-data 'cannot find the phase tables' sh -c "! '$lunoval' record --lat 1 --lng 1"
echo "$passed passed, $failed failed"
[ "$failed" -eq 0 ]
