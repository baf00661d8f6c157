#!/usr/bin/env python3
"""store_bench.py PROGRAM [MELODIES] [SECONDS]
Requests per second, median and 99th percentile of search, download, conversion and page: a server
with a folder, one with a database, two with that database behind nginx, and nginx serving the same
replies as files. Also the memory of each. Needs nginx, wrk and postgresql; all run on one machine."""
import random
import re
import subprocess
import sys
import tempfile
import time
import urllib.request
from pathlib import Path

sys.path.insert(0, str(Path(__file__).parent.parent / "tests/server"))
from running_database import RunningDatabase
from running_server import RunningServer

PROGRAM = sys.argv[1]
MELODIES = int(sys.argv[2]) if len(sys.argv) > 2 else 20000
SECONDS = int(sys.argv[3]) if len(sys.argv) > 3 else 5
SYLLABLES = "la ma no ri ta sol can cion de el val se di luz mi per tra gon bo sue".split()
CONVERT = "/api/v1/convertir?modelo=nokia+pulsaciones&pasos=1"
TEXT = "Vals:d=4,o=5,b=120:c,8d#,8e.6,2p,g,c6,d6,e6,f6,g6,a,b"
WHAT = {"download": None, "search, frequent": "/listatonos.php?cadenadebusqueda=luz%20sol",
        "search, 1 found": f"/listatonos.php?cadenadebusqueda={MELODIES - 7}x",
        "search, 2 letters": "/listatonos.php?cadenadebusqueda=zq", "random": "/azar.php",
        "page, desktop's": "/mini.php", "page, browser's": "/", "convert": CONVERT}
NGINX = """pid {home}/nginx.pid; error_log {home}/error.log; worker_processes auto; user root;
events {{ worker_connections 1024; }}
http {{ access_log off; sendfile on; open_file_cache max=100;
  client_body_temp_path {home}/body; proxy_temp_path {home}/proxy;
  upstream both {{ {servers} keepalive 64; }}
  server {{ listen 127.0.0.1:{port}; location / {{ proxy_pass http://both; proxy_http_version 1.1;
    proxy_set_header Connection ""; proxy_set_header X-Forwarded-For $http_x_forwarded_for; }} }}
  server {{ listen 127.0.0.1:{files}; root {home}; }} }}"""


def make_folder(folder):
    """Names of two to four words, the same on every run."""
    dice = random.Random(1)
    folder.mkdir(parents=True)
    for i in range(MELODIES):
        name = " ".join("".join(dice.choices(SYLLABLES, k=dice.randint(1, 3))) for _ in range(dice.randint(2, 4)))
        (folder / f"{name} {i}x.300").write_text(f"{name} {i}x:d=4,o=5,b=120:" + "c" * 280)
        last = f"/tonos/{name} {i}x.300".replace(" ", "%20")
    return last


def memory(server):
    status = Path(f"/proc/{server.process.pid}/status").read_text()
    kilobytes = int(re.search(r"VmRSS:\s*(\d+)", status)[1])
    return f"{kilobytes // 1024} MB"


def load(label, what, address, post):
    """POST requests use many addresses, because the conversions per address are limited."""
    with tempfile.NamedTemporaryFile("w", suffix=".lua") as script:
        if post:
            script.write(f'wrk.method="POST" wrk.body="{TEXT}" wrk.headers["Content-Type"]="text/plain" '
                         'function request() wrk.headers["X-Forwarded-For"]="10.0." .. math.random(30) .. "." .. '
                         'math.random(200) return wrk.format() end')
        script.flush()
        said = subprocess.run(["wrk", "-t1", "-c64", f"-d{SECONDS}s", "--latency", "-s", script.name, address],
                              capture_output=True, check=True).stdout.decode()
    at = dict(re.findall(r"(50|99)%\s+(\S+)", said))
    print(f"{label:22} {what:18} {float(re.search('Requests/sec: *([0-9.]+)', said)[1]):9.0f} requests/s, "
          f"median {at['50']}, 99 % {at['99']}{' NOT ALL 200' if 'Non-2xx' in said else ''}", flush=True)


def load_all(label, port, paths):
    for what, path in paths.items():
        load(label, what, f"http://127.0.0.1:{port}{path}", path == CONVERT)


def main():
    with tempfile.TemporaryDirectory() as home, RunningDatabase() as database:
        home = Path(home)
        home.chmod(0o755)
        WHAT["download"] = make_folder(home / "a/servidor")
        more = ["--proxy", "--almacen", database.address]
        start = time.monotonic()
        print(subprocess.run([PROGRAM, *more, "--copiar-de", home / "a/servidor"], capture_output=True,
                             check=True).stdout.decode().strip(), f"in {time.monotonic() - start:.0f} s")
        database.sql("VACUUM ANALYZE tonadex_melody")
        print("database:", database.sql("SELECT pg_size_pretty(pg_database_size('tonadex')), "
                                        "pg_size_pretty(pg_relation_size('tonadex_searched_name'))").strip())
        with RunningServer(PROGRAM, home / "a", {}, more=["--proxy"]) as server:
            load_all("folder", server.port, WHAT)
            print("memory, folder:", memory(server))
            for what in list(WHAT)[:3]:
                body = urllib.request.urlopen(f"http://127.0.0.1:{server.port}{WHAT[what]}").read()
                (home / what.replace(" ", "")).write_bytes(body)
        with RunningServer(PROGRAM, home / "b", {}, more=more) as one, \
                RunningServer(PROGRAM, home / "c", {}, more=more) as two:
            load_all("database, 1 server", one.port, WHAT)
            servers = "".join(f"server 127.0.0.1:{server.port}; " for server in (one, two))
            port = one.port + 1 if one.port + 1 != two.port else one.port + 3
            (home / "nginx.conf").write_text(NGINX.format(home=home, servers=servers, port=port, files=port + 1))
            nginx = ["nginx", "-c", home / "nginx.conf", "-e", home / "error.log"]
            subprocess.run(nginx, check=True)
            try:
                load_all("database, 2 + nginx", port, WHAT)
                load_all("nginx's files", port + 1, {what: "/" + what.replace(" ", "") for what in list(WHAT)[:3]})
            finally:
                subprocess.run([*nginx, "-s", "stop"], check=True)
            print("memory, database:", memory(one))
            urllib.request.urlopen(f"http://127.0.0.1:{one.port}/todoslostonos.php").read()
            print("memory, database, after the full listing:", memory(one))


main()
