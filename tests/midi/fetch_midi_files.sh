#!/bin/sh
# fetch_midi_files.sh FOLDER: MIDI files of other makers and the program midicsv, from packages of
# Debian, unpacked below FOLDER once. Fails without a network or without the package lists.
set -eu
mkdir -p "$1"
cd "$1"
exec 9>lock
flock 9
[ -e complete ] && exit 0
for package in midicsv openttd-openmsx pianobooster planetblupi-music-midi solfege; do
  apt-get -q download "$package" >/dev/null
  dpkg -x "$package"_*.deb .
  rm "$package"_*.deb
done
find usr -name '*.mid.gz' -exec gunzip -f {} +
touch complete
