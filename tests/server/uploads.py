"""Uploads to running servers, and whether they are all there afterwards."""
import http.client
import itertools
import threading
import time
import zlib
from urllib.parse import quote


def get(server, target, client="127.0.0.1"):
    """Status and body; (0, b"") if the connection breaks."""
    connection = http.client.HTTPConnection("127.0.0.1", server.port, timeout=60)
    try:
        connection.request("GET", target, headers={"X-Forwarded-For": client})
        reply = connection.getresponse()
        return reply.status, reply.read()
    except (OSError, http.client.HTTPException):
        return 0, b""
    finally:
        connection.close()


def melody(name):
    text = f"{name}:d=4,o=5,b=120:{' ' * 3000}c,d#,e"  # long enough to be written by halves
    return f"{name}.{len(text)}", text.replace("#", "juh9hay").encode("cp1252")


def upload(server, name):
    file, text = melody(name)
    client = "10.%d.%d.%d" % tuple(zlib.crc32(name[:-1].encode()).to_bytes(4)[:3])  # ten uploads per address
    return get(server, f"/uploadertonos.php?filename={quote(file)}&contents={quote(text)}", client)[0]


def download(server, name):
    return get(server, "/tonos/" + quote(melody(name)[0].encode("cp1252")))


def records(server, target):
    status, body = get(server, target)
    assert status == 200, (target, status)
    return body.decode("latin1").split(")498")[:-1]


class Uploaders:
    """Clients upload to two servers, or twice to one; the other must have each acknowledged melody at once."""

    def __init__(self, servers, word):
        self.servers, self.word, self.ending = servers, word, False
        self.acknowledged, self.refused, self.unknown, self.faults = [], 0, 0, []
        self.threads = [threading.Thread(target=self.run, args=(i,)) for i in range(4)]
        for thread in self.threads:
            thread.start()

    def run(self, number):
        for i in itertools.count():
            if self.ending:
                break
            # Clients 0 and 1 upload the same names to different servers: only one succeeds.
            name = f"{self.word} {max(number, 1)}x{i}"
            here, there = (self.servers[(number + k) % 2] for k in (0, 1))
            status = upload(here, name)
            if status == 200:
                self.acknowledged.append(name)
                status, text = download(there, name)
                if status in (200, 404) and text != melody(name)[1]:
                    self.faults.append((name, status, text))
            elif status == 409:
                self.refused += 1
            elif status in (0, 503):
                self.unknown += 1
                time.sleep(0.05)
            else:
                self.faults.append((name, status))

    def end(self):
        self.ending = True
        for thread in self.threads:
            thread.join()
        assert not self.faults, self.faults
        assert len(set(self.acknowledged)) == len(self.acknowledged), "one name acknowledged twice"


def check_all_there(servers, uploaders):
    target = "/listatonos.php?cadenadebusqueda=" + quote(uploaders.word)
    for server in servers:
        names = [record.split(" (")[0] for record in records(server, target)]
        assert len(set(names)) == len(names), names
        assert set(names) >= set(uploaders.acknowledged), set(uploaders.acknowledged) - set(names)
        for name in uploaders.acknowledged:
            assert download(server, name) == (200, melody(name)[1]), name
