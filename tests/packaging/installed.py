# SPDX-License-Identifier: GPL-3.0-or-later
"""What the tests of the installed files share: a tree that the program was installed to."""
import os
import pathlib
import subprocess
import tempfile
import unittest

BUILD = pathlib.Path(os.environ["LANTERN_BUILD"])
ID = os.environ["LANTERN_ID"]
VERSION = os.environ["LANTERN_VERSION"]
SOURCE = pathlib.Path(__file__).resolve().parents[2]


def run(*command, environment=None, **options):
    """Runs a command to its end: exit code and all that it printed."""
    result = subprocess.run([str(word) for word in command], text=True, timeout=60,
                            stdout=subprocess.PIPE, stderr=subprocess.STDOUT,
                            env={**os.environ, "LC_ALL": "C.UTF-8", **(environment or {})},
                            check=False, **options)
    return result.returncode, result.stdout


class InstalledTest(unittest.TestCase):
    """Has the program installed below self.root, with the prefix /usr."""

    @classmethod
    def setUpClass(cls):
        folder = tempfile.TemporaryDirectory(prefix="lyric-lantern-")
        cls.addClassCleanup(folder.cleanup)
        cls.scratch = pathlib.Path(folder.name)
        cls.root = cls.scratch / "root"
        code, output = run("cmake", "--install", BUILD, "--prefix", "/usr",
                           environment={"DESTDIR": str(cls.root)})
        assert code == 0, output
        cls.share = cls.root / "usr/share"
        cls.bin = cls.root / "usr/bin"
        cls.modules = [next(cls.root.rglob(f"lantern-tool-{part}.so")) for part in ("sound", "film")]

    def assert_silent(self, *command):
        """The command succeeds and has nothing to say."""
        self.assertEqual(run(*command), (0, ""), command)
