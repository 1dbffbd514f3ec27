#!/usr/bin/env bash
# The README's GNU parallel recipe on this machine: three jsonl shards, one merge; the merged CSV must be
# the single run's CSV byte for byte. Exits 77 (skipped) where GNU parallel is not installed.
set -euo pipefail
cli=$1
docs=$2
command -v parallel >/dev/null || { echo "GNU parallel is not installed: skipped"; exit 77; }
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
cd "$work"

parallel --will-cite "$cli" --quiet --format jsonl --shard {}/3 --output shard-{}.jsonl "$docs" ::: 1 2 3
"$cli" --merge --quiet --format csv --output merged.csv shard-*.jsonl

"$cli" --quiet --format csv --output single.csv "$docs"
cmp merged.csv single.csv
echo "3 shards merged to the single run's CSV ($(wc -l <single.csv) lines)"
