#!/bin/sh
# fetch_midi_files.sh FOLDER: downloads Debian packages with MIDI files and the program midicsv, and
# unpacks them
# below FOLDER, once. Fails without a network or package lists.
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
