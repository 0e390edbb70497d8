#!/bin/bash
# Regenerates the table of verification results.
#
#   make_results.sh [--pictures] KALMO [OUTPUT]
#
# Runs every problem folder of verification/ (every folder with a CHECKS file, in name order)
# through verify.sh with the given program and writes the table to OUTPUT (default: the
# standard output). The committed verification/RESULTS.md is this table; a test compares it with a
# fresh run, so rerun this script and commit its output whenever a problem or a result changes:
#
#   verification/make_results.sh --pictures build/kalmo verification/RESULTS.md
#
# With --pictures the picture program beside KALMO (kalmoplot) draws the surface that each
# problem's answers save (the best surface, printed and so saved in batch mode) into
# <problem>/KALMO.SVG, and removes an old picture of a problem that saves none. The table links
# every picture that is there; without --pictures the pictures are only linked, not drawn (so
# the test that compares the table writes nothing into the source folders).
#
# Ends with status 1 when a value fails its tolerance (the table is written all the same).
set -u
export LC_ALL=C  # the same folder order and number format on every machine
pictures=0
if [ "${1:-}" = "--pictures" ]; then
  pictures=1
  shift
fi
if [ $# -lt 1 ] || [ $# -gt 2 ]; then
  echo "usage: make_results.sh [--pictures] KALMO [OUTPUT]" >&2
  exit 2
fi
here=$(cd "$(dirname "$0")" && pwd)
kalmo=$(cd "$(dirname "$1")" && pwd)/$(basename "$1")
status=0

if [ $pictures = 1 ]; then
  plot=$(dirname "$kalmo")/kalmoplot
  if [ ! -x "$plot" ]; then
    echo "make_results.sh: no picture program $plot: build the target kalmoplot first" >&2
    exit 2
  fi
  for problem in "$here"/*/; do
    [ -f "$problem/CHECKS" ] || continue
    run=$(mktemp -d)
    cp "$problem/KALMO.INP" "$problem/SVAR.TMP" "$run/"
    (cd "$run" && "$kalmo" 0 > /dev/null 2>&1 < /dev/null)
    if [ -s "$run/KALMO.PLT" ] && (cd "$run" && "$plot" > /dev/null 2>&1); then
      cp "$run/KALMO.SVG" "$problem/KALMO.SVG"
    else
      rm -f "$problem/KALMO.SVG"
    fi
    rm -rf "$run"
  done
fi
table=$(
  for problem in "$here"/*/; do
    [ -f "$problem/CHECKS" ] || continue
    name=$(basename "$problem")
    if [ -f "$problem/KALMO.SVG" ]; then
      picture="[critical surface]($name/KALMO.SVG)"
    else
      picture="(no surface saved)"
    fi
    rows=$("$here/verify.sh" "$kalmo" "$problem") || echo "FAILED"
    echo "$rows" | sed "s#\$# $picture |#"
  done)
case "$table" in *FAIL*) status=1 ;; esac
table=$(echo "$table" | grep -v '^FAILED$')

{
  echo "# Verification results"
  echo
  echo "Published benchmark problems solved by KALMO in batch mode. Each folder holds the input"
  echo "\`KALMO.INP\`, the answers \`SVAR.TMP\`, the values compared (\`CHECKS\`) and a \`README.md\` with"
  echo "the source, the published value, the search and the reason for the tolerance. A value passes"
  echo "when |KALMO - published| <= tolerance."
  echo
  echo "This table is written by \`verification/make_results.sh build/kalmo verification/RESULTS.md\`;"
  echo "the test \`verification_results_table\` fails when it differs from a fresh run. With"
  echo "\`--pictures\` it also draws, with the picture program \`kalmoplot\`, the surface that each"
  echo "problem's answers save; the wall problems sweep active and passive planes without saving one."
  echo
  echo "| Problem | Quantity | Published | KALMO | Difference | Tolerance | Result | Picture |"
  echo "|---|---|---|---|---|---|---|---|"
  echo "$table"
  echo
  echo "## Asked for and not yet here"
  echo
  echo "- ACADS referee problems 1(c) (three-material slope) and 1(d) (the same with a horizontal"
  echo "  seismic coefficient): their layer geometry and strengths are not at hand with the certainty"
  echo "  a referee comparison needs; they wait for the published data."
  echo "- The undrained three-layer slope of Low (1989): likewise waiting for the published data."
  echo "- A seismic slope whose yield coefficient is published is covered by the infinite slope at"
  echo "  its yield coefficient (\`seismic_infinite_slope\`); a finite slope with a published yield"
  echo "  coefficient waits for its data."
} > "${2:-/dev/stdout}"
exit $status
