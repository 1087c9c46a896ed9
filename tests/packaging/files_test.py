# SPDX-License-Identifier: GPL-3.0-or-later
"""Which files are the player's own, asked of GIO with our types beside those of the system."""
import pathlib
import shutil
import unittest

from installed import BUILD, ID, InstalledTest, run

PACKET = 24
INSTRUCTIONS = {1, 2, 6, 20, 24, 28, 30, 31, 38}


def packet(command, instruction):
    return bytes([command, instruction]).ljust(PACKET, b"\0")


class Types(InstalledTest):
    @classmethod
    def setUpClass(cls):
        super().setUpClass()
        data = cls.scratch / "data"
        packages = data / "mime/packages"
        packages.mkdir(parents=True)
        shutil.copy(cls.share / f"mime/packages/{ID}.xml", packages)
        cls.environment = {"XDG_DATA_HOME": str(data)}
        code, output = run("update-mime-database", data / "mime", environment=cls.environment)
        assert (code, output) == (0, ""), output
        cls.folder = cls.scratch / "files"
        cls.folder.mkdir()

    def types(self, *paths):
        code, output = run("gio", "info", "-a", "standard::content-type", *paths,
                           environment=self.environment)
        self.assertEqual(code, 0, output)
        key = "standard::content-type: "
        return [line.split(key)[1] for line in output.splitlines() if key in line]

    def type_of(self, name, content):
        return self.types_of({name: content})[name]

    def types_of(self, files):
        """The types of files with these names and contents, by name."""
        for name, content in files.items():
            (self.folder / name).write_bytes(content)
        return dict(zip(files, self.types(*(self.folder / name for name in files))))

    def test_the_ending_tells_whatever_is_inside(self):
        for name in ("a.cdg", "B.CDG", "c d.cdg"):
            self.assertEqual(self.type_of(name, b"\0" * 2400), "video/x-cdg", name)

    def test_the_content_tells_without_a_name(self):
        demo = (BUILD / "demo/demo.cdg").read_bytes()
        self.assertEqual(self.type_of("demo", demo), "video/x-cdg")
        # The two high bits of a byte belong to other channels of the disc.
        nameless = {f"{instruction} {high}":
                    packet(9 | high, instruction | high) + packet(9 | high, 6) * 5
                    for instruction in INSTRUCTIONS for high in (0, 0x40, 0x80, 0xC0)}
        types = self.types_of(nameless)
        self.assertEqual(types, dict.fromkeys(nameless, "video/x-cdg"))

    def test_other_content_does_not(self):
        known = packet(9, 1)
        files = {}
        for place in range(4):
            packets = [known] * 4
            packets[place] = packet(8, 1)
            files[f"place {place}"] = b"".join(packets)
        for instruction in set(range(64)) - INSTRUCTIONS:
            files[f"instruction {instruction}"] = packet(9, instruction) + known * 3
        types = self.types_of(files)
        self.assertEqual([name for name in files if types[name] == "video/x-cdg"], [])

    def test_a_bin_is_nothing_of_ours(self):
        self.assertEqual(self.type_of("a.bin", b"\0" * 4896), "application/octet-stream")

    def test_another_programs_name_for_the_type_means_the_same(self):
        aliases = (pathlib.Path(self.environment["XDG_DATA_HOME"]) / "mime/aliases").read_text(
            encoding="utf-8")
        self.assertIn("application/x-cdg video/x-cdg\n", aliases)


if __name__ == "__main__":
    unittest.main()
