#!/usr/bin/env bash
# Installs missing packages, builds and starts Tonadex. Arguments are passed to the program.
# Without a display it shows the terminal program's conversion of an included melody.
set -euo pipefail
source "$(dirname "$0")/lib.sh"

install_packages "${build_packages[@]}"
say "Compilando Tonadex (la primera vez tarda unos minutos)"
build "$(run_preset)" tonadex tonadex-cli tonadex-server tonadex_data
bin=$root/build/release

no_display=3  # the desktop program's exit code without a usable display
code=0
"$bin/shell/qt/tonadex" "$@" || code=$?
[ "$code" -eq "$no_display" ] || exit "$code"
say "No hay pantalla (DISPLAY): esto es lo que hace el programa de terminal."
melody=$(find "$bin/share/tonadex/melodias" -name 'ParaElisa.*')
"$bin/cli/tonadex-cli" convertir --todos "$melody"
say "Con tus melodías: $bin/cli/tonadex-cli convertir --telefono 3310 FICHERO"
