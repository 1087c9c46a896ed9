# SPDX-License-Identifier: GPL-3.0-or-later
"""Which files are installed, and how: these, no other, and none that others may write."""
import stat
import unittest

from installed import BUILD, ID, InstalledTest, run

SIZES = (16, 22, 24, 32, 48, 64, 128, 256, 512)
FILES = {
    "bin/lantern-tool",
    "bin/lyric-lantern",
    f"share/applications/{ID}.desktop",
    "share/applications/zz-lyric-lantern-open-with.desktop",
    "share/bash-completion/completions/lantern-tool",
    "share/bash-completion/completions/lyric-lantern",
    f"share/icons/hicolor/scalable/apps/{ID}.svg",
    f"share/icons/hicolor/symbolic/apps/{ID}-symbolic.svg",
    "share/lyric-lantern/demo/demo.cdg",
    "share/lyric-lantern/demo/demo.ogg",
    "share/lyric-lantern/help/index.html",
    "share/lyric-lantern/images/options.png",
    "share/lyric-lantern/images/player.png",
    "share/lyric-lantern/images/stage.png",
    "share/man/man1/lantern-tool.1",
    "share/man/man1/lyric-lantern.1",
    f"share/metainfo/{ID}.metainfo.xml",
    f"share/mime/packages/{ID}.xml",
    f"share/thumbnailers/{ID}.thumbnailer",
} | {f"share/icons/hicolor/{size}x{size}/apps/{ID}.png" for size in SIZES}


class Install(InstalledTest):
    def test_these_files_are_installed_and_no_other(self):
        files = {str(path.relative_to(self.root / "usr")) for path in self.root.rglob("*")
                 if not path.is_dir()}
        # Systems differ in where below lib/ they have it.
        modules = {str(module.relative_to(self.root / "usr")) for module in self.modules}
        for module in modules:
            self.assertRegex(module, "^lib.*/lyric-lantern/lantern-tool-[a-z]+.so$")
        self.assertEqual(files, FILES | modules)

    def test_each_is_a_file_that_its_owner_alone_may_write(self):
        for name in FILES:
            mode = (self.root / "usr" / name).lstat().st_mode
            wanted = 0o755 if name.startswith("bin/") else 0o644
            self.assertEqual((name, stat.S_ISREG(mode), stat.S_IMODE(mode)), (name, True, wanted))

    def test_nothing_in_them_leads_back_to_where_they_were_built(self):
        for name in FILES - {"bin/lantern-tool", "bin/lyric-lantern"}:
            self.assertNotIn(str(BUILD).encode(), (self.root / "usr" / name).read_bytes(), name)
        for program in (self.bin / "lantern-tool", self.bin / "lyric-lantern", *self.modules):
            code, output = run("readelf", "--dynamic", program)
            self.assertEqual(code, 0, output)
            self.assertIn("NEEDED", output)
            self.assertNotRegex(output, "R(UN)?PATH")

    def test_the_installed_programs_start(self):
        for program in ("lantern-tool", "lyric-lantern"):
            self.assertEqual(run(self.bin / program, "--version")[0], 0)
        code, output = run(self.bin / "lantern-tool", "info",
                           self.share / "lyric-lantern/demo/demo.cdg")
        self.assertEqual(code, 0, output)
        self.assertIn('"kind": "FILE"', output)
        code, output = run(self.bin / "lantern-tool", "video",
                           self.share / "lyric-lantern/demo/demo.cdg", "--to", "0.1",
                           "--out", self.scratch / "film.webm")
        self.assertEqual((code, output), (0, ""))


if __name__ == "__main__":
    unittest.main()
