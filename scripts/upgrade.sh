#!/usr/bin/env bash
# Upgrades the packages of an earlier version to those in dist/ in a fresh Debian 12, and checks
# what users
# and the server keep and what a purge leaves. As root:
#   upgrade.sh FOLDER-WITH-THE-EARLIER-DEBS
# With DEBIAN=FOLDER it uses that debootstrap of bookworm, unchanged, instead of creating one.
set -euo pipefail
source "$(dirname "$0")/lib.sh"

# Paths inside the fresh system: /old and /new hold the packages.
inside() {
  export DEBIAN_FRONTEND=noninteractive HOME=/root LC_ALL=C.UTF-8
  fail() { echo "FALLO: $*" >&2 && exit 1; }
  is() { [ "$2" = "$3" ] || fail "$1: «$2» en vez de «$3»"; }
  apt() {
    apt-get -y -qq -o Acquire::Retries=3 "$@" >>/apt.log 2>&1 || { tail -n 20 /apt.log && fail "apt $*"; }
  }
  install() { apt install --no-install-recommends --allow-downgrades "$@"; }
  eva() { runuser -u eva -- env -i HOME=/home/eva LC_ALL=C.UTF-8 PATH=/usr/bin:/bin "$@"; }
  # serve COMMAND…: starts the installed server on its service's folder, and runs tonadex-cli
  # COMMAND… as a client.
  serve() {
    tonadex-server --puerto 8123 --carpeta /var/lib/tonadex/servidor --registro /var/log/tonadex/servidor.log >/said &
    local server=$!
    until grep -q http /said; do kill -0 $server && sleep 0.1; done
    eva tonadex-cli "$1" --servidor http://127.0.0.1:8123 "${@:2}"
    kill $server && wait $server
  }
  sums() { find "$@" -type f -exec sha256sum {} + | sort; }
  linked() { find / -xdev \( -path /proc -o -path /sys \) -prune -o -path '*tonadex*' -type f -exec sh -c 'ldd "$1" 2>/dev/null | sed "s|^|$1|"' _ {} \;; }

  apt update
  useradd --create-home eva
  # Upgrades a machine that has only the server.
  install /old/tonadex-server_*.deb
  mkdir -p /var/lib/tonadex /var/log/tonadex /etc/systemd/system/{tonadex-server.service.d,multi-user.target.wants}
  ln -s /lib/systemd/system/tonadex-server.service /etc/systemd/system/multi-user.target.wants/
  printf '[Service]\nExecStart=\nExecStart=/usr/bin/tonadex-server --direccion 0.0.0.0\n' >/etc/systemd/system/tonadex-server.service.d/override.conf
  install /new/tonadex-server_*.deb
  grep -q IPAddressAllow /apt.log || fail "la actualización no avisa de IPAddressAllow"
  ! dpkg-query -W -f '${Package}\n' | grep -E '^(libqt|libx11|libwayland|libfluidsynth)' || fail "el servidor instala un escritorio"
  install /old/tonadex{,-server}_*.deb

  # Creates a user with own, edited and deleted melodies and with settings, and an upload on the
  # server.
  local home=/home/eva/.local/share/tonadex
  eva tonadex-cli buscar vals >/dev/null
  eva sh -c "cd $home && mkdir -p ~/.config/tonadex && echo '[General]' >~/.config/tonadex/ajustes.ini &&
    echo 'Mía:d=4,o=5,b=120:c,d#,e' >melodias/Mia.24 && rm melodias/ParaElisa.* && echo ' ' >>\$(ls melodias/* | head -n 1) &&
    echo http://melodias.example >servidor.txt && sed -i s/Arial/Georgia/ print.rtf"
  eva sh -c 'echo "De Eva:d=4,o=5,b=120:c,8d#,e" >~/subida.txt'
  serve subir /home/eva/subida.txt >/dev/null
  sums /home/eva /var/lib/tonadex | grep -vE '(ver.dat|TONADEX.HLP|\.tonadex-datos|\.puerto|\.candado|\.indice)$' >/before

  install /new/tonadex{,-server}_*.deb
  eva tonadex-cli convertir -t 3310 --pasos $home/melodias/Mia.24 | grep -q 'mantén\|re sostenido' || fail convertir
  serve buscar "de eva" | grep -q "De Eva.28" || fail "la melodía subida no está"
  sums /home/eva /var/lib/tonadex >/after
  is "lo que la actualización cambia" "$(comm -23 /before /after)" ""
  is ver.dat "$(tr -d '\r' <$home/ver.dat)" "$(dpkg-query -W -f '${Version}' tonadex)"
  [ -e /etc/systemd/system/multi-user.target.wants/tonadex-server.service ] || fail "el servicio se ha desactivado"
  ! linked | grep 'not found' || fail "faltan bibliotecas"
  is "dpkg -V" "$(dpkg -V tonadex tonadex-server)" ""

  # Changes of the administrator and uploads survive a removal; a purge leaves only users' files.
  echo '# mío' >>/etc/logrotate.d/tonadex-server
  apt purge tonadex
  apt remove tonadex-server
  install /new/tonadex-server_*.deb
  [ -e "/var/lib/tonadex/servidor/De Eva.28" ] || fail "la melodía subida se ha perdido"
  grep -q '# mío' /etc/logrotate.d/tonadex-server || fail "la rotación del registro ha perdido un cambio"
  apt purge tonadex-server
  is "lo que la desinstalación cambia" "$(comm -23 <(grep ' /home' /before) <(sums /home/eva))" ""
  is "lo que deja la purga" "$(find / -xdev \( -path /proc -o -path /sys -o -path /home -o -path /tmp -o -path /old -o -path /new \) \
    -prune -o -name '*tonadex*' -print | grep -v 'service\.d$')" ""
  echo "Actualizado y desinstalado sin perder nada."
}
if [ "${1:-}" = --inside ]; then
  inside
  exit
fi

old=$(realpath "${1:?carpeta con los paquetes de antes}")
version=$(head -n 1 "$root/VERSION")
install_packages debootstrap
work=$(mktemp -d)
trap 'rm -rf --one-file-system "$work"' EXIT
base=${DEBIAN:-$work/debian}
[ -n "${DEBIAN:-}" ] || debootstrap --variant=minbase bookworm "$base" >"$work/debootstrap.log"
mkdir "$work"/{upper,layer,system}
# The mounts end with their namespace.
unshare --mount --pid --fork bash -euc '
  base=$1 work=$2 old=$3 new=$4 version=$5 scripts=$6 system=$2/system
  mount -t overlay overlay -o "lowerdir=$base,upperdir=$work/upper,workdir=$work/layer" "$system"
  mount -t proc proc "$system/proc"
  mount --rbind /dev "$system/dev"
  cp -r /etc/apt/. "$system/etc/apt/"
  cp -L /etc/resolv.conf /etc/hosts "$system/etc/"
  cp -rL /etc/ssl "$system/etc/"
  mkdir "$system"/{old,new}
  cp "$old"/*.deb "$system/old/"
  cp "$new"/tonadex{,-server}_"$version"_*.deb "$system/new/"
  cp -r "$scripts" "$system/new/"
  exec chroot "$system" bash /new/scripts/upgrade.sh --inside
' _ "$base" "$work" "$old" "$root/dist" "$version" "$root/scripts"
