#!/usr/bin/env bash
# Installs missing packages, cross-builds the Windows programs and packs dist/tonadex-windows.zip.
set -euo pipefail
source "$(dirname "$0")/lib.sh"

install_packages "${windows_packages[@]}"
say "Compilando Tonadex para Windows"
build win tonadex tonadex-cli tonadex-server tonadex_data

name=tonadex-windows
folder=$root/build/win/$name
rm -rf "$folder"
mkdir -p "$folder" "$root/dist"
cp "$root"/build/win/{shell/win32/tonadex,cli/tonadex-cli,server/tonadex-server}.exe "$folder/"
x86_64-w64-mingw32-strip "$folder"/*.exe
cp -r "$root"/build/win/share/tonadex/. "$folder/"
crlf() { sed 's/\r*$/\r/' "$1" >"$2"; }
crlf "$root/platform/win32/LEEME.txt" "$folder/LEEME.txt"
crlf "$root/LICENSE" "$folder/LICENSE.txt"
rm -f "$root/dist/$name.zip"
(cd "$folder/.." && zip -q -r -X "$root/dist/$name.zip" "$name")
say "Hecho: dist/$name.zip ($(du -h "$root/dist/$name.zip" | cut -f1))"
