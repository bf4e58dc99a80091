#!/bin/sh
# Four shares of an archive, one of them killed and begun again, make the bytes of a single run.
# Usage: shares_test.sh VEXA-CLI EXAMPLES/CLUSTER SAMPLES FOLDER
set -eu
export VEXA_CLI=$1
cluster=$2 samples=$3 folder=$4
rm -rf "$folder"
mkdir -p "$folder/data/below"
cd "$folder"
for number in 1 2 3 4 5 6 7 8 9 10; do
  cp "$samples/igra_station.txt" "data/igra_$number.txt"
  cp "$samples/fsl_two.fsl" "data/below/two_$number.fsl"
  cp "$samples/packed_many.zip" "data/many_$number.zip"
done
printf 'no sounding' > data/notes.md
"$VEXA_CLI" archive add single data
"$VEXA_CLI" archive merge single.merged single
"$cluster/archive_share" data parts 2 4 & share=$!
sleep 0.3
kill -9 $share 2> /dev/null || true
wait $share || true
for number in 1 2 3 4; do "$cluster/archive_share" data parts $number 4; done
"$VEXA_CLI" archive merge all.merged parts/part-*.vexa
cmp single.merged all.merged
"$cluster/local_shares" data local.merged 3
cmp single.merged local.merged
test "$("$VEXA_CLI" archive query single.merged --format list | wc -l)" -gt 60
