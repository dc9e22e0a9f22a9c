# The project's scripts source this file for what they share, from the project's folder.
# shellcheck shell=bash

say() { printf '%s\n' "$*" >&2; }
# stage <text>: says what begins now, the how-manieth of the $stages stages it is and how long the script has been running.
stages=1 stage=0
stage() {
  stage=$((stage + 1))
  say "[stage $stage of $stages, $(clock "$SECONDS")] $*"
}
clock() { printf '%d:%02d' "$(($1 / 60))" "$(($1 % 60))"; }
# patiently <what> <command> …: runs a command that says nothing, and says every 20 seconds that it goes on, even if the
# command's messages go elsewhere.
exec 3>&2
patiently() {
  local what=$1 began=$SECONDS beeper status=0
  shift
  (while sleep 20 >/dev/null 2>&1 3>&-; do say "  $what, $(clock $((SECONDS - began)))" 2>&3; done) &
  beeper=$!
  "$@" || status=$?
  kill "$beeper" 2>/dev/null
  wait "$beeper" 2>/dev/null || true
  return "$status"
}
die() {
  say "$(basename "$0"): $*"
  exit 1
}

# What each purpose needs: Debian packages, or command=package where the command may also come from elsewhere.
packages_for() {
  local fonts='fonts-katex fonts-dejavu-core python3-fonttools' tool='libcli11-dev libexpat1-dev libcairo2-dev libfreetype-dev libharfbuzz-dev fonts-katex fonts-dejavu-core libgiac-dev'
  case $1 in
    build) echo 'c++=g++ cmake=cmake ninja=ninja-build pkg-config=pkg-config nlohmann-json3-dev' ;;
    tool) echo "$tool" ;;
    desktop) echo 'libexpat1-dev fonts-katex fonts-dejavu-core qt6-base-dev qt6-svg-dev libgiac-dev' ;;
    web) echo "$fonts em++=emscripten node=nodejs python3-brotli" ;;
    web-page) echo 'node=nodejs npm=npm' ;;
    web-test) echo 'node=nodejs npm=npm chromium=chromium python3-markdown' ;;
    test) echo "$tool python3=python3 python3-fonttools libgtest-dev qt6-base-dev qt6-svg-dev rsvg-convert=librsvg2-bin pdftocairo=poppler-utils" ;;
    reference) echo 'doxygen=doxygen' ;;
    site) echo 'python3-markdown' ;;
    clang) echo 'clang++=clang' ;;
    arm32) echo 'arm-linux-gnueabihf-g++=g++-arm-linux-gnueabihf qemu-arm=qemu-user googletest' ;;
    wasm-test) echo 'em++=emscripten node=nodejs googletest' ;;
    tidy) echo 'clang++=clang clang-tidy=clang-tidy' ;;
    look) echo "$tool nodejs chromium=chromium katex" ;;
    coverage) echo 'gcovr=gcovr' ;;
    fuzz) echo 'clang++=clang libclang-rt-dev' ;;
    *) die "nobody needs $1" ;;
  esac
}

is_there() { # <package> or <command>=<package>
  case $1 in
    *=*) command -v "${1%%=*}" >/dev/null 2>&1 ;;
    *) [ "$(dpkg-query -W -f='${db:Status-Status}' "$1" 2>/dev/null)" = installed ] ;;
  esac
}

# need <purpose> …: installs the packages for these purposes that are missing.
need() {
  local purpose item missing=()
  for purpose; do
    for item in $(packages_for "$purpose"); do
      # Without dpkg only commands can be checked; CMake reports missing libraries.
      case $item in *=*) ;; *) command -v dpkg-query >/dev/null 2>&1 || continue ;; esac
      is_there "$item" || missing+=("${item#*=}")
    done
  done
  [ ${#missing[@]} -eq 0 ] || install_packages "${missing[@]}"
}

has_installed=''
install_packages() {
  local apt=(env DEBIAN_FRONTEND=noninteractive apt-get) log=build/apt.log
  command -v apt-get >/dev/null 2>&1 || die "missing, and there is no apt-get to install them: $*"
  if [ "$(id -u)" -ne 0 ]; then
    command -v sudo >/dev/null 2>&1 || die "missing, and installing them takes root: $*"
    apt=(sudo "${apt[@]}")
  fi
  has_installed=yes
  say "Installing, which takes some minutes: $*"
  mkdir -p build
  if ! patiently "still installing" "${apt[@]}" install -y --no-install-recommends "$@" </dev/null >"$log" 2>&1; then
    # The package lists may be old or missing.
    patiently "reading package lists" "${apt[@]}" update </dev/null >>"$log" 2>&1 || true
    patiently "still installing" "${apt[@]}" install -y --no-install-recommends "$@" </dev/null >>"$log" 2>&1 || {
      tail -n 15 "$log" >&2
      die "could not install: $* (see $log)"
    }
  fi
}

# Turns what ninja prints into a line every 10 seconds, and all that is not progress.
show_progress() {
  local line next=$((SECONDS + 10))
  while IFS= read -r line; do
    if [[ $line =~ ^@([0-9]+)/([0-9]+)/([^/]*)@ ]]; then
      [ "$SECONDS" -ge "$next" ] || continue
      next=$((SECONDS + 10))
      line="  step ${BASH_REMATCH[1]} of ${BASH_REMATCH[2]}, ${BASH_REMATCH[3]}"
    fi
    [[ $line == 'ninja: Entering directory'* ]] || say "$line"
  done
}

# build <preset> [target …]: configures if necessary and builds; says so, and nothing when all is built.
build() {
  local preset=$1 folder=build/$1 options=() steps
  shift
  mkdir -p build
  if command -v ccache >/dev/null 2>&1; then
    export CMAKE_CXX_COMPILER_LAUNCHER=ccache
    # It would not keep what is compiled with precompiled headers.
    [[ $(ccache --get-config sloppiness) == *pch_defines* ]] || export CCACHE_SLOPPINESS=pch_defines,time_macros
  fi
  # Headers are parsed once for many sources, and sources compiled eight at a time. A third of the remaining time would go
  # into what a debugger wants to know. Traces of the sanitizers do with lines.
  local fast=(-DZOLT_PRECOMPILE=ON -DCMAKE_UNITY_BUILD=ON)
  case $preset in
    dev) options=("${fast[@]}" -DCMAKE_CXX_FLAGS_DEBUG=) ;;
    asan) options=("${fast[@]}" -DCMAKE_CXX_FLAGS_DEBUG=-g1) ;;
    fuzz | fuzz-search) options=("${fast[@]}" '-DCMAKE_CXX_FLAGS_RELWITHDEBINFO=-O2 -g1 -DNDEBUG') ;;
  esac
  # What has just been installed was not there when the folder was configured.
  if [ ! -f "$folder/build.ninja" ] || [ CMakePresets.json -nt "$folder/build.ninja" ] || [ "$has_installed" ]; then
    say "  configuring $folder"
    patiently "still configuring" cmake --preset "$preset" ${options[@]+"${options[@]}"} >"$folder.log" 2>&1 </dev/null || {
      cat "$folder.log" >&2
      die "could not configure $folder"
    }
  fi
  # Asked by its own name, the file would only say that CMake is to look for new sources first.
  cp "$folder/build.ninja" "$folder/steps.ninja"
  steps=$(ninja -C "$folder" -f steps.ninja -n "$@" 2>/dev/null | tail -n 1)
  [[ $steps == *'no work to do'* ]] && return
  if [[ $steps =~ ^\[[0-9]+/([0-9]+)\] ]]; then
    # A step takes up to about 1.2 seconds of a processor where nothing is kept of an earlier build.
    steps="${BASH_REMATCH[1]} steps, up to about $(clock $((BASH_REMATCH[1] * 6 / 5 / $(nproc)))) minutes"
  fi
  say "  building $folder: $steps"
  if [ -t 2 ]; then
    NINJA_STATUS='[%f/%t, %es] ' ninja -C "$folder" "$@" >&2 </dev/null
  else
    NINJA_STATUS='@%f/%t/%es@ ' ninja -C "$folder" "$@" 2>&1 </dev/null | show_progress
  fi || die "could not build $folder"
}

# fetch_npm <folder>: what its package-lock.json lists, unless that is there.
fetch_npm() {
  [ "$1/package-lock.json" -nt "$1/node_modules/.package-lock.json" ] || return 0
  say "  fetching what $1 needs"
  patiently "still fetching" npm --prefix "$1" ci --no-audit --no-fund >build/npm.log 2>&1 </dev/null || {
    tail -n 5 build/npm.log >&2
    die "npm could not fetch what $1 needs (see build/npm.log)"
  }
}

# build_site: the package and the demonstration page of the web host, in build/web/site. Its tools come from npm, once.
build_site() {
  build web
  fetch_npm hosts/web
  node hosts/web/tools/build.mjs build/web build/web/site >&2
}
