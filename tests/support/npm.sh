#!/usr/bin/env bash
# Installs the programs of a package.json into a folder. Usage: npm.sh <folder> <package.json>. Exit status 77: they
# cannot be had here.
set -euo pipefail
folder=$1 wanted=$2
if ! command -v npm >/dev/null; then
  echo "npm is missing, so nothing is tried with other programs"
  exit 77
fi
mkdir -p "$folder"
if cmp --silent "$wanted" "$folder/package.json" && [ -d "$folder/node_modules" ]; then exit 0; fi
cp "$wanted" "$folder/package.json"
if ! (cd "$folder" && npm install --no-audit --no-fund >npm.log 2>&1); then
  rm -f "$folder/package.json"
  echo "npm cannot install the other programs, so nothing is tried with them"
  exit 77
fi
