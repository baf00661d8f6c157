#!/usr/bin/env bash
# Builds the files of a release in dist/; installs the packages that this needs:
#   package.sh [deb|tarball|windows|all]    all: the three; without an argument deb and tarball.
set -euo pipefail
source "$(dirname "$0")/lib.sh"
version=$(head -n 1 "$root/VERSION")
dist=$root/dist

# is_version "what" FOUND: ends the script when FOUND is not the version in VERSION.
is_version() {
  [ "$2" = "$version" ] || { echo "FALLO: $1 dice «$2» y VERSION «$version»" >&2 && exit 1; }
}

deb() {
  install_packages "${build_packages[@]}" "${package_packages[@]}"
  say "Compilando los paquetes de Debian"
  build package
  local made=$root/build/package/deb file
  rm -rf "$made"
  (cd "$root/build/package" && umask 022 && cpack -B "$made" >"$made.log" 2>&1) ||
    { cat "$made.log" >&2 && exit 1; }
  for file in "$made"/*.deb; do
    is_version "$(basename "$file")" "$(dpkg-deb -f "$file" Version)"
    lintian --allow-root --fail-on error "$file"
    cp "$file" "$dist/"
    say "Hecho: dist/$(basename "$file") ($(du -h "$file" | cut -f1))"
  done
}

# The tarball holds the tracked files of the last commit.
tarball() {
  install_packages git gzip
  local name=tonadex-$version
  git -C "$root" rev-parse -q --verify HEAD >/dev/null 2>&1 ||
    { echo "El tarball se hace en el repositorio de git." >&2 && exit 1; }
  git -C "$root" diff --quiet HEAD || say "Aviso: lo que no está en git no va en el tarball"
  git -C "$root" archive --prefix="$name/" HEAD | gzip -9n >"$dist/$name.tar.gz"
  is_version "$name.tar.gz" "$(tar -xzOf "$dist/$name.tar.gz" "$name/VERSION" | head -n 1)"
  say "Hecho: dist/$name.tar.gz ($(du -h "$dist/$name.tar.gz" | cut -f1))"
}

windows() {
  "$root/scripts/build-windows.sh"
  install_packages unzip
  is_version tonadex-windows.zip \
    "$(unzip -p "$dist/tonadex-windows.zip" tonadex-windows/ver.dat | tr -d '\r')"
}

mkdir -p "$dist"
case "${1:-}" in
  deb | tarball | windows) "$1" ;;
  '') deb && tarball ;;
  all) deb && tarball && windows ;;
  *) echo "uso: package.sh [deb|tarball|windows|all]" >&2 && exit 2 ;;
esac
