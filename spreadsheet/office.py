"""A headless LibreOffice of one's own, with the add-in in it, driven over a pipe."""

import os
import pathlib
import shutil
import subprocess
import tempfile
import time

import uno
from com.sun.star.beans import PropertyValue
from com.sun.star.connection import NoConnectException


PROFILE = 5  # the place of its option


def words(**given):
    return tuple(PropertyValue(Name=name, Value=value) for name, value in given.items())


class Office:
    """`with Office(OXT) as office:` the program runs within the block."""

    def __init__(self, extension):
        self.folder = tempfile.TemporaryDirectory(prefix="vq-office-")
        self.pipe = "vq" + pathlib.Path(self.folder.name).name.replace("-", "")
        profile = pathlib.Path(self.folder.name, "profile").as_uri()
        self.command = ["soffice", "--headless", "--norestore", "--nologo", "--nodefault",
                        f"-env:UserInstallation={profile}",
                        f"--accept=pipe,name={self.pipe};urp;StarOffice.ComponentContext"]
        self._add(extension)
        self._start()

    def _add(self, extension):
        """Puts the extension into the profile; as root by way of another user, since unopkg refuses
        root."""
        copy = shutil.copy(extension, self.folder.name)
        command = ["unopkg", "add", "-f", self.command[PROFILE], copy]
        if os.geteuid() == 0:
            os.chmod(self.folder.name, 0o777)
            command = ["runuser", "-u", "nobody", "--", *command]
        done = subprocess.run(command, capture_output=True, text=True, check=False,
                              env=os.environ | {"HOME": self.folder.name})
        if done.returncode:
            raise RuntimeError(f"unopkg: {done.stdout}{done.stderr}")

    def _start(self):
        environment = {k: v for k, v in os.environ.items() if k != "VQMATH63_LIBRARY"}
        self.process = subprocess.Popen(self.command, env=environment, stdout=subprocess.DEVNULL,
                                        stderr=subprocess.PIPE, text=True)
        local = uno.getComponentContext()
        resolver = local.ServiceManager.createInstanceWithContext(
            "com.sun.star.bridge.UnoUrlResolver", local)
        for _ in range(600):
            try:
                self.context = resolver.resolve(
                    f"uno:pipe,name={self.pipe};urp;StarOffice.ComponentContext")
                break
            except NoConnectException:
                if self.process.poll() is not None:
                    raise RuntimeError(f"soffice: {self.process.stderr.read()}") from None
                time.sleep(0.1)
        self.desktop = self.make("com.sun.star.frame.Desktop")

    def _stop(self):
        try:
            self.desktop.terminate()
        except Exception:  # the bridge ends before the answer comes
            pass
        try:
            self.process.wait(30)
        except subprocess.TimeoutExpired:
            self.process.kill()

    def __enter__(self):
        return self

    def __exit__(self, *error):
        self._stop()
        self.folder.cleanup()

    def make(self, service):
        return self.context.ServiceManager.createInstanceWithContext(service, self.context)

    def open(self, path):
        """A document of a file, or a new one for None."""
        url = pathlib.Path(path).resolve().as_uri() if path else "private:factory/scalc"
        return self.desktop.loadComponentFromURL(url, "_blank", 0, words(Hidden=True))

    @staticmethod
    def save(document, path, filter_name):
        document.storeToURL(pathlib.Path(path).resolve().as_uri(), words(FilterName=filter_name))
