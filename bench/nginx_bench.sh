#!/bin/bash
# nginx_bench.sh PROGRAM [MELODIES] [SECONDS]
# Requests per second of the server's download and search, and of nginx sending the same melody and
# a file as long as the search's reply, in turn on the same machine. Needs nginx and wrk.
set -eu
program=$(realpath "$1")
melodies=${2:-20000}
seconds=${3:-5}
folder=$(mktemp -d)
port=8$((RANDOM % 900 + 100))
server=
touch "$folder/said"
trap 'for pid in $server $(cat "$folder/nginx.pid" 2> /dev/null); do kill "$pid"; done
      wait; rm -rf "$folder"' EXIT
mkdir "$folder/melodies" "$folder/static"
chmod 755 "$folder" "$folder/static"

# Names of two words from the digits of a number, so that any word is in many names.
words=(canción luz valse mira tango sol noche perla rumba cielo)
for ((i = 0; i < melodies; ++i)); do
  name="${words[i / 10 % 10]} ${words[i % 10]} $i"
  echo "$name:d=4,o=5,b=120:c,d,e,f,g,a,b,c6,d6,e6,f6,g6" > "$folder/melodies/$name.50"
done

(cd "$folder" && exec "$program" --puerto "$port" --carpeta "$folder/melodies" \
  --registro /dev/null > said) &
server=$!
until grep -q http "$folder/said"; do sleep 0.2; done
base=http://127.0.0.1:$port
download="/tonos/luz%20sol%2015.50"
search="/listatonos.php?cadenadebusqueda=luz%20sol"
curl -sf "$base$download" > "$folder/static/download"
curl -sf "$base$search" > "$folder/static/search"

cat > "$folder/nginx.conf" <<CONF
pid $folder/nginx.pid;
error_log $folder/error.log;
worker_processes auto;
events { worker_connections 1024; }
http {
  access_log off;
  sendfile on;
  open_file_cache max=100;
  server { listen 127.0.0.1:$((port + 1000)); root $folder/static; }
}
CONF
nginx -c "$folder/nginx.conf" -e "$folder/error.log"

load() {
  wrk -t1 -c64 -d"${seconds}s" --latency "$2" |
    awk -v what="$1" '/50%|99%/ {at[$1] = $2} /Requests\/sec/ {rate = $2} /Non-2xx/ {bad = " " $0}
      END {printf "%-16s %9.0f requests/s, median %s, 99 %% %s%s\n", what, rate, at["50%"], at["99%"], bad}'
}
echo "a reply: $(wc -c < "$folder/static/download") bytes downloaded, $(wc -c < "$folder/static/search") searched"
for round in 1 2 3; do
  load "server download" "$base$download"
  load "nginx download" "http://127.0.0.1:$((port + 1000))/download"
  load "server search" "$base$search"
  load "nginx search" "http://127.0.0.1:$((port + 1000))/search"
done
