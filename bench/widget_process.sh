#!/usr/bin/env bash
# Wall time and peak memory of whole `lunoval` processes that draw widgets: one gallery (every
# widget in every size at scale 3) over N runs, then one render per family. Prints medians and
# the largest maximum resident set size.
set -euo pipefail
binary=${1:-build/lunoval}
runs=${2:-11}
out=$(mktemp -d)
trap 'rm -rf "$out"' EXIT
place=(--location 48.8566,2.3522 --timezone Europe/Paris --at 2025-10-12T21:00:00Z)
export HOME="$out/home" XDG_CONFIG_HOME="$out/home/.config"

summarise() {
  sort -n | awk -v what="$1" '{ wall[NR] = $1; if ($2 > rss) rss = $2 }
    END { printf "%-36s median wall %.3f s over %d runs, peak RSS %.1f MB\n", what, wall[int((NR + 1) / 2)], NR, rss / 1024 }'
}

for _ in $(seq "$runs"); do
  /usr/bin/time -f '%e %M' "$binary" gallery --out "$out/gallery" "${place[@]}" 2>&1 >/dev/null | tail -n 1
done | summarise "gallery (12 images)"

for widget in MoonPhaseWidget:systemSmall MoonPhaseWidget:systemLarge MoonTimesWidget:systemMedium \
  MoonPhaseWidget:accessoryCircular MoonPhaseWidget:accessoryRectangular MoonTimesWidget:accessoryInline; do
  kind=${widget%%:*} family=${widget##*:}
  for _ in $(seq "$runs"); do
    /usr/bin/time -f '%e %M' "$binary" render --kind "$kind" --family "$family" \
      --out "$out/$kind-$family.png" "${place[@]}" 2>&1 >/dev/null | tail -n 1
  done | summarise "render $kind $family"
done
