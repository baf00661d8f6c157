#!/usr/bin/env python3
"""The operation of a real tonadex-server: health, metrics, log, signals, settings.
Usage: operation_test.py SERVER [KILLS]   KILLS: how often a server is killed among uploads"""
import collections
import contextlib
import http.client
import json
import os
import re
import shutil
import signal
import socket
import subprocess
import sys
import tempfile
import threading
import time
from pathlib import Path

from running_server import RunningServer
from uploads import Uploaders, check_all_there, download, melody, records

SERVER = sys.argv[1]
KILLS = int(sys.argv[2]) if len(sys.argv) > 2 else 4
MELODIES = {"vals.29": "Vals:d=4,o=5,b=63:c"}
UPLOAD = "Mía:d=4,o=5,b=100:c,d,e"
SAMPLE = re.compile(r'([a-z_]+)(?:\{((?:[a-z]+="[^"\\\n]*",?)+)\})? (\d+(?:\.\d+)?(?:e-?\d+)?)')


def exchange(port, request):
    """Sends bytes and reads until the connection closes: status and body, None if there is no reply."""
    with socket.create_connection(("127.0.0.1", port), timeout=60) as client:
        client.sendall(request)
        client.shutdown(socket.SHUT_WR)
        reply = http.client.HTTPResponse(client)
        try:
            reply.begin()
        except (http.client.BadStatusLine, ConnectionError):
            return None
        return reply.status, reply.read()


def get(target):
    return b"GET " + target.encode("cp1252") + b" HTTP/1.1\r\nHost: x\r\nConnection: close\r\n\r\n"


def post(target, body):
    body = body.encode()
    return b"POST %s HTTP/1.1\r\nContent-Length: %d\r\nConnection: close\r\n\r\n%s" % (target.encode(), len(body), body)


# A request, the path under which it is counted, and its status.
REQUESTS = [
    (get("/azar.php"), "/azar.php", 200),
    (get("/azar.php?x=1"), "/azar.php", 200),
    (get('/tonos/"\\\x01</script>ñ'), "/tonos/", 404),
    (get("/tonos/vals.29"), "/tonos/", 200),
    (get('/no"hay\\nada{}'), "otras", 404),
    (get("/"), "/", 200),
    (get("/salud"), "/salud", 200),
    (post("/salud", ""), "/salud", 405),
    (get("/api/v1/melodias/vals.29"), "/api/v1/melodias/", 200),
    (post("/api/v1/melodias", UPLOAD), "/api/v1/melodias", 201),
    (post("/api/v1/melodias", UPLOAD), "/api/v1/melodias", 429),
    (post("/api/v1/comprobar", "x" * 300_000), "/api/v1/comprobar", 413),
    (get("/api/v1/nada"), "/api/v1", 404),
    (get("/" + "x" * 70_000), "otras", 414),
    (b"basura\r\n\r\n", "otras", 400),
]


def metrics(server):
    """Name and labels of each sample, with its value; every line must be valid for Prometheus."""
    status, body = exchange(server.port, get("/metricas"))
    assert status == 200
    samples, types = {}, {}
    for line in body.decode().splitlines():
        if line.startswith("# TYPE "):
            name, kind = line.split()[2:]
            assert name not in types and kind in ("counter", "gauge", "histogram"), line
            types[name] = kind
        elif not line.startswith("# HELP "):
            name, labels, value = SAMPLE.fullmatch(line.replace("+Inf", "Inf")).groups()
            assert re.sub("_(bucket|sum|count)$", "", name) in types, line
            key = name, tuple(re.findall('([a-z]+)="([^"]*)"', labels or ""))
            assert key not in samples, line
            samples[key] = float(value)
    return samples


def check_counts(server, home):
    sizes, samples = collections.Counter(), {}
    for request, route, status in REQUESTS:
        got, body = exchange(server.port, request)
        assert got == status, request[:80]
        sizes[route] += len(body)
    while sum(v for (n, l), v in samples.items() if n == "tonadex_peticiones_total"
              and ("ruta", "/metricas") not in l) < len(REQUESTS):  # counted after its reply is sent
        samples = metrics(server)
    for (route, status), count in collections.Counter((r, str(s)) for _, r, s in REQUESTS).items():
        assert samples["tonadex_peticiones_total", (("ruta", route), ("estado", status))] == count, (route, samples)
    for route, count in collections.Counter(r for _, r, _ in REQUESTS).items():
        buckets = [v for (n, l), v in samples.items() if n.endswith("_bucket") and ("ruta", route) in l]
        assert buckets == sorted(buckets) and buckets[-1] == count, (route, buckets)
        assert samples["tonadex_duracion_segundos_count", (("ruta", route),)] == count
        assert samples["tonadex_bytes_total", (("ruta", route),)] == sizes[route], route
    assert samples["tonadex_subidas_total", ()] == 1
    assert samples["tonadex_melodias", ()] == 2
    assert samples["tonadex_almacen_disponible", ()] == 1
    assert samples["tonadex_conexiones", ()] >= 1
    refused = {dict(l)["limite"]: v for (n, l), v in samples.items() if n == "tonadex_rechazos_total"}
    assert refused == {"ritmo": 1, "longitud": 2}, refused
    check_log(home)


def check_log(home):
    lines = [json.loads(line) for line in (home / "requests").read_text().splitlines()]
    logged = collections.Counter((line["ruta"], line["estado"]) for line in lines if line["ruta"] != "/metricas")
    assert logged.total() == len(REQUESTS) and logged['/tonos/"\\%01</script>%F1', 404] == 1, logged
    assert logged["-", 400] == logged["-", 414] == 1 and logged["/azar.php", 200] == 2, logged
    assert all(line["ms"] >= 0 and line["cliente"] == "127.0.0.1" for line in lines)


class Load:
    """Clients that keep their connections and send one request after the other until they are stopped."""

    def __init__(self, port):
        self.stop, self.asked, self.faults = threading.Event(), 0, []
        self.threads = [threading.Thread(target=self.run, args=(port,)) for _ in range(4)]
        for thread in self.threads:
            thread.start()

    def run(self, port):
        connection = http.client.HTTPConnection("127.0.0.1", port, timeout=60)
        while not self.stop.is_set():
            started = False
            try:
                connection.request("GET", "/api/v1/buscar?texto=vals")
                reply = connection.getresponse()
                started = True
                if reply.status != 200 or b"vals.29" not in reply.read():
                    self.faults.append(reply.status)
            except (OSError, http.client.HTTPException) as error:
                self.faults.append(error if started else None)  # None: the connection closed before any byte of a reply
                return
            self.asked += 1

    def wait_for(self, count):
        goal = self.asked + count
        while self.asked < goal and any(thread.is_alive() for thread in self.threads):
            pass

    def end(self):
        self.stop.set()
        for thread in self.threads:
            thread.join()
        return self.faults


def check_reload(server, home):
    load = Load(server.port)
    (home / "requests").rename(home / "old")
    for number in range(20):
        (home / "servidor" / f"nueva{number}.9").write_text("Nueva:d=4")
        server.process.send_signal(signal.SIGHUP)
        load.wait_for(20)
    while metrics(server)["tonadex_melodias", ()] != 22:
        server.process.send_signal(signal.SIGHUP)
    assert load.end() == [], load.faults
    assert '"/metricas"' in (home / "requests").read_text(), "the log is not opened anew"


def check_stop(server):
    """Stopping the server cuts off no reply that has begun, and refuses none."""
    load = Load(server.port)
    load.wait_for(50)
    server.process.send_signal(signal.SIGTERM)
    assert server.process.wait(60) == 0
    assert all(fault is None for fault in load.end()), load.faults


def check_settings(home):
    """The command line takes precedence over variables; what cannot be used is reported."""
    with socket.create_server(("127.0.0.1", 0)) as other:
        port = str(other.getsockname()[1])
        (home / "file").write_text("")
        for arguments, variables, said, code in [
                ([], {"TONADEX_PUERTO": "mucho"}, "no es válido: TONADEX_PUERTO\nPrueba «tonadex-server --help»", 2),
                (["--puerto", "x"], {"TONADEX_PUERTO": "0"}, "no es válido: --puerto", 2),
                ([], {"TONADEX_PROXY": "quizá"}, "no es válido: TONADEX_PROXY", 2),
                ([], {"TONADEX_CONEXIONES": "0"}, "no es válido: TONADEX_CONEXIONES", 2),
                (["--conexiones-por-cliente=65536"], {}, "no es válido: --conexiones-por-cliente", 2),
                (["--puerto=0"], {"TONADEX_DIRECCION": "aquí"}, "no se puede escuchar en aquí", 1),
                (["--puerto", port], {}, f"127.0.0.1, puerto {port}: otro programa usa ya ese puerto", 1),
                (["--puerto=0"], {"TONADEX_CARPETA": str(home / "file")}, "file»: no es una carpeta", 1),
                (["--puerto=0", "--registro", home], {}, f"no se puede escribir el registro «{home}»", 1)]:
            variables = {**os.environ, "TONADEX_CARPETA": str(home / "otra"), **variables}
            done = subprocess.run([SERVER, *arguments], env=variables, capture_output=True, text=True, timeout=60)
            assert done.returncode == code and said in done.stderr, (arguments, done)


def check_folder(home):
    """The server removes what a killed one left, keeps its folder to itself and leaves no port behind."""
    folder = home / "servidor"
    folder.mkdir(parents=True)
    os.mkfifo(folder / ".puerto", 0o600)  # must not block
    unfinished = {".tdx-" + 32 * "f": "half", ".subida-1": "half"}
    with RunningServer(SERVER, home, unfinished) as server:
        assert (folder / ".puerto").read_text().strip() == str(server.port)
        assert not any((folder / name).exists() for name in unfinished)
        second = subprocess.run([SERVER, "--puerto", "0", "--carpeta", folder], capture_output=True, timeout=60)
        assert second.returncode == 1 and exchange(server.port, get("/azar.php")) == (200, b"")
    assert server.process.returncode == 0 and not (folder / ".puerto").exists()
    line = r"\d{4}(-\d\d){2}T\d\d(:\d\d){2}\.\d{3}Z 127\.0\.0\.1 GET /azar\.php 200 0 \d+\.\d\d\n"
    assert re.fullmatch(line, (home / "requests").read_text())


def check_unread_log():
    """Nobody need read standard error: it may be closed, full, or without a reader."""
    full, left = os.pipe(), os.pipe()
    os.set_blocking(full[1], False)
    with contextlib.suppress(BlockingIOError):
        while os.write(full[1], b"x"):
            pass
    os.set_blocking(full[1], True)
    os.close(left[0])
    for error in (None, full[1], left[1]):
        with tempfile.TemporaryDirectory() as place:
            with RunningServer(SERVER, place, {}, log="", error=error) as server:
                for _ in range(10):
                    assert exchange(server.port, get("/azar.php")) == (200, b"")
                # No file got the descriptor of a closed stream.
                assert (Path(place) / "servidor/.candado").read_text() == ""
            assert server.process.returncode == 0, error


def check_kills(home):
    """A killed server loses nothing that it has acknowledged, and serves nothing half."""
    rounds = []
    for number in range(KILLS):
        with RunningServer(SERVER, home, {}, more=["--proxy"]) as server:
            rounds.append(Uploaders([server, server], f"ronda{number:04}"))
            while len(rounds[-1].acknowledged) < 12:  # each waits for the disk
                time.sleep(0.01)
            server.process.kill()
            rounds[-1].end()
    with RunningServer(SERVER, home, {}, more=["--proxy"]) as server:
        for uploaders in rounds:
            check_all_there([server], uploaders)
        for record in records(server, "/todoslostonos.php"):
            name = record.split(" (")[0]
            assert download(server, name) == (200, melody(name)[1]), name
    print(f"{KILLS} kills, {sum(len(each.acknowledged) for each in rounds)} acknowledged uploads, all there")


with tempfile.TemporaryDirectory() as place:
    home = Path(place)
    settings = {"TONADEX_REGISTRO_JSON": "1", "TONADEX_SUBIDAS_POR_MINUTO": "1", "TONADEX_PUERTO": "1"}
    with RunningServer(SERVER, home, MELODIES, variables=settings) as running:
        check_counts(running, home)
        check_reload(running, home)
        check_stop(running)
    check_settings(home)
    check_folder(home / "folder")
    check_unread_log()
    check_kills(home / "kills")
with tempfile.TemporaryDirectory() as place, RunningServer(SERVER, place, MELODIES) as running:
    shutil.rmtree(Path(place) / "servidor")
    assert exchange(running.port, get("/salud"))[0] == 503
    assert metrics(running)["tonadex_almacen_disponible", ()] == 0
