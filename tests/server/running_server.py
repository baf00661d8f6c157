"""A tonadex-server on a free port, with melodies in a temporary folder or in a database."""
import os
import subprocess
import time
from pathlib import Path


class RunningServer:
    def __init__(self, program, home, melodies, read_only=False, more=(), variables={}, log=None,
                 error=subprocess.STDOUT):
        folder = Path(home) / "servidor"
        folder.mkdir(parents=True, exist_ok=True)
        for name, text in melodies.items():
            (folder / name).write_bytes(text.encode("cp1252"))
        if read_only:  # so that not even root can write
            (folder / ".candado").mkdir()
        self.output = open(Path(home) / "log", "w+b")
        self.process = subprocess.Popen(
            [program, "--puerto", "0", "--carpeta", folder, "--estanteria", "", "--registro",
             Path(home) / "requests" if log is None else log, *more], stdout=self.output, stderr=error,
            env={**os.environ, **variables}, preexec_fn=None if error else lambda: os.close(2))
        self.port = self.wait_for_port(Path(home) / "log")

    def wait_for_port(self, log):
        for _ in range(600):
            for line in log.read_text().splitlines():
                if "http://" in line:
                    return int(line.rstrip("/").rpartition(":")[2])
            assert self.process.poll() is None, log.read_text()
            time.sleep(0.1)
        raise TimeoutError(log.read_text())

    def __enter__(self):
        return self

    def __exit__(self, *error):
        self.process.terminate()
        self.process.wait()
        self.output.close()
