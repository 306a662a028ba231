#!/usr/bin/env bash
# Soaks each component of the catalogue in a process of its own, as many at a time as
# there are processors, and fails when any of them fails, showing the end of its output.
# Meant for a sanitizer build: UBSan stops at a component's first finding and LeakSanitizer
# reports at its exit, so one process per component names the culprit.
#   scripts/soak-each.sh KXSOAK [READINGS (default 3000)] [SEED (default 2)]
set -uo pipefail
kxsoak=$1
readings=${2:-3000}
seed=${3:-2}
logs=$(mktemp -d)
trap 'rm -rf "$logs"' EXIT
export QT_QPA_PLATFORM=offscreen
"$kxsoak" --list > "$logs/components" || exit 2
xargs -P "$(nproc)" -n 1 bash -c \
    '"$1" --readings "$2" --seed "$3" --component "$5" > "$4/$5.log" 2>&1 || echo "$5" >> "$4/failed"' \
    _ "$kxsoak" "$readings" "$seed" "$logs" < "$logs/components"
total=$(wc -l < "$logs/components")
if [ -s "$logs/failed" ]; then
    while read -r c; do
        echo "=== $c failed; the end of its output:"
        tail -n 60 "$logs/$c.log"
    done < "$logs/failed"
    echo "soak-each: $(wc -l < "$logs/failed") of $total components failed: $(tr '\n' ' ' < "$logs/failed")"
    exit 1
fi
echo "soak-each: $total components, $readings readings each, seed $seed: all passed"
