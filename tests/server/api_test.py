#!/usr/bin/env python3
"""Sends requests to a real tonadex-server and checks every reply against its openapi.json; every
reply that the document describes must occur. Usage: api_test.py SERVER CLI"""
import gzip
import http.client
import json
import subprocess
import sys
import tempfile
from pathlib import Path
from urllib.parse import quote

import jsonschema

from midi import midi_file
from running_server import RunningServer

SERVER, CLI = sys.argv[1:3]
VALS = "Vals:d=4,o=5,b=120:c,8d#,8e.6,2p,g"
TEXT = {"Content-Type": "text/plain; charset=utf-8"}
FORM = {"Content-Type": "application/x-www-form-urlencoded"}
CHUNKED = {**TEXT, "Transfer-Encoding": "chunked"}
LARGE = "x" * (256 * 1024 + 1)
HOSTILE = "<script>alert(1)<!script>"

# Method, path, header fields, body, expected status, and a text that the reply contains.
EXCHANGES = [
    ("GET", "/openapi.json", {}, None, 200, '"openapi": "3.1.0"'),
    ("GET", "/modelos", {}, None, 200, '"moviles":["3210","3310","3330","3390","8250"]'),
    ("GET", "/formatos", {}, None, 200, '"formato":"mid"'),
    ("GET", "/buscar?texto=a%C3%B1il", {}, None, 200, '{"melodias":[{"fichero":"anil.8","nombre":"Añil"}]}'),
    ("GET", "/buscar?texto=vals+lento", {}, None, 200, '"Vals [lento]"'),
    ("GET", "/buscar?texto=nada", {}, None, 200, '{"melodias":[]}'),
    ("GET", "/buscar?maximo=1", {}, None, 200, '[{'),
    ("GET", "/buscar?maximo=0", {}, None, 400, "de 1 a 500"),
    ("GET", "/buscar?maximo=2x", {}, None, 400, "de 1 a 500"),
    ("GET", "/azar", {}, None, 200, "vals.29"),
    ("GET", "/melodias/a%C3%B1o.30", {}, None, 200, '"rtttl":"Año:d=4,o=5,b=100:c#,d"'),
    ("GET", "/melodias/..%2Fsecreto.1", {}, None, 404, "búscala"),
    ("GET", "/melodias/", {}, None, 404, "búscala"),
    ("POST", "/melodias", TEXT, "Mía:d=4,o=5,b=100:c,d#,e", 201, '{"fichero":"Mía.24"}'),
    ("POST", "/melodias", TEXT, "Mía:d=4,o=5,b=100:c,d#,e", 409, "ya estaba"),
    ("POST", "/melodias", TEXT, "Mala:d=4,o=5,b=100:c,,x", 400, "no es una melodía"),
    ("POST", "/melodias", TEXT, HOSTILE + ":d=4,o=5,b=100:c,d,e", 400, "no es válido"),
    ("GET", "/nada", {}, None, 404, "openapi.json"),
    ("POST", "/convertir", TEXT, VALS, 400, "modelos"),
    ("POST", "/convertir?modelo=samsung", TEXT, VALS, 400, "puede ser: Samsung"),
    ("POST", "/convertir?modelo=nada", TEXT, VALS, 400, "«nada»"),
    ("POST", "/convertir?modelo=3310", TEXT, VALS, 200, '"resultado":"4c1'),
    ("POST", "/pasos?modelo=nokia+pulsaciones", TEXT, VALS, 200, '"teclas":[{"tecla":"1"'),
    ("POST", "/pasos?modelo=3310", TEXT, VALS, 400, "teclado"),
    ("POST", "/notas", TEXT, VALS, 200, '{"nota":1,"inicio":0.0,"duracion":500.0,"tono":60,"nombre":"do"'),
    ("POST", "/notas?modelo=3310", TEXT, "x", 200, '"notas":[]'),
    ("POST", "/notas?modelo=nada", TEXT, VALS, 400, ""),
    ("POST", "/comprobar", TEXT, VALS, 200, '"correcta":true'),
    ("POST", "/comprobar", TEXT, "Vals:d=4,o=5,b=120:c,9e", 200, '{"desde":21,"hasta":23,"nota":2,'),
    ("POST", "/comprobar", TEXT, VALS.replace("c,", "c,\n") + "\r\n", 200, "salto de línea"),
    ("POST", "/arreglar", TEXT, "Uno: d=4, o=5, b=120: c, d\n\nDos:d=8,o=5,b=90:e9,f", 200, '{"nombre":"Dos"'),
    ("POST", "/arreglar", TEXT, "", 200, '{"melodias":[]}'),
    ("POST", "/importar", {}, VALS, 200, '"rtttl":"' + VALS),
    ("POST", "/importar?fichero=A%C3%B1o.txt", {}, "8c1 4.#d2 2-", 200, '"rtttl":"Año:d=4,o=5,b=125:8c'),
    ("POST", "/importar", {}, "MThd\0\0", 422, "dañado, byte 4"),
    ("POST", "/importar?modelo=nada", {}, VALS, 400, "«nada»"),
    ("POST", "/transportar?semitonos=-12", TEXT, VALS, 200, '"rtttl":"' + VALS.replace("o=5", "o=4").replace(".6", ".5")),
    ("POST", "/transportar?semitonos=dos", TEXT, VALS, 400, "-36 a 36"),
    ("POST", "/transportar?semitonos=37", TEXT, VALS, 422, "36 semitonos"),
    ("POST", "/fichero?formato=mid", TEXT, VALS, 200, "MThd"),
    ("POST", "/fichero?formato=imy", TEXT, VALS, 200, "BEGIN:IMELODY"),
    ("POST", "/fichero?formato=kws", TEXT, VALS.replace("g", "g3"), 422, "octava"),
    ("POST", "/fichero?formato=mid", TEXT, "Vals", 422, "no se puede leer"),
    ("POST", "/fichero?formato=exe", TEXT, VALS, 400, "formatos"),
    ("GET", "/qr?texto=http%3A%2F%2Fx%2F%23Vals", {}, None, 200, "<svg"),
    ("GET", "/qr", {}, None, 400, "2953"),
]
# What each function that takes a melody refuses; files may be of any type.
for path in ("melodias", "convertir", "pasos", "notas", "comprobar", "arreglar", "transportar", "importar", "fichero"):
    EXCHANGES += [("POST", "/" + path, CHUNKED, VALS, 411, "Content-Length"),
                  ("POST", "/" + path, TEXT, LARGE, 413, "256 KiB")]
    EXCHANGES += [("POST", "/" + path, FORM, VALS, 415, "text/plain")] if path != "importar" else []


def main():
    with tempfile.TemporaryDirectory() as home, RunningServer(SERVER, home, {
            "vals.29": "Vals:d=4,o=5,b=63:c", "anil.8": "Añil:d=4,o=5,b=63:c",
            "lento.9": "Vals (lento):d=4,o=5,b=63:c", "año.30": "Año:d=4,o=5,b=100:cjuh9hay,d"}) as server:
        contract = Contract(server)
        for exchange in EXCHANGES:
            contract.check(*exchange)
        for path in [path for path, item in contract.document["paths"].items() if "get" in item]:
            contract.check_unchanged(path.replace("{fichero}", "vals.29"))
        for _ in range(21):
            status = contract.ask("POST", "/melodias", TEXT, "x")[0]
        assert status == 429, status
        check_same_as_cli(contract)
        with tempfile.TemporaryDirectory() as locked, RunningServer(
                SERVER, locked, {"vals.29": "Vals:d=4,o=5,b=63:c"}, read_only=True) as reader:
            contract.server = reader
            assert "no se puede escribir en la carpeta" in (Path(locked) / "log").read_text()
            contract.check("POST", "/melodias", TEXT, "Mía:d=4,o=5,b=100:c,d#,e", 403, "solo deja leer")
            check_files_same_as_cli(contract, Path(home) / "file")
            check_voices(contract, Path(home) / "file")
        contract.server = server
        check_compressed(contract)
        check_fields(contract)
        check_conversion_limit(contract)
        contract.check_all_seen()


class Contract:
    def __init__(self, server):
        self.server = server
        self.seen = set()
        self.document = {"paths": {}}
        self.document = json.loads(self.ask("GET", "/openapi.json", {}, None)[2])
        jsonschema.Draft202012Validator.check_schema({"$defs": self.document["components"]["schemas"]})
        self.resolver = jsonschema.RefResolver("", self.document)

    def ask(self, method, path, fields, body):
        answer = self.fetch(method, "/api/v1" + path, fields, body)
        self.note(method, path, answer)
        return answer

    def fetch(self, method, path, fields, body):
        connection = http.client.HTTPConnection("127.0.0.1", self.server.port, timeout=60)
        chunked = "Transfer-Encoding" in fields
        data = body.encode() if isinstance(body, str) else body
        connection.request(method, path, iter([data]) if chunked else data, fields,
                           encode_chunked=chunked)
        reply = connection.getresponse()
        answer = reply.status, reply.headers, reply.read()
        connection.close()
        return answer

    def note(self, method, path, answer):
        """Checks a reply against the document."""
        status, headers, body = answer
        plain = path.partition("?")[0]
        plain = "/melodias/{fichero}" if plain.startswith("/melodias/") else plain
        operation = self.document["paths"].get(plain, {}).get(method.lower())
        if operation is None:
            return
        assert str(status) in operation["responses"], (method, path, status, body)
        response = self.resolve(operation["responses"][str(status)])
        for name, header in response.get("headers", {}).items():
            value = headers[name]
            assert value is not None, (path, name)
            self.validate(value, self.resolve(header)["schema"])
        kinds = response.get("content", {})
        kind = headers["Content-Type"].partition(";")[0]
        assert not kinds or kind in kinds or "*/*" in kinds, (path, kind)
        if kind.endswith("json") and kinds:
            self.validate(json.loads(body), kinds[kind]["schema"])
        self.seen.add((plain, method.lower(), str(status)))

    def resolve(self, item):
        return self.resolver.resolve(item["$ref"])[1] if "$ref" in item else item

    def validate(self, value, schema):
        jsonschema.Draft202012Validator(schema, resolver=self.resolver).validate(value)

    def check(self, method, path, fields, body, status, contains):
        got, headers, reply = self.ask(method, path, fields, body)
        where = (method, path, (body or "")[:40])
        assert got == status, (where, got, reply)
        assert contains.encode() in reply, (where, reply.decode(errors="replace"))
        if status >= 400:
            problem = json.loads(reply)
            assert headers["Content-Type"] == "application/problem+json", where
            assert problem["status"] == status and problem["detail"], where

    def check_unchanged(self, path):
        path += "?texto=x" if path == "/qr" else ""
        _, headers, _ = self.ask("GET", path, {}, None)
        if path != "/azar":  # different ones each time
            status, _, body = self.ask("GET", path, {"If-None-Match": headers["ETag"]}, None)
            assert (status, body) == (304, b""), path

    def check_all_seen(self):
        named = {(path, method, status) for path, item in self.document["paths"].items()
                 for method, operation in item.items() for status in operation["responses"]}
        assert named == self.seen, (named - self.seen, self.seen - named)


def check_same_as_cli(contract):
    """The conversion for each model equals the terminal program's, byte for byte."""
    models = json.loads(contract.ask("GET", "/modelos", {}, None)[2])["modelos"]
    for row in models:
        for melody in (VALS, "Mal:d=4,o=5,b=120:c,9x", "", "Añil:d=8,o=4,b=90:a1,c7,16f#."):
            for steps in ["0", "1"] if "teclado" in row else ["0"]:
                path = "/convertir?fila=Fila+ñ&modelo=".replace("ñ", "%F1") + quote(row["modelo"])
                got = contract.ask("POST", path + "&pasos=" + steps, TEXT, melody)[2]
                cli = [CLI, "convertir", "--modelo", row["modelo"], "--fila", "Fila ñ", "--lineas"]
                cli += ["--pasos"] if steps == "1" else []
                want = subprocess.run(cli, input=melody + "\n", capture_output=True, text=True, check=True)
                assert got.decode() + "\n" == want.stdout, (path, melody, got, want.stdout)


def check_files_same_as_cli(contract, file):
    """Every file equals the terminal program's, and can be imported again."""
    melody = "Escala:d=4,o=5,b=125:c,d,e,f,g,a,b,2c6"
    for row in json.loads(contract.ask("GET", "/formatos", {}, None)[2])["formatos"]:
        status, headers, got = contract.ask("POST", "/fichero?formato=" + row["formato"], TEXT, melody)
        subprocess.run([CLI, "convertir", "--formato", row["formato"], "--salida", file, "-"],
                       input=melody + "\n", capture_output=True, text=True, check=True)
        assert (status, got) == (200, file.read_bytes()), row
        assert headers["Content-Disposition"].endswith("''Escala." + row["extension"]), row
        if row["extension"] in ("mid", "imy", "ott"):
            got = contract.ask("POST", "/importar?fichero=Escala.x", {}, got)[2].decode()
            assert '"nombre":"Escala"' in got and ":c,d,e,f,g,a,b,2c6" in got, (row, got)


def check_voices(contract, file):
    """Every voice of a MIDI file is converted as by the terminal program; the tune is marked."""
    file.write_bytes(midi_file([("Bajo", [36, 43, 36, 43]), ("Flauta", [88, 86, 84, 83, 84, 86])]))
    reply = json.loads(contract.ask("POST", "/importar?fichero=Dos.mid&modelo=3310", {}, file.read_bytes())[2])
    assert [voice["melodia"] for voice in reply["voces"]].count(True) == 1 and len(reply["voces"]) > 1
    for number, voice in enumerate(reply["voces"], 1):
        cli = [CLI, "importar", "--pista", str(number), "--telefono", "3310", file]
        want = subprocess.run(cli, capture_output=True, text=True, check=True).stdout
        assert voice["rtttl"].partition(":")[2] in want, (voice, want)


def check_compressed(contract):
    """The page and the interface are compressed on request, the desktop program's paths never."""
    for path in ("/", "/web/pagina.js", "/api/v1/modelos", "/api/v1/qr?texto=x", "/tonos/vals.29", "/todoslostonos.php",
                 "/listatonos.php?cadenadebusqueda=v", "/mini906.php", "/banners.php", "/mini.php?version=1"):
        plain, refused, packed = (contract.fetch("GET", path, {"Accept-Encoding": coding}, None)
                                  for coding in ("", "br, gzip;q=0.0", "br, GZIP;q=0.5"))
        assert list(plain[1].items()) == list(refused[1].items()) and plain[2] == refused[2], path
        if path.endswith(("/", ".js")) or "/api/" in path:
            assert plain[1]["Vary"] == packed[1]["Vary"] == "Accept-Encoding", path
            assert packed[1]["Content-Encoding"] == "gzip" and gzip.decompress(packed[2]) == plain[2], path
            fields = {"Accept-Encoding": "gzip", "If-None-Match": packed[1]["ETag"]}
            again = contract.fetch("GET", path, fields, None)
            assert (again[0], again[1]["Content-Encoding"], again[2]) == (304, None, b""), path
        else:
            assert list(plain[1].items()) == list(packed[1].items()) and plain[2] == packed[2], path


def check_fields(contract):
    """Allow names the path's own method; a long name stays a field that proxies take."""
    for method, path, allowed in (("PUT", "/convertir", "POST"), ("GET", "/convertir", "POST"),
                                  ("DELETE", "/buscar?texto=x", "GET, HEAD")):
        status, headers, _ = contract.fetch(method, "/api/v1" + path, {}, "x" if method == "PUT" else None)
        assert (status, headers["Allow"]) == (405, allowed), (method, path, status, headers["Allow"])
    _, headers, _ = contract.ask("POST", "/fichero?formato=mid", TEXT, "ñ" * 5000 + ":d=4,o=5,b=125:c")
    assert len(headers["Content-Disposition"]) < 1000, "fields that proxies refuse"


def check_conversion_limit(contract):
    """1200 a minute, 4 KiB counting as one more, a sound as 60; searches and uploads are not affected."""
    statuses = [contract.ask("POST", "/fichero?formato=wav", TEXT, VALS)[0] for _ in range(12)]
    statuses += [contract.ask("POST", "/importar", {}, LARGE[1:])[0] for _ in range(10)]
    assert statuses[0] == 200 and statuses[12] == 422 and statuses[-1] == 429, statuses
    for path in ("convertir", "pasos", "notas", "comprobar", "arreglar", "transportar", "importar", "fichero"):
        contract.check("POST", "/" + path, TEXT, LARGE[1:], 429, "Espera un minuto")
    contract.check("GET", "/buscar?texto=vals", {}, None, 200, "vals.29")


main()
