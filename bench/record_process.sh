#!/usr/bin/env bash
# Wall time and peak memory of `lunoval record --json` as a whole process, over N runs:
# prints the median wall time and the largest maximum resident set size.
set -euo pipefail
binary=${1:-build/lunoval}
runs=${2:-21}
for _ in $(seq "$runs"); do
  /usr/bin/time -f '%e %M' "$binary" record --lat 48.8566 --lng 2.3522 --timezone Europe/Paris \
    --at 2025-10-12T21:00:00Z --json 2>&1 >/dev/null | tail -n 1
done | sort -n | awk '{ wall[NR] = $1; if ($2 > rss) rss = $2 }
  END { printf "median wall %.3f s over %d runs, peak RSS %.1f MB\n", wall[int((NR + 1) / 2)], NR, rss / 1024 }'
