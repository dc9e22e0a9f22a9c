# The project's scripts source this file for what they share, from the project's folder.
# shellcheck shell=bash

say() { printf '%s\n' "$*" >&2; }
die() {
  say "$(basename "$0"): $*"
  exit 1
}

# What each purpose needs: Debian packages, or command=package where the command may also come from elsewhere.
packages_for() {
  local tool='libcli11-dev libcairo2-dev libfreetype-dev fonts-katex fonts-dejavu-core'
  case $1 in
    build) echo 'c++=g++ cmake=cmake ninja=ninja-build pkg-config=pkg-config' ;;
    tool) echo "$tool" ;;
    desktop) echo 'fonts-katex fonts-dejavu-core qt6-base-dev qt6-svg-dev' ;;
    test) echo "$tool python3=python3 libgtest-dev qt6-base-dev qt6-svg-dev rsvg-convert=librsvg2-bin pdftocairo=poppler-utils" ;;
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

install_packages() {
  local apt=(env DEBIAN_FRONTEND=noninteractive apt-get) log=build/apt.log
  command -v apt-get >/dev/null 2>&1 || die "missing, and there is no apt-get to install them: $*"
  if [ "$(id -u)" -ne 0 ]; then
    command -v sudo >/dev/null 2>&1 || die "missing, and installing them takes root: $*"
    apt=(sudo "${apt[@]}")
  fi
  say "Installing: $*"
  mkdir -p build
  if ! "${apt[@]}" install -y --no-install-recommends "$@" </dev/null >"$log" 2>&1; then
    # The package lists may be old or missing.
    "${apt[@]}" update </dev/null >>"$log" 2>&1 || true
    "${apt[@]}" install -y --no-install-recommends "$@" </dev/null >>"$log" 2>&1 || {
      tail -n 15 "$log" >&2
      die "could not install: $* (see $log)"
    }
  fi
}

# build <preset> [target …]: configures if necessary and builds; silent when there is nothing to do.
build() {
  local preset=$1 folder=build/$1 quiet=()
  shift
  mkdir -p build
  if command -v ccache >/dev/null 2>&1; then
    export CMAKE_CXX_COMPILER_LAUNCHER=ccache
  fi
  if [ ! -f "$folder/build.ninja" ] || [ CMakePresets.json -nt "$folder/build.ninja" ]; then
    say "Configuring $folder"
    cmake --preset "$preset" >"$folder.log" 2>&1 </dev/null || {
      cat "$folder.log" >&2
      die "could not configure $folder"
    }
  fi
  [ -t 2 ] || quiet=(--quiet)
  if [[ $(ninja -C "$folder" -n "$@" 2>&1) != *'no work to do'* ]]; then
    say "Building $folder"
    ninja -C "$folder" ${quiet[@]+"${quiet[@]}"} "$@" >&2 </dev/null || die "could not build $folder"
  fi
}
