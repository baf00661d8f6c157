#!/usr/bin/env bash
# Installs into a folder, moves it, and runs the programs there with a fresh home folder.
#   install_test.sh BUILD VERSION-FILE CMAKE
set -euo pipefail
build=$1 version=$(head -n 1 "$2") cmake=$3
folder=$(mktemp -d)
server=''
cleanup() {
  [ -z "$server" ] || { kill "$server" && wait "$server"; } 2>/dev/null || true
  rm -rf "$folder"
}
trap cleanup EXIT

fail() { echo "FALLO: $*" >&2 && exit 1; }
is() { [ "$2" = "$3" ] || fail "$1: «$2» en vez de «$3»"; }

"$cmake" --install "$build" --prefix "$folder/first" >/dev/null
mv "$folder/first" "$folder/otro sitio"
bin="$folder/otro sitio/bin" share="$folder/otro sitio/share"
mkdir "$folder/home" "$folder/cwd"
run() { (cd "$folder/cwd" && env -i HOME="$folder/home" PATH="$PATH" LC_ALL=C.UTF-8 "$@"); }

for program in tonadex tonadex-cli tonadex-server; do
  is "$program --version" "$(run "$bin/$program" --version)" "$program $version"
done
is ver.dat "$(tr -d '\r' <"$share/tonadex/ver.dat")" "$version"
grep -qF "release version=\"$version\"" "$share/metainfo/tonadex.metainfo.xml" || fail metainfo
grep -qF "## $version " "$share/doc/tonadex/CHANGELOG.md" || fail "CHANGELOG.md no la nombra"
# Manual pages: version, syntax, and exactly the options of the program's help.
options() { grep -oE '(^|[ ,])-[a-z-]+' | tr -d ' ,' | sort -u; }
for program in tonadex tonadex-cli tonadex-server; do
  page=$share/man/man1/$program.1
  grep -q "^\.TH .* \"Tonadex $version\"" "$page" || fail "$page"
  is "$page" "$(man --warnings -E UTF-8 -l -Tutf8 -Z "$page" 2>&1 >/dev/null)" ""
  commands=()
  [ $program != tonadex-cli ] || mapfile -t commands < <(run "$bin/$program" --help |
    sed -n '/^Órdenes:/,/^$/s/^  \([a-z]*\) .*/\1/p')
  for command in "" "${commands[@]}"; do
    run QT_QPA_PLATFORM=offscreen "$bin/$program" $command -h | grep -E '^  -'
  done | options >"$folder/help"
  sed 's/\\-/-/g' "$page" | grep -E '^\.R?B[RI]? (\[ )?-' | options | diff "$folder/help" - ||
    fail "$program: < solo en la ayuda, > solo en $page"
done
desktop-file-validate "$share/applications/tonadex.desktop"
appstreamcli validate --no-net "$share/metainfo/tonadex.metainfo.xml" || fail metainfo
is "tipos de fichero" "$(XDG_DATA_DIRS="$share" update-mime-database "$share/mime" 2>&1)" ""
entry() { sed -n "s/^$1=//p" "$share/applications/tonadex.desktop"; }
[ "$(entry Exec)" = "tonadex %F" ] || fail "la entrada del menú arranca «$(entry Exec)»"
# The program is registered for all its file types.
kinds=$(sed -n 's/.*<mime-type type="\(.*\)">.*/\1/p' "$share/mime/packages/tonadex.xml")
[ -n "$kinds" ] || fail "no hay tipos de fichero"
for kind in $kinds; do
  [[ ";$(entry MimeType)" == *";$kind;"* ]] || fail "la entrada del menú no abre $kind"
done
[ -s "$share/icons/hicolor/scalable/apps/$(entry Icon).svg" ] || fail "icono $(entry Icon)"

# A melody that only the installed shelf has, so that the build's shelf is not used by mistake.
rm "$share"/tonadex/servidor/*
planted=Plantada:d=4,o=5,b=120:c,d,e
printf '%s' "$planted" >"$share/tonadex/servidor/Plantada.${#planted}"
found=$(run "$bin/tonadex-cli" buscar plantada)
[[ $found == *"Plantada.${#planted}"* ]] || fail "buscar dice «$found»"
run "$bin/tonadex-cli" descargar "Plantada.${#planted}" >/dev/null
user=$folder/home/.local/share/tonadex
is ver.dat "$(tr -d '\r' <"$user/ver.dat")" "$version"
is "lo descargado" "$(tr -d '\r' <"$user/melodias/Plantada.${#planted}")" "$planted"
is convertir "$(run "$bin/tonadex-cli" convertir -t t68i --solo-resultado "$user/melodias/ParaElisa."* |
  head -n 1 | tr -d '\r')" "BEGIN:IMELODY"

# Printing and playing load their libraries in separate programs.
! ldd "$bin/tonadex-cli" | grep -E 'Qt|fluidsynth' || fail "tonadex-cli carga lo que no usa"
run "$bin/tonadex-cli" imprimir -t t68i --pdf "$folder/hoja.pdf" "$user/melodias/ParaElisa."*
[ -s "$folder/hoja.pdf" ] || fail "no se ha impreso la hoja"
play() { run TONADEX_SOUND=ninguno "$bin/tonadex-cli" reproducir - 2>&1 <<<Do:d=16,o=5,b=225:c; }
[[ $(play) == "Reproduciendo Do"* ]] || fail "reproducir dice «$(play)»"
rm "$bin/../libexec/tonadex-reproducir"
is "reproducir sin su programa" "$(play || echo $?)" "tonadex-cli: no se puede arrancar el programa \
«$folder/otro sitio/libexec/tonadex-reproducir»; vuelve a instalar Tonadex
3"

"$bin/tonadex-server" --puerto 0 --carpeta "$folder/shelf" --registro "$folder/log" >"$folder/said" &
server=$!
for ((i = 0; i < 1200; i++)); do grep -q http "$folder/said" && break || sleep 0.05; done
said=$(cat "$folder/said")
[[ $said == "Tonadex $version: 1 melodías en http://127.0.0.1:"* ]] || fail "el servidor dice «$said»"
port=$(sed 's|.*:\([0-9]*\)/$|\1|' "$folder/said")
page() {
  exec 3<>"/dev/tcp/127.0.0.1/$port"
  printf 'GET /mini.php?version=%s HTTP/1.1\r\nHost: x\r\nConnection: close\r\n\r\n' "$1" >&3
  cat <&3
}
grep -qF "última versión ($version)" <<<"$(page "$version")" || fail "no es la última versión"
grep -qF "la $version. Tú tienes la 0.9.9" <<<"$(page 0.9.9)" || fail "no avisa de la versión nueva"
