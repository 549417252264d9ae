# shellcheck shell=bash
# What ./run and ./test have in common: installing what is missing, and building.

source "$root/scripts/packages.sh"

# One line that says what is wrong and what helps.
fail() {
  echo "quiv-controller: $*" >&2
  exit 1
}

# Prints those of the packages that are not installed.
missing_packages() {
  local installed
  # dpkg-query fails when it does not know one of them, which is no failure here.
  installed=$({ dpkg-query -W -f='${db:Status-Status} ${Package}\n' "$@" 2>/dev/null || true; } |
    sed -n 's/^installed //p' | sort -u)
  comm -23 <(printf '%s\n' "$@" | sort -u) <(echo "$installed")
}

# Installs those of the packages that are missing, after saying which.
ensure_packages() {
  command -v dpkg-query >/dev/null && command -v apt-get >/dev/null ||
    fail "this needs Debian 12 or a system like it (apt-get was not found)"
  local missing
  mapfile -t missing < <(missing_packages "$@")
  [ ${#missing[@]} -eq 0 ] && return
  echo "Installing: ${missing[*]}"
  local as_root=()
  if [ "$(id -u)" -ne 0 ]; then
    command -v sudo >/dev/null ||
      fail "please install as root, as there is no sudo: apt-get install ${missing[*]}"
    as_root=(sudo)
  fi
  local install=("${as_root[@]}" env DEBIAN_FRONTEND=noninteractive
    apt-get install -y -q --no-install-recommends "${missing[@]}")
  local log
  log=$(mktemp)
  # Package lists may be absent or old: fetch them when the first attempt fails.
  "${install[@]}" >"$log" 2>&1 ||
    { "${as_root[@]}" apt-get update -q >>"$log" 2>&1 && "${install[@]}" >>"$log" 2>&1; } ||
    { tail -n 5 "$log" >&2; rm -f "$log"; fail "could not install: ${missing[*]}"; }
  rm -f "$log"
}

# build PRESET [TARGET...]: configures when needed and builds, quietly when there is nothing to say.
build() {
  local preset=$1
  shift
  local log=$root/build/$preset.log targets=()
  [ $# -gt 0 ] && targets=(--target "$@")
  mkdir -p "$root/build"
  cd "$root" || exit 1
  if [ ! -f "build/$preset/build.ninja" ]; then
    echo "Configuring..."
    cmake --preset "$preset" >"$log" 2>&1 || { cat "$log" >&2; fail "configuring failed"; }
  fi
  if ! cmake --build --preset "$preset" "${targets[@]}" -- -n 2>/dev/null | grep -q 'no work to do'; then
    echo "Building ($preset)..."
    cmake --build --preset "$preset" "${targets[@]}" >"$log" 2>&1 ||
      { tail -n 60 "$log" >&2; fail "building failed"; }
  fi
}
