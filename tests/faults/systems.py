"""A print system and a mail server of their own, for scripts that print and mail."""
import os
import subprocess
import time


class PrintSystem:
    """CUPS with one printer, whose pages go into a file."""

    def __init__(self, folder):
        for name in ("root", "spool", "state", "cache", "log", "tmp", "out"):
            os.makedirs(os.path.join(folder, name))
        with open(os.path.join(folder, "cups-files.conf"), "w", encoding="ascii") as file:
            file.write("FileDevice Yes\nSyncOnClose No\n" + "".join(
                f"{key} {folder}/{name}\n" for key, name in (
                    ("ServerRoot", "root"), ("RequestRoot", "spool"), ("StateDir", "state"), ("CacheDir", "cache"),
                    ("TempDir", "tmp"), ("AccessLog", "log/access"), ("ErrorLog", "log/error"), ("PageLog", "log/page"),
                    ("DocumentRoot", "root"))))
        with open(os.path.join(folder, "cupsd.conf"), "w", encoding="ascii") as file:
            file.write(f"LogLevel info\nListen {folder}/socket\nBrowsing No\nDefaultAuthType None\nWebInterface No\n"
                       "MaxJobTime 60\n<Location />\nAllow all\n</Location>\n<Policy default>\n<Limit All>\nAllow all\n"
                       "</Limit>\n</Policy>\n")
        command = ["/usr/sbin/cupsd", "-f", "-c", folder + "/cupsd.conf", "-s", folder + "/cups-files.conf"]
        if os.geteuid() == 0:  # the superuser's scheduler would not do with folders of its own
            subprocess.run(["chown", "-R", "nobody:nogroup", folder], check=True)
            command = ["setpriv", "--reuid=nobody", "--regid=nogroup", "--clear-groups", *command]
        self.environment = {**os.environ, "CUPS_SERVER": folder + "/socket"}
        self.scheduler = subprocess.Popen(command, stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
        self.spool = folder + "/spool"
        for _ in range(300):
            if "is running" in self.ask("lpstat", "-r"):
                break
            time.sleep(0.1)
        self.ask("/usr/sbin/lpadmin", "-p", "Pages", "-E", "-v", f"file:{folder}/out/pages.prn", "-o",
                 "printer-error-policy=abort-job")
        self.ask("/usr/sbin/lpadmin", "-d", "Pages")

    def ask(self, *command):
        return subprocess.run(command, env=self.environment, capture_output=True, text=True, check=False).stdout

    def jobs(self):
        """How many there have been."""
        return sum(name.startswith("c") for name in os.listdir(self.spool))

    def stop(self):
        self.scheduler.terminate()
        self.scheduler.wait(10)


class MailSystem:
    def __init__(self, source, folder):
        os.makedirs(folder)
        self.folder = folder
        self.server = subprocess.Popen(["/usr/bin/python3", os.path.join(source, "tests/support/smtp-server.py"), folder])
        port = os.path.join(folder, "port")
        while not os.path.exists(port) and self.server.poll() is None:
            time.sleep(0.05)
        with open(port, encoding="ascii") as file:
            self.port = file.read()

    def mails(self):
        return sum(name.endswith(".eml") for name in os.listdir(self.folder))

    def stop(self):
        self.server.terminate()
        self.server.wait(10)
