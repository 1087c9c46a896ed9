# SPDX-License-Identifier: GPL-3.0-or-later
"""That no file of this system is taken for the player's own. It reads a byte of every one."""
import os
import pathlib
import shutil
import unittest

from installed import ID, InstalledTest, run

COMMAND = 9
AT_ONCE = 500


class System(InstalledTest):
    @classmethod
    def setUpClass(cls):
        super().setUpClass()
        data = cls.scratch / "data"
        (data / "mime/packages").mkdir(parents=True)
        shutil.copy(cls.share / f"mime/packages/{ID}.xml", data / "mime/packages")
        cls.environment = {"XDG_DATA_HOME": str(data)}
        assert run("update-mime-database", data / "mime", environment=cls.environment) == (0, "")

    def types(self, paths):
        code, output = run("gio", "info", "-a", "standard::content-type", *paths,
                           environment=self.environment)
        self.assertEqual(code, 0, output)
        key = "standard::content-type: "
        return [line.split(key)[1] for line in output.splitlines() if key in line]

    def test_no_file_of_the_system_is_taken_for_one(self):
        own = self.scratch / "own"
        own.write_bytes(bytes([COMMAND, 1]).ljust(24, b"\0") * 4)
        alike = [own]
        for folder, _, names in os.walk("/usr"):
            for name in names:
                path = pathlib.Path(folder, name)
                if path.is_symlink() or not path.is_file() or path.suffix.lower() == ".cdg":
                    continue
                # No file that begins otherwise can be taken for one.
                with path.open("rb") as file:
                    if (file.read(1) or b"\0")[0] & 63 == COMMAND:
                        alike.append(path)
        self.assertGreater(len(alike), 10)
        found = []
        for begin in range(0, len(alike), AT_ONCE):
            piece = alike[begin:begin + AT_ONCE]
            kinds = self.types(piece)
            self.assertEqual(len(kinds), len(piece))
            found += [path for path, kind in zip(piece, kinds) if kind == "video/x-cdg"]
        self.assertEqual(found, [own])


if __name__ == "__main__":
    unittest.main()
