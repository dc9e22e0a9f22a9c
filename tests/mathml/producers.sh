#!/usr/bin/env bash
# Has other programs make MathML of the formulas, and compares what that means with what the formulas mean.
# Usage: producers.sh <folder for the programs> <mathml_test>. Exit status 77: they cannot be had here.
set -euo pipefail
folder=$1 program=$2
cd "$(dirname "${BASH_SOURCE[0]}")"
if ! command -v npm >/dev/null; then
  echo "npm is missing, so nothing is compared with what other programs write"
  exit 77
fi
mkdir -p "$folder"
if ! cmp --silent package.json "$folder/package.json" || [ ! -d "$folder/node_modules" ]; then
  rm -f "$folder/package.json"
  cp package.json "$folder/made.json"
  if ! (cd "$folder" && cp made.json package.json && npm install --no-audit --no-fund >npm.log 2>&1); then
    rm -f "$folder/package.json"
    echo "npm cannot install the other programs, so nothing is compared with them"
    exit 77
  fi
fi
node make_mathml.mjs "$folder" <formulas.txt >"$folder/made.tsv"
ZOLT_MADE_MATHML=$folder/made.tsv exec "$program" --gtest_filter=Mathml.OfOtherPrograms
