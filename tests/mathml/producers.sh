#!/usr/bin/env bash
# Has other programs make MathML of the formulas, and compares what that means with what the formulas mean.
# Usage: producers.sh <folder for the programs> <mathml_test>. Exit status 77: they cannot be had here.
set -euo pipefail
folder=$1 program=$2
cd "$(dirname "${BASH_SOURCE[0]}")"
../support/npm.sh "$folder" package.json
node make_mathml.mjs "$folder" <formulas.txt >"$folder/made.tsv"
ZOLT_MADE_MATHML=$folder/made.tsv exec "$program" --gtest_filter=Mathml.OfOtherPrograms
