#!/usr/bin/python3
"""slow-home.py SOURCE MOUNT [--delay MS] [--read-only] [--log FILE]: shows the folder SOURCE at MOUNT as a network folder:
each operation waits so long (1 to 20 ms for a school's server), names and attributes are remembered for a second, as the
clients of NFS and SMB do. Writes "SECONDS THREAD OPERATION PATH" for each of them. SIGUSR1: nothing is answered for the
next ten seconds. SIGTERM unmounts it."""
import argparse
import os
import signal
import subprocess
import threading
import time

from fusepy import FUSE, Operations, fuse_get_context

HANGS = 10.0  # seconds
REMEMBERED = 1.0  # seconds
STATUS = ("st_atime", "st_ctime", "st_gid", "st_ino", "st_mode", "st_mtime", "st_nlink", "st_size", "st_uid", "st_blocks")
SPACE = ("f_bavail", "f_bfree", "f_blocks", "f_bsize", "f_favail", "f_ffree", "f_files", "f_flag", "f_frsize", "f_namemax")


class Network(Operations):
    def __init__(self, source, options):
        self.source, self.options = source, options
        self.hangs_until = 0.0
        self.writing = threading.Lock()
        self.log = open(options.log, "a", encoding="utf-8", buffering=1) if options.log else None

    def __call__(self, operation, path, *words):
        # No answer at the end of a folder or a file takes a message of its own.
        if operation in ("init", "destroy", "releasedir", "release", "flush"):
            return super().__call__(operation, path, *words)
        if self.log:
            with self.writing:
                self.log.write(f"{time.monotonic():.4f} {fuse_get_context()[2]} {operation} {path}\n")
        time.sleep(self.options.delay / 1000)
        while time.monotonic() < self.hangs_until:
            time.sleep(0.05)
        return super().__call__(operation, self.source + path, *words)

    def getattr(self, path, fh=None):
        status = os.lstat(path)
        return {name: getattr(status, name) for name in STATUS}

    def readdir(self, path, _):
        return [".", "..", *os.listdir(path)]

    def statfs(self, path):
        space = os.statvfs(path)
        return {name: getattr(space, name) for name in SPACE}

    def open(self, path, flags):
        return os.open(path, flags)

    def create(self, path, mode, _=None):
        return os.open(path, os.O_RDWR | os.O_CREAT | os.O_TRUNC, mode)

    def read(self, _, size, offset, fh):
        return os.pread(fh, size, offset)

    def write(self, _, data, offset, fh):
        return os.pwrite(fh, data, offset)

    def truncate(self, path, length, fh=None):
        os.truncate(path if fh is None else fh, length)

    def fsync(self, path, _, fh):
        os.fsync(fh)

    def fsyncdir(self, path, _, fh):
        pass

    def release(self, _, fh):
        os.close(fh)

    def link(self, path, source):
        os.link(self.source + source, path)

    def rename(self, path, new):
        os.rename(path, self.source + new)

    def symlink(self, path, target):
        os.symlink(target, path)

    def utimens(self, path, times=None):
        os.utime(path, times)

    chmod = staticmethod(os.chmod)
    chown = staticmethod(os.chown)
    mkdir = staticmethod(os.mkdir)
    readlink = staticmethod(os.readlink)
    rmdir = staticmethod(os.rmdir)
    unlink = staticmethod(os.unlink)


def main():
    parser = argparse.ArgumentParser()
    parser.add_argument("source")
    parser.add_argument("mount")
    parser.add_argument("--delay", type=float, default=0)
    parser.add_argument("--read-only", action="store_true")
    parser.add_argument("--log")
    options = parser.parse_args()
    network = Network(os.path.realpath(options.source), options)

    def hang(*_):
        network.hangs_until = time.monotonic() + HANGS

    # The library's loop runs in a thread, so that signals are handled in this one.
    loop = threading.Thread(target=lambda: FUSE(network, options.mount, foreground=True, fsname="slow-home",
                                                default_permissions=True, ro=options.read_only,
                                                attr_timeout=REMEMBERED, entry_timeout=REMEMBERED,
                                                negative_timeout=REMEMBERED))
    signal.signal(signal.SIGUSR1, hang)
    signal.signal(signal.SIGTERM, lambda *_: subprocess.run(["fusermount", "-uz", options.mount], check=False))
    loop.start()
    while loop.is_alive():
        loop.join(0.1)


main()
