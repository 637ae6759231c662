# What ./run, ./test, ./bench and ./lint share. Sourced, not run.

root=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)
cd "$root" || exit 1

die() {
  printf '%s\n' "$1" >&2
  exit 1
}

# Installs what packages.txt names and the machine lacks; says what to do where it can't.
install_missing() {
  local wanted missing=() sudo=()
  command -v dpkg-query >/dev/null || die "This project builds on Debian 12; dpkg was not found. Install what scripts/packages.txt names by hand, then build with cmake --preset release."
  mapfile -t wanted < <(sed 's/#.*//' scripts/packages.txt | tr -d ' ' | grep -v '^$')
  mapfile -t missing < <(comm -23 <(printf '%s\n' "${wanted[@]}" | sort) \
    <(dpkg-query -W -f '${db:Status-Status} ${Package}\n' 2>/dev/null | sed -n 's/^installed //p' | sort -u))
  [ ${#missing[@]} -eq 0 ] && return 0
  if [ "$(id -u)" -ne 0 ]; then
    if command -v sudo >/dev/null && sudo -n true 2>/dev/null || { [ -t 0 ] && command -v sudo >/dev/null; }; then
      sudo=(sudo)
    else
      die "These packages are missing and installing them needs root: run as root:  apt-get install ${missing[*]}"
    fi
  fi
  echo "Installing ${#missing[@]} packages…"
  local log=build/install.log
  mkdir -p build
  export DEBIAN_FRONTEND=noninteractive
  if ! "${sudo[@]}" apt-get update >"$log" 2>&1 ||
    ! "${sudo[@]}" env DEBIAN_FRONTEND=noninteractive apt-get install -y --no-install-recommends "${missing[@]}" >>"$log" 2>&1; then
    tail -n 3 "$log" >&2
    die "The packages could not be installed (no network, or no such package?): see $log. Still missing: ${missing[*]}"
  fi
}

# configure_and_build PRESET [TARGET…]
configure_and_build() {
  local preset=$1
  shift
  local log=build/$preset.log
  mkdir -p build
  if ! cmake --preset "$preset" >"$log" 2>&1; then
    tail -n 25 "$log" >&2
    die "Configuring failed: see $log."
  fi
  local targets=()
  [ $# -gt 0 ] && targets=(--target "$@")
  cmake --build --preset "$preset" "${targets[@]}" || die "The build failed."
}

# Chromium's sandbox cannot be set up by root.
prepare_web_engine() {
  if [ "$(id -u)" -eq 0 ]; then
    export QTWEBENGINE_CHROMIUM_FLAGS="${QTWEBENGINE_CHROMIUM_FLAGS:-} --no-sandbox"
  fi
}
