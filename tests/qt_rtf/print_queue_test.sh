#!/usr/bin/env bash
# print_queue_test.sh TONADEX_CLI: prints through a private print server whose queues write PDF
# files into a
# temporary folder. Needs no rights over the machine's printers.
set -euo pipefail
cli=$1 model=/usr/share/ppd/cupsfilters/Generic-PDF_Printer-PDF.ppd
export PATH=$PATH:/usr/sbin
for needed in cupsd lpadmin lpstat pdftotext "$model"; do
  command -v "$needed" >/dev/null || [ -e "$needed" ] || { echo "SKIPPED: no $needed"; exit 77; }
done

root=$(mktemp -d)
server=''
# A print filter that still writes must not fail the test.
trap '[ -z "$server" ] || { kill "$server" && wait "$server"; } || true; rm -rf "$root" || true' EXIT
fail() { echo "FAILED: $*"; tail -n 40 "$root/error.log"; exit 1; }
until_true() {  # command…: waits 60 s at most
  local end=$((SECONDS + 60))
  while [ $SECONDS -lt $end ]; do "$@" >/dev/null 2>&1 && return; sleep 0.05; done
  fail "no answer: $*"
}

chmod 755 "$root"  # filters of a server started by root run as another user
mkdir -p "$root"/{out,run,spool/tmp,cache,etc/ppd,home/melodias}
cat >"$root/cupsd.conf" <<END
Listen $root/run/cups.sock
DefaultAuthType None
WebInterface No
Browsing No
LogLevel debug
<Location />
  Order allow,deny
  Allow all
</Location>
<Policy default>
  <Limit All>
    Order allow,deny
    Allow all
  </Limit>
</Policy>
END
cat >"$root/cups-files.conf" <<END
FileDevice Yes
Sandboxing relaxed
ServerRoot $root/etc
RequestRoot $root/spool
TempDir $root/spool/tmp
CacheDir $root/cache
StateDir $root/run
ErrorLog $root/error.log
AccessLog $root/access.log
PageLog $root/page.log
END
export CUPS_SERVER=$root/run/cups.sock TONADEX_HOME=$root/home
cupsd -f -c "$root/cupsd.conf" -s "$root/cups-files.conf" &
server=$!
# lpstat succeeds even without a server, so its output is checked.
listens() { LC_ALL=C lpstat -r | grep -q 'scheduler is running'; }
until_true listens
for queue in OTRA CASA CERRADA; do
  lpadmin -p "$queue" -v "file:$root/out/$queue.pdf" -P "$model" -E 2>"$root/said" ||
    fail "no queue $queue: $(cat "$root/said")"
done
lpadmin -d CASA
cupsreject CERRADA

printf '%s' '{\rtf1\ansi\deff0{\fonttbl{\f0\fswiss Arial;}}\paperw11906\paperh16838\margl1134' \
  '\f0\fs40\b cambiatitulo\b0\fs24\par Formato: cambiamodelo\par Tempo: cambiatempo\par' \
  ' Melod\'"'"'eda: cambiamelodia\par\page \'"'"'daltima p\'"'"'e1gina\par}' >"$root/home/print.rtf"
echo 'Canción del ñandú:d=4,o=5,b=125:c,8d#6' >"$root/melodia.txt"
sheet() { "$cli" imprimir -m ' Compositor' "$root/melodia.txt" "$@"; }
arrived() { [ -s "$root/out/$1.pdf" ] && [ -z "$(lpstat -o)" ]; }

sheet
until_true arrived CASA
text=$(pdftotext -layout -nopgbrk "$root/out/CASA.pdf" - | xargs)
[ "$text" = 'Canción del ñandú Formato: Nokia>Compositor. Tempo: 125 Melodía: 4c1 8#d2 Última página' ] ||
  fail "the page says: $text"
pdfinfo "$root/out/CASA.pdf" | grep -q '(A4)' || fail "the paper is no A4"
sheet --impresora OTRA
until_true arrived OTRA
for refused in 'CERRADA:no se puede imprimir en la impresora «CERRADA»' \
  'NINGUNA:no existe la impresora «NINGUNA»'; do
  code=0
  said=$(sheet --impresora "${refused%%:*}" 2>&1) || code=$?
  [ "$code:$said" = "3:tonadex-cli: ${refused#*:}" ] || fail "$code:$said"
done
