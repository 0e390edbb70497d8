#!/usr/bin/env bash
# Draws the picture of every example whose answer file saves a surface.
#
# Each folder examples/<name>/ holding KALMO.INP and SVAR.TMP is run in a scratch folder by the
# built program in batch mode; when the run has saved a surface in KALMO.PLT, kalmoplot draws
# it and the picture is kept as examples/<name>/KALMO.SVG. An example that saves no surface
# gets no picture (an old one is removed). Run it from anywhere after building:
#
#     examples/draw.sh [build folder, default build]
set -euo pipefail
top="$(cd "$(dirname "$0")/.." && pwd)"
build="$(cd "${1:-$top/build}" && pwd)"
for program in kalmo kalmoplot; do
  [ -x "$build/$program" ] || { echo "no $build/$program: build the project first" >&2; exit 1; }
done

scratch="$(mktemp -d)"
trap 'rm -rf "$scratch"' EXIT
for folder in "$top"/examples/*/; do
  name="$(basename "$folder")"
  [ -f "$folder/KALMO.INP" ] && [ -f "$folder/SVAR.TMP" ] || continue
  run="$scratch/$name"
  mkdir "$run"
  cp "$folder/KALMO.INP" "$folder/SVAR.TMP" "$run/"
  if ! (cd "$run" && "$build/kalmo" 0 > /dev/null 2>&1); then
    echo "$name: the analysis did not end normally" >&2
    exit 1
  fi
  if [ -s "$run/KALMO.PLT" ] && (cd "$run" && "$build/kalmoplot" > /dev/null); then
    cp "$run/KALMO.SVG" "$folder/KALMO.SVG"
    echo "$name: examples/$name/KALMO.SVG"
  else
    rm -f "$folder/KALMO.SVG"
    echo "$name: no surface saved, no picture"
  fi
done
