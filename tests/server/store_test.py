#!/usr/bin/env python3
"""The database as a store, with a real PostgreSQL and real servers.
Usage: store_test.py SERVER [ROUNDS]   ROUNDS: how often a server is killed; by default for 30 s"""
import os
import random
import signal
import subprocess
import sys
import tempfile
import threading
import time
from pathlib import Path
from urllib.parse import quote

from running_database import RunningDatabase
from running_server import RunningServer
from uploads import Uploaders, check_all_there, get, melody, records, upload

SERVER = sys.argv[1]
ROUNDS = int(sys.argv[2]) if len(sys.argv) > 2 else None
AWAY = "No se puede llegar al almacén de melodías".encode("cp1252")


class Store:
    """Servers on one database, each with its own folder."""

    def __init__(self, home, database):
        self.home, self.more = Path(home), ["--proxy", "--almacen", database.address]
        self.servers = []

    def server(self):
        server = RunningServer(SERVER, tempfile.mkdtemp(dir=self.home), {}, more=self.more)
        self.servers.append(server)
        return server

    def __enter__(self):
        return self

    def __exit__(self, *error):
        for server in self.servers:
            server.__exit__()

    def copy(self, folder, seconds=60):
        return subprocess.run([SERVER, *self.more, "--copiar-de", folder], timeout=seconds,
                              capture_output=True, check=True).stdout.decode()


def generate(folder):
    """Melodies with names made of a few words, hostile ones among them; some within the same second."""
    dice = random.Random(7)
    pieces = ["a", "ab", "Ñu", "ñandú", "É", "e", "€", "%", "_", "\\", "'", '"', "/", "%41", "--", ";",
              "ÿ", "\x81", "(x)", ".", " ", "  ", "sol", "Luz", "$1", "{}", "NULL", "ß", "<b>", "¡"]
    for i in range(700):
        name = "".join(dice.choices(pieces, k=dice.randint(0, 5)))
        stem = "".join(c for c in name if c not in '\\"/.<>') + dice.choice(["", " x"]) + str(i)
        text = bytes(dice.choices(range(256), k=dice.randint(0, 400))) if i % 9 == 0 else b":d=4\r\n\x00\xff"
        file = Path(folder) / f"{stem.strip()}.{i * 100 % 99999}"
        file.write_bytes(name.encode("latin1" if "\x81" in name and "€" not in name else "cp1252", "replace") + text)
        os.utime(file, (10**9 + i // 2, 10**9 + i // 2))
    words = [piece.encode("cp1252", "replace") for piece in pieces] + [b"\x81", b"100", b"ab\\", b"\0", b"a\tb"]
    return [b"", b" ", *words] + [b"".join(dice.choices(words, k=dice.randint(2, 3))) for _ in range(150)] + [
        b" ".join(dice.choices(words, k=dice.randint(2, 20))) for _ in range(150)]


def check_the_same_answers(home, database, store):
    folder = Path(home) / "folder/servidor"
    folder.mkdir(parents=True)
    queries = generate(folder)
    for seconds in (0.05, 0.1, 0.2):  # copies that are killed before they finish
        try:
            store.copy(folder, seconds)
        except subprocess.TimeoutExpired:
            pass
    store.copy(folder)
    again = store.copy(folder)
    assert again.startswith("Copiadas 0 melodías; hay "), again
    count = int(again.split()[-1])
    assert count > 600
    with RunningServer(SERVER, folder.parent, {}) as plain, store.server() as shared:
        targets = ["/todoslostonos.php", "/mini.php", "/banners.php", "/tonos/nada.1", "/tonos/a/b.1"]
        targets += ["/listatonos.php?cadenadebusqueda=" + quote(query) for query in queries]
        targets += ["/api/v1/buscar?texto=" + quote(query) for query in queries]
        targets += ["/tonos/" + quote(file.name.encode("cp1252", "replace")) for file in folder.iterdir()
                    if not file.name.startswith(".")]
        for target in targets:
            expected, answer = get(plain, target), get(shared, target)
            assert expected == answer, (target, expected, answer)
        everything = set(records(plain, "/todoslostonos.php"))
        picks = [records(shared, "/azar.php") for _ in range(20)]
        assert all(len(set(pick)) == 10 and everything.issuperset(pick) for pick in picks), picks
        assert len(set(sum(picks, []))) > 100
        # A row deleted by an administrator disappears from all servers.
        database.sql("DELETE FROM tonadex_melody WHERE position % 7 <> 0")
        for target in ("/todoslostonos.php", "/listatonos.php"):
            assert len(records(shared, target)) == count // 7
        assert f"{count // 7} melodías" in get(shared, "/banners.php")[1].decode()
        assert len(set(records(shared, "/azar.php"))) == 10
        assert upload(shared, "Tras borrar") == 200
        assert records(shared, "/todoslostonos.php")[-1] == f"Tras borrar ({melody('Tras borrar')[0]}"
        for code, status in (("25006", 403), ("42501", 403), ("53100", 500)):  # a replica, no privilege, a full disk
            database.sql(f"CREATE OR REPLACE FUNCTION refuse() RETURNS trigger LANGUAGE plpgsql AS $$ BEGIN RAISE SQLSTATE "
                         f"'{code}'; END $$; CREATE OR REPLACE TRIGGER refuse BEFORE INSERT ON tonadex_melody "
                         "EXECUTE FUNCTION refuse()")
            assert upload(shared, f"Negada {code}") == status, code
        database.sql("DROP FUNCTION refuse CASCADE")


def check_schema(database, store):
    """An older schema is upgraded, by one of several servers; a newer one is left alone."""
    database.sql("DROP INDEX tonadex_searched_name; UPDATE tonadex_version SET version = 1")
    before = len(store.servers)
    starters = [threading.Thread(target=store.server) for _ in range(3)]
    for action in (threading.Thread.start, threading.Thread.join):
        for starter in starters:
            action(starter)
    assert [get(server, "/azar.php")[0] for server in store.servers[before:]] == [200] * 3
    versions = database.sql("SELECT version FROM tonadex_version")
    assert versions == "1\n2\n", versions
    plan = database.sql("SET enable_seqscan = off; SET enable_indexscan = off; EXPLAIN SELECT * FROM "
                        "tonadex_melody WHERE searched_name LIKE '%luz%'")
    assert "tonadex_searched_name" in plan, plan
    database.sql("INSERT INTO tonadex_version VALUES (99)")
    refused = subprocess.run([SERVER, *store.more, "--puerto", "0"], capture_output=True, timeout=60)
    assert refused.returncode == 1 and "más nueva" in refused.stderr.decode(), refused
    database.sql("DELETE FROM tonadex_version WHERE version = 99")


def check_kills(store):
    dice = random.Random(1)
    end = time.monotonic() + 30
    rounds, servers = [], [store.server(), store.server()]
    while len(rounds) < ROUNDS if ROUNDS else time.monotonic() < end:
        uploaders = Uploaders(servers, f"ronda{len(rounds)}")
        time.sleep(dice.uniform(0.05, 0.4))
        killed = dice.randrange(2)
        servers[killed].process.send_signal(signal.SIGKILL)
        servers[killed].__exit__()
        time.sleep(dice.uniform(0, 0.1))
        servers[killed] = store.server()
        uploaders.end()
        check_all_there(servers, uploaders)
        rounds.append(uploaders)
    listings = [records(server, "/todoslostonos.php") for server in servers]
    assert listings[0] == listings[1] and len(set(listings[0])) == len(listings[0])
    acknowledged, refused, unknown = (sum(n) for n in zip(*((len(u.acknowledged), u.refused, u.unknown) for u in rounds)))
    assert acknowledged > 0 and unknown > 0 and refused > 0
    print(f"{len(rounds)} rounds: {acknowledged} acknowledged and found, {refused} refused as there already, "
          f"{unknown} without an answer")
    return servers


def wait_for(server, status, seconds=30):
    end = time.monotonic() + seconds
    while get(server, "/azar.php")[0] != status:
        assert time.monotonic() < end, f"no {status}"
        time.sleep(0.1)


def check_away(database, servers):
    """Stopped, crashed and frozen databases: replies are 503, and normal again afterwards without a restart."""
    for number, (leave, come) in enumerate([
            (lambda: database.stop("fast"), database.start), (lambda: database.stop("immediate"), database.start),
            (lambda: database.freeze(signal.SIGSTOP), lambda: database.freeze(signal.SIGCONT))]):
        uploaders = Uploaders(servers, f"ausente{number}")
        time.sleep(0.3)
        leave()
        start = time.monotonic()
        assert get(servers[0], "/salud")[0] == 503 and time.monotonic() - start < 7
        wait_for(servers[0], 503)
        wait_for(servers[1], 503)
        start = time.monotonic()
        for target in ("/todoslostonos.php", "/listatonos.php?cadenadebusqueda=a", "/tonos/a.1", "/banners.php"):
            status, text = get(servers[0], target)
            assert status == 503 and text.startswith(AWAY), (target, status, text)
        status, text = get(servers[0], "/api/v1/azar")
        assert status == 503 and "almacén" in text.decode() and b'"status":503' in text, text
        assert get(servers[0], "/salud")[0] == 503
        assert b"tonadex_almacen_disponible 0\n" in get(servers[0], "/metricas")[1]
        assert get(servers[0], "/")[0] == 200 == get(servers[0], "/api/v1/modelos")[0]
        assert time.monotonic() - start < 30
        come()
        for server in servers:
            wait_for(server, 200)
            assert get(server, "/salud")[0] == 200
        uploaders.end()
        check_all_there(servers, uploaders)
        assert uploaders.acknowledged


def check_secret():
    """A password that libpq would read as a host, a port or an escape, and show."""
    for address in ("u:ge/heim@h/x", "u:ge@heim@h/x", "u:ge%zzheim@h/x", "u@h/x?password=heim%"):
        said = subprocess.run([SERVER, "--puerto", "0", "--almacen", "postgresql://" + address],
                              capture_output=True, text=True, timeout=60)
        assert said.returncode == 1 and "heim" not in said.stderr, said.stderr


def main():
    check_secret()
    with tempfile.TemporaryDirectory() as home, RunningDatabase() as database, Store(home, database) as store:
        check_the_same_answers(home, database, store)
        check_schema(database, store)
        check_away(database, check_kills(store))
        database.stop("fast")  # a server may start before its database
        early = store.server()
        assert get(early, "/azar.php")[0] == 503
        database.start()
        wait_for(early, 200)


main()
