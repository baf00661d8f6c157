"""A private PostgreSQL cluster, on a socket in its folder, with an empty database whose owner has no
other rights."""
import glob
import os
import pwd
import shutil
import subprocess
import tempfile
from pathlib import Path

BINARIES = sorted(glob.glob("/usr/lib/postgresql/*/bin"))


class RunningDatabase:
    def __init__(self):
        self.folder = tempfile.mkdtemp(prefix="tonadex-db-")
        self.user = {}
        if os.geteuid() == 0:  # initdb refuses root
            nobody = pwd.getpwnam("nobody")
            os.chown(self.folder, nobody.pw_uid, nobody.pw_gid)
            self.user = {"user": nobody.pw_uid, "group": nobody.pw_gid, "extra_groups": []}
        self.address = f"postgresql://tonadex@/tonadex?host={self.folder}"
        self.run("initdb", "-U", "root", "-A", "trust", "-E", "UTF8", "--locale=C.UTF-8", "--no-sync")
        self.start()
        self.sql("CREATE ROLE tonadex LOGIN", "postgres")
        self.sql("CREATE DATABASE tonadex OWNER tonadex", "postgres")

    def run(self, program, *arguments, data=True):
        done = subprocess.run(
            [f"{BINARIES[-1]}/{program}", *(["-D", f"{self.folder}/data"] if data else []), *arguments],
            cwd=self.folder, stdin=subprocess.DEVNULL, stdout=subprocess.PIPE if not data else subprocess.DEVNULL,
            check=True, timeout=120, **self.user)
        return (done.stdout or b"").decode()

    def start(self):
        self.run("pg_ctl", "-w", "-l", f"{self.folder}/log", "-o",
                 f"-k {self.folder} -c listen_addresses='' -c max_connections=100", "start")

    def stop(self, mode):
        self.run("pg_ctl", "-w", "-m", mode, "stop")

    def freeze(self, how):
        main = int((Path(self.folder) / "data/postmaster.pid").read_text().split()[0])
        children = Path(f"/proc/{main}/task/{main}/children").read_text().split()
        for process in [main, *map(int, children)]:
            os.kill(process, how)

    def sql(self, statement, database="tonadex"):
        return self.run("psql", "-qtAX", "-h", self.folder, "-U", "root", "-c", statement, database, data=False)

    def __enter__(self):
        return self

    def __exit__(self, *error):
        subprocess.run([f"{BINARIES[-1]}/pg_ctl", "-D", f"{self.folder}/data", "-m", "immediate", "stop"],
                       stdout=subprocess.DEVNULL, cwd=self.folder, **self.user)
        shutil.rmtree(self.folder, ignore_errors=True)
