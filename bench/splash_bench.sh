#!/bin/bash
# splash_bench.sh PROGRAM [RUNS]
# Prints the milliseconds from the start of the desktop program to its splash on the screen, and the
# duration of `--ayuda`, which loads the same libraries and opens no window. Needs Xvfb and
# xwininfo.
set -eu
program=$1
runs=${2:-7}
folder=$(mktemp -d)
export TONADEX_HOME=$folder/home XDG_RUNTIME_DIR=$folder LC_ALL=C
chmod 700 "$folder"
mkfifo "$folder/display"
Xvfb -displayfd 3 -screen 0 1280x1024x24 -noreset 3> "$folder/display" 2> /dev/null &
server=$!
trap 'kill $server; wait $server || true; rm -rf "$folder"' EXIT
read -r number < "$folder/display"
export DISPLAY=:$number

now() { echo $((${EPOCHREALTIME/./} / 100)); }  # tenths of a millisecond
shown() { xwininfo -name Tonadex 2> /dev/null | grep -q 'Map State: IsViewable'; }
print() { echo "$1: $(($2 / 10)).$(($2 % 10)) ms"; }

for ((run = 0; run <= runs; ++run)); do  # the first one fills the caches and the home folder
  begin=$(now)
  "$program" --ayuda > /dev/null
  end=$(now)
  ((run == 0)) || print "libraries" $((end - begin))
  begin=$(now)
  "$program" > /dev/null 2>&1 &
  started=$!
  until shown; do
    kill -0 $started || { echo "the program ended" >&2; exit 1; }
  done
  end=$(now)
  ((run == 0)) || print "splash" $((end - begin))
  kill $started
  wait $started || true
done | sort -k1,1 -k2,2n
