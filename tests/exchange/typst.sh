#!/usr/bin/env bash
# Has Typst set what is written for the formulas of the case files. Usage: typst.sh <folder for the program> <ved>.
# Exit status 77: it cannot be had here.
set -euo pipefail
folder=$1 ved=$2
cd "$(dirname "${BASH_SOURCE[0]}")"
../support/npm.sh "$folder" package.json
{
  sed -n 's/^[^#].* ⇒ //p' typst.cases
  sed -n 's/^\([^#].*\) [⇒⇔] .*/\1/p' latex.cases | "$ved" convert --from latex --to typst 2>"$folder/refused.txt" || true
} >"$folder/formulas.txt"
exec node compile_typst.mjs "$folder" <"$folder/formulas.txt"
