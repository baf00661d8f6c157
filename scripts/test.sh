#!/usr/bin/env bash
# Installs missing packages, builds everything once and runs every test.
set -euo pipefail
source "$(dirname "$0")/lib.sh"

install_packages "${build_packages[@]}" "${test_packages[@]}" "${windows_packages[@]}"
say "Compilando programas y pruebas"
build release
say "Compilando y probando los programas de Windows (con Wine)"
build win
cd "$root"
ctest --preset win
exec ctest --preset release --parallel "$(nproc)" "$@"
