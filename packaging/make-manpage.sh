#!/usr/bin/env bash
# Writes lunoval.1.gz from the program's own help: the main page, then every command's.
# Usage: make-manpage.sh LUNOVAL VERSION OUT
set -euo pipefail
lunoval=$1 version=$2 out=$3
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
{
  echo "[COMMANDS]"
  for command in $("$lunoval" --help | awk '/^Subcommands:/ {on = 1; next} on && /^  [a-z]/ {print $1}'); do
    echo ".SS $command"
    echo ".nf"
    "$lunoval" "$command" --help | sed -e 's/\\/\\\\/g' -e 's/^\./\\\&./'
    echo ".fi"
  done
} >"$work/commands.h2m"
help2man --no-info --no-discard-stderr --version-string="$version" \
  --name="moon phase and sun and moon times, as desktop widgets and as data" \
  --include="$work/commands.h2m" --output="$work/lunoval.1" "$lunoval"
gzip -9n <"$work/lunoval.1" >"$out"
