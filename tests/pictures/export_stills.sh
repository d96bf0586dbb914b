#!/bin/bash
# Usage: export_stills.sh SKAV_EXPORT DATA_FOLDER MOMENTS OUTPUT_FOLDER
# Exports the pictures that MOMENTS lists, as OUTPUT_FOLDER/LANGUAGE/TIME.png.
set -euo pipefail

program=$1 data=$2 moments=$3 output=$4

rm -rf "$output"
for language in en de; do
  stills=()
  while read -r its_language time _; do
    [ "$its_language" = "$language" ] && stills+=(--still "$time")
  done < "$moments"
  "$program" --quiet --data "$data" --language "$language" --fps 10 "${stills[@]}" -o "$output/$language/"
done
