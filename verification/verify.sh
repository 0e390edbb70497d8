#!/bin/bash
# Runs one verification problem in batch mode and compares KALMO's values with the published ones.
#
#   verify.sh KALMO PROBLEM-FOLDER
#
# The problem folder holds KALMO.INP, SVAR.TMP and CHECKS. Each line of CHECKS that is neither
# empty nor a comment (#) names one value to compare, in fields separated by "|":
#
#   quantity | published value | tolerance | file of the run | marker text | lines after it | field
#     | occurrence (optional, default 1)
#
# The value is read from the given file of the run: the line that comes the given number of lines
# after the line holding the marker text (its first occurrence, or the one numbered by the last
# field), the given blank-separated field of that line. A
# value passes when |KALMO - published| <= tolerance (an absolute tolerance, in the units of the
# value; each problem's README.md says why it is what it is).
#
# Writes one table row per value on the standard output:
#   | problem | quantity | published | KALMO | difference | tolerance | PASS/FAIL |
# and ends with status 0 when every value passes, 1 when one fails or cannot be read, 2 on a
# usage error.
set -u
export LC_ALL=C  # the same folder order and number format on every machine
if [ $# -ne 2 ]; then
  echo "usage: verify.sh KALMO PROBLEM-FOLDER" >&2
  exit 2
fi
kalmo=$(cd "$(dirname "$1")" && pwd)/$(basename "$1")
problem=$(cd "$2" && pwd)
name=$(basename "$problem")
for needed in KALMO.INP SVAR.TMP CHECKS; do
  if [ ! -f "$problem/$needed" ]; then
    echo "verify.sh: $problem has no $needed" >&2
    exit 2
  fi
done

run=$(mktemp -d)
trap 'rm -rf "$run"' EXIT
cp "$problem/KALMO.INP" "$problem/SVAR.TMP" "$run/"
(cd "$run" && "$kalmo" > screen.txt 2>&1 < /dev/null)

status=0
while IFS='|' read -r quantity published tolerance file marker after field occurrence; do
  quantity=$(echo "$quantity" | sed 's/^ *//;s/ *$//')
  case "$quantity" in ''|'#'*) continue ;; esac
  published=$(echo "$published" | tr -d ' ')
  tolerance=$(echo "$tolerance" | tr -d ' ')
  file=$(echo "$file" | tr -d ' ')
  marker=$(echo "$marker" | sed 's/^ *//;s/ *$//')
  after=$(echo "$after" | tr -d ' ')
  field=$(echo "$field" | tr -d ' ')
  occurrence=$(echo "${occurrence:-1}" | tr -d ' ')
  value=""
  if [ -f "$run/$file" ]; then
    value=$(awk -v marker="$marker" -v after="$after" -v field="$field" -v occurrence="${occurrence:-1}" '
      found == 0 && index($0, marker) > 0 && ++seen == occurrence { found = 1; target = NR + after }
      found == 1 && NR == target { print $field; exit }' "$run/$file")
  fi
  row=$(awk -v p="$published" -v v="$value" -v t="$tolerance" 'BEGIN {
      if (v !~ /^[-+]?[0-9]*\.?[0-9]+([eE][-+]?[0-9]+)?$/) { printf "| (not found) | | %s | FAIL |", t; exit }
      d = v - p; a = d < 0 ? -d : d
      printf "| %s | %+.4g | %s | %s |", v, d, t, (a <= t ? "PASS" : "FAIL") }')
  case "$row" in *FAIL*) status=1 ;; esac
  echo "| $name | $quantity | $published $row"
done < "$problem/CHECKS"
exit $status
