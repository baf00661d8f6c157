# Shared by the scripts: packages of Debian 12, build folder, presets.
# shellcheck shell=bash

root=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)

build_packages=(
  g++ cmake ninja-build ca-certificates
  libboost-dev libssl-dev zlib1g-dev libcli11-dev nlohmann-json3-dev
  libfluidsynth-dev timgm6mb-soundfont libqrencode-dev libpqxx-dev
  qt6-base-dev qt6-svg-dev qt6-webengine-dev qt6-translations-l10n
  fonts-dejavu-core xdg-utils
)
test_libraries=(libgtest-dev libgmock-dev libbenchmark-dev)
test_packages=(
  "${test_libraries[@]}"
  xvfb xauth xdotool xclip
  cups cups-client cups-filters poppler-utils
  gammu procps openssl postgresql
  python3-jsonschema python3-selenium chromium chromium-driver
  appstream desktop-file-utils man-db shared-mime-info
)
windows_packages=(
  g++ cmake ninja-build libboost-dev libcli11-dev nlohmann-json3-dev libgtest-dev googletest
  g++-mingw-w64-x86-64-posix zip
  wine wine64 xvfb fonts-dejavu-core python3 openssl
)
package_packages=(dpkg-dev binutils gzip librsvg2-bin lintian)
check_packages=(clang-14 clang-tidy-14 clang-format-14 libclang-rt-14-dev llvm-14)

say() { printf '\033[1m%s\033[0m\n' "$*" >&2; }

is_installed() {
  [ "$(dpkg-query -W -f='${db:Status-Abbrev}' "$1" 2>/dev/null)" = "ii " ]
}

# install_packages NAME…: installs the missing packages, as root or with sudo.
install_packages() {
  local missing=() package as_root=()
  for package in "$@"; do
    is_installed "$package" || missing+=("$package")
  done
  [ ${#missing[@]} -eq 0 ] && return 0
  [ "$(id -u)" -eq 0 ] || as_root=(sudo)
  say "Instalando paquetes: ${missing[*]}"
  "${as_root[@]}" apt-get -o DPkg::Lock::Timeout=600 update -qq
  "${as_root[@]}" env DEBIAN_FRONTEND=noninteractive apt-get -o DPkg::Lock::Timeout=600 install -y -qq \
    --no-install-recommends "${missing[@]}" >/dev/null
}

# The preset of run.sh: only the programs. On a machine with the test libraries it includes the
# tests, because both presets share one folder, and disabling the tests would delete what test.sh
# built.
run_preset() {
  local library
  for library in "${test_libraries[@]}"; do
    is_installed "$library" || { echo run && return; }
  done
  echo release
}

# build PRESET [TARGET…]: configures and builds; fast when nothing has changed.
build() {
  local preset=$1
  shift
  local targets=() configured
  [ $# -eq 0 ] || targets=(--target "$@")
  configured=$(cd "$root" && cmake --preset "$preset" 2>&1) || {
    printf '%s\n' "$configured" >&2
    return 1
  }
  (cd "$root" && cmake --build --preset "$preset" "${targets[@]}" >&2)
}
