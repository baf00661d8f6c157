#!/usr/bin/env bash
# Drives the real desktop program by keyboard on a virtual display, with a fresh home folder:
# chooses a phone, composes, plays and uploads, finds and downloads the same melody, converts and
# prints it, and starts again.
#   desktop_test.sh TONADEX CLIPBOARD
set -euo pipefail
tonadex=$1 clipboard=$2
home=$(mktemp -d)
xvfb='' program=''

cleanup() {
  local process
  for process in $program $xvfb; do
    kill "$process" 2>/dev/null && wait "$process" || true
  done
  rm -rf "$home" || true  # a child process that still writes must not fail the test
} 2>/dev/null
trap cleanup EXIT

fail() {
  echo "FALLO: $*" >&2
  [ ! -s "$home/errores.txt" ] || tail -n 20 "$home/errores.txt" >&2
  exit 1
}

# wait_for "what" command…: waits until the command succeeds, 180 s at most, because the machine may
# be busy; the whole test has its own time limit.
wait_for() {
  local what=$1 end=$((SECONDS + 180))
  shift
  until "$@" >/dev/null 2>&1; do
    [ $SECONDS -lt $end ] || fail "no llega: $what"
    sleep 0.05
  done
}

# The ids of the visible windows with this title.
window() { xdotool search --onlyvisible --name "^$1\$" 2>/dev/null; }

# Finds the main window, which is at least 900 pixels wide; the splash has the same title, is
# smaller, and may close during the query.
main_window() {
  local id WIDTH HEIGHT X Y SCREEN
  for id in $(window Tonadex); do
    WIDTH=0
    eval "$(xdotool getwindowgeometry --shell "$id" 2>/dev/null)"
    if [ "$WIDTH" -ge 900 ]; then main=$id && return 0; fi
  done
  return 1
}
focused() { xdotool windowfocus "$1" && [ "$(xdotool getwindowfocus)" = "$1" ]; }

# The search page's button renames the update marker: the first sign that keys arrive.
ready() { main_window && focused "$main" && keys ctrl+2 && [ -e "$folder/actualiza.tdx" ]; }

start() {
  [ ! -e "$folder/actualiza.tdx" ] || mv "$folder/actualiza.tdx" "$folder/noactualiza.tdx"
  "$tonadex" 2>"$home/errores.txt" &
  program=$!
  wait_for "la ventana" main_window
  wait_for "la respuesta a una tecla" ready
}

quit() {
  xdotool key ctrl+q
  local code=0
  wait "$program" || code=$?
  program=''
  [ "$code" = 0 ] || fail "el programa acaba con $code"
}

keys() { xdotool key --delay 20 "$@"; }

# tab_to "what" TEXT: presses Tab until Ctrl+C copies TEXT.
copied() { keys Tab ctrl+a ctrl+c && [ "$("$clipboard")" = "$1" ]; }
tab_to() { wait_for "$1 («$2»)" copied "$2"; }

# Waits for a message box with this title, checks that its text contains the words, and closes it
# with Enter.
box_says() { keys ctrl+c && "$clipboard" | grep -qF "$1"; }
answer_box() {
  local title=$1 words=$2 box
  small_box() { box=$(window "$title" | grep -vx "$main"); }
  wait_for "el mensaje «$title»" small_box
  wait_for "el foco del mensaje" focused "$box"
  wait_for "el mensaje «$words»" box_says "$words"
  keys Return
  wait_for "el cierre del mensaje" bash -c "! xdotool search --onlyvisible --name '^$title\$' | grep -qx $box"
  wait_for "el foco" focused "$main"
}

# The playback bar accepts keys once the MIDI file exists.
stop_playing() {
  midi_file() { [ -n "$(find "$home" -name rtlTmpFile.mid)" ]; }
  wait_for "el fichero MIDI" midi_file
  keys Return
  find "$home" -name rtlTmpFile.mid -delete
}

exec {fd}<> <(:)
Xvfb -displayfd "$fd" -noreset -screen 0 1000x700x24 -nolisten tcp >/dev/null 2>&1 &
xvfb=$!
read -r -t 60 number <&"$fd" || fail "no hay Xvfb"
export DISPLAY=:$number HOME=$home XDG_RUNTIME_DIR=$home/run TONADEX_SOUND=ninguno QT_QPA_PLATFORM=xcb
export CUPS_SERVER=$home/none  # no printer: the sheet becomes a PDF
unset XDG_CONFIG_HOME XDG_DATA_HOME XDG_CACHE_HOME TONADEX_HOME TONADEX_SERVIDOR WAYLAND_DISPLAY
mkdir -m 700 "$XDG_RUNTIME_DIR"
mkdir "$home/Documents"
folder=$home/.local/share/tonadex
setting=$home/.config/tonadex/ajustes.ini
presses="18 3 (5)9 08 6# 19* "  # for the melody composed below

echo "Elegir un móvil"
start
keys ctrl+5 Tab Tab Tab Home End
keys ctrl+3
wait_for "el móvil guardado" grep -qF '"modelo"=" Pulsaciones"' "$setting"

echo "Componer, escuchar y subir"
keys ctrl+1
xdotool type --delay 20 "Prueba"
keys Tab ctrl+a BackSpace
xdotool type --delay 20 "120"
keys Tab
xdotool type --delay 20 "8c1 8e1 4.g1 8- #a1 2c2"
keys alt+e
stop_playing
keys alt+s
answer_box Tonadex "Melodia subida correctamente."
grep -qF "b=120:" "$folder"/servidor/Prueba.* || fail "el servidor no la tiene"

echo "Buscar y descargar"
keys ctrl+2
rm "$folder"/melodias/*
xdotool type --delay 20 "prueba"
keys Return
found() { keys Down ctrl+c && "$clipboard" | grep -q '^Prueba'; }
wait_for "lo encontrado" found
keys Return
answer_box Tonadex "La melodía se ha bajado correctamente."
tr -d '\r\n' <"$(ls "$folder"/melodias/Prueba.*)" | cmp - "$folder"/servidor/Prueba.* || fail "no ha llegado lo que se subió"

echo "Escuchar, convertir e imprimir"
keys ctrl+3 p
keys Return
stop_playing
keys alt+c
tab_to "las pulsaciones" "$presses"
keys alt+m
answer_box Tonadex ".pdf"
find "$home" -name '*.pdf' -exec pdftotext -raw {} - \; | grep -qF "${presses% }" || fail "no hay hoja"

echo "Cerrar y volver a empezar"
quit
start
keys ctrl+3 ctrl+5 ctrl+3
keys Down alt+c
tab_to "las pulsaciones, otra vez" "$presses"
quit
echo "Bien"
