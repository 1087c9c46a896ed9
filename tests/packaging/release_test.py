# SPDX-License-Identifier: GPL-3.0-or-later
"""What goes with a release: one version everywhere, licences, and the descriptions of packages."""
import json
import re
import subprocess
import tempfile
import unittest

from installed import ID, SOURCE, VERSION, InstalledTest, run


class Release(unittest.TestCase):
    def test_every_description_has_the_version(self):
        debian = (SOURCE / "debian/changelog").read_text(encoding="utf-8").splitlines()[0]
        self.assertRegex(debian, rf"^lyric-lantern \({re.escape(VERSION)}\) ")
        heading = re.search(r"(?m)^## (\S+) - \S+$",
                            (SOURCE / "CHANGELOG.md").read_text(encoding="utf-8"))
        self.assertEqual(heading.group(1), VERSION)

    def test_no_other_file_states_it(self):
        """The programs, the manual and the description are made from the project's version."""
        code, output = run("git", "-C", SOURCE, "grep", "-lF", VERSION)
        if code > 1:
            self.skipTest("what belongs to the project only git knows")
        stated = {name for name in output.split() if not name.startswith("tests/")}
        self.assertEqual(stated, {"CMakeLists.txt", "CHANGELOG.md", "debian/changelog"})

    def test_every_file_has_a_licence_and_an_owner(self):
        if not (SOURCE / ".git").exists():
            self.skipTest("what belongs to the project only git knows")
        code, output = run("reuse", "--root", SOURCE, "lint")
        self.assertEqual(code, 0, output)

    def folder(self):
        """One of its own, as the tool leaves a folder where it is started."""
        folder = tempfile.TemporaryDirectory(prefix="lyric-lantern-")
        self.addCleanup(folder.cleanup)
        return folder.name

    def test_the_flatpak_has_the_name_and_sees_the_music(self):
        manifest = json.loads(subprocess.run(
            ["flatpak-builder", "--show-manifest", SOURCE / f"packaging/{ID}.yml"],
            check=True, stdout=subprocess.PIPE, timeout=60, cwd=self.folder()).stdout)
        self.assertEqual((manifest["id"], manifest["command"]), (ID, "lyric-lantern"))
        self.assertTrue({"--socket=pulseaudio", "--socket=wayland", "--filesystem=xdg-music:ro"}
                        <= set(manifest["finish-args"]))
        names = re.findall(r'kApplicationBusName = QStringLiteral\("(.*)"\)',
                           (SOURCE / "platform/values/Application.h").read_text(encoding="utf-8"))
        self.assertEqual([word for word in manifest["finish-args"] if "own-name" in word],
                         [f"--own-name=org.mpris.MediaPlayer2.{name}" for name in names])

    def test_the_pages_of_the_repository_lead_somewhere(self):
        for name in ("README.md", "CONTRIBUTING.md", "SECURITY.md", "docs/architecture.md"):
            page = SOURCE / name
            links = re.findall(r"\]\(([^)]+)\)", page.read_text(encoding="utf-8"))
            for link in links:
                if "://" not in link:
                    self.assertTrue((page.parent / link.split("#")[0]).exists(), (name, link))


class DebianPackage(InstalledTest):
    def test_it_asks_for_what_the_build_looks_for(self):
        """Every tool that the packaging looks for comes from a package that is named."""
        control = (SOURCE / "debian/control").read_text(encoding="utf-8")
        names = set(re.findall(r"(?m)^\s+([a-z0-9+.-]+)", control.split("Standards")[0]))
        ours = set(re.sub(r"#.*", "", (SOURCE / "scripts/packages.txt").read_text("utf-8")).split())
        self.assertEqual(names - ours, set(), "scripts/setup does not install it")
        for tool, package in (("rsvg-convert", "librsvg2-bin"), ("oggenc", "vorbis-tools")):
            self.assertIn(tool, (SOURCE / "packaging/CMakeLists.txt").read_text("utf-8"))
            self.assertIn(package, names)


if __name__ == "__main__":
    unittest.main()
