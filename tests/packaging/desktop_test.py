# SPDX-License-Identifier: GPL-3.0-or-later
"""How the desktops see the program: its entry, its description, its icons and its types."""
import configparser
import os
import re
import struct
import unittest
import xml.etree.ElementTree as ElementTree

from installed import BUILD, ID, SOURCE, VERSION, InstalledTest, run

OPEN_WITH = "zz-lyric-lantern-open-with.desktop"


def entry(path):
    parser = configparser.ConfigParser(interpolation=None, delimiters="=", strict=True)
    parser.optionxform = str
    parser.read(path, encoding="utf-8")
    return parser


class Identity(InstalledTest):
    def test_the_program_gives_its_windows_the_name_of_its_entry(self):
        header = (SOURCE / "platform/values/Application.h").read_text(encoding="utf-8")
        self.assertEqual(re.findall(r'kApplicationId = QStringLiteral\("(.*)"\)', header), [ID])

    def test_every_file_of_the_desktops_bears_the_name(self):
        for name in (f"applications/{ID}.desktop", f"metainfo/{ID}.metainfo.xml",
                     f"mime/packages/{ID}.xml", f"thumbnailers/{ID}.thumbnailer",
                     f"icons/hicolor/scalable/apps/{ID}.svg",
                     f"icons/hicolor/symbolic/apps/{ID}-symbolic.svg"):
            self.assertTrue((self.share / name).is_file(), name)
        for name in (f"{ID}.desktop", OPEN_WITH):
            self.assertEqual(entry(self.share / "applications" / name)["Desktop Entry"]["Icon"], ID)

    def test_the_class_of_the_windows_is_the_programs_file(self):
        for name in (f"{ID}.desktop", OPEN_WITH):
            section = entry(self.share / "applications" / name)["Desktop Entry"]
            self.assertTrue((self.bin / section["StartupWMClass"]).is_file())

    def test_icons_are_there_in_every_size_and_have_it(self):
        for size in (16, 22, 24, 32, 48, 64, 128, 256, 512):
            png = self.share / f"icons/hicolor/{size}x{size}/apps/{ID}.png"
            self.assertEqual(struct.unpack(">II", png.read_bytes()[16:24]), (size, size))


    def test_the_media_session_tells_the_types_of_the_entries(self):
        header = (SOURCE / "media/loading/MediaMimeTypes.h").read_text(encoding="utf-8")
        types = []
        for name in (f"{ID}.desktop", OPEN_WITH):
            section = entry(self.share / "applications" / name)["Desktop Entry"]
            types += section["MimeType"].rstrip(";").split(";")
        self.assertEqual(sorted(re.findall(r'u"(.*?)"', header)), sorted(types))


class Validity(InstalledTest):
    def test_the_entries_are_valid(self):
        for name in (f"{ID}.desktop", OPEN_WITH):
            self.assert_silent("desktop-file-validate", self.share / "applications" / name)

    def test_the_description_is_valid_to_the_last_detail(self):
        code, output = run("appstreamcli", "validate", "--pedantic", "--no-net", "--no-color",
                           self.share / f"metainfo/{ID}.metainfo.xml")
        self.assertEqual(code, 0, output)
        self.assertNotRegex(output, r"(?m)^[EWIP]:")

    def test_the_first_release_described_is_this_one(self):
        tree = ElementTree.parse(self.share / f"metainfo/{ID}.metainfo.xml")
        release = tree.find("releases/release")
        self.assertEqual(release.get("version"), VERSION)
        heading = re.search(r"(?m)^## (\d.*)$",
                            (SOURCE / "CHANGELOG.md").read_text(encoding="utf-8"))
        self.assertEqual(heading.group(1), f"{VERSION} - {release.get('date')}")

    def test_the_programs_of_the_entries_are_installed(self):
        for name in (f"{ID}.desktop", OPEN_WITH):
            sections = entry(self.share / "applications" / name)
            for section in sections.sections():
                program = sections[section]["Exec"].split()[0]
                self.assertTrue(os.access(self.bin / program, os.X_OK), program)

    def test_the_actions_of_the_entry_play_the_demo_song_and_open_the_stage_window(self):
        sections = entry(self.share / f"applications/{ID}.desktop")
        self.assertEqual(sections["Desktop Entry"]["Actions"], "Demo;Stage;")
        self.assertEqual(sections["Desktop Action Stage"]["Exec"], "lyric-lantern --stage")
        self.assertEqual(sections["Desktop Action Demo"]["Exec"], "lyric-lantern --demo")

    def test_the_thumbnailer_has_what_file_managers_look_for(self):
        section = entry(self.share / f"thumbnailers/{ID}.thumbnailer")["Thumbnailer Entry"]
        self.assertTrue((self.bin / section["TryExec"]).is_file())
        words = section["Exec"].split()
        self.assertEqual(words[0], section["TryExec"])
        self.assertTrue({"%i", "%o", "%s"} <= set(words))
        self.assertIn("video/x-cdg", section["MimeType"].split(";"))
        picture = self.scratch / "picture.png"
        values = {"%i": BUILD / "demo/demo.cdg", "%o": picture, "%s": 128}
        self.assert_silent(self.bin / words[0], *(values.get(word, word) for word in words[1:]))
        self.assertEqual(struct.unpack(">II", picture.read_bytes()[16:24]), (128, 85))


class OpenWith(InstalledTest):
    """What a file manager offers, asked of GIO with our entries beside another program's."""

    @classmethod
    def setUpClass(cls):
        super().setUpClass()
        cls.system = cls.scratch / "system"
        applications = cls.system / "applications"
        applications.mkdir(parents=True)
        for name in (f"{ID}.desktop", OPEN_WITH):
            text = (cls.share / "applications" / name).read_text(encoding="utf-8")
            # GIO asks for the program only in the search path.
            (applications / name).write_text(text.replace("lyric-lantern", "true"),
                                             encoding="utf-8")
        (applications / "vlc.desktop").write_text(
            "[Desktop Entry]\nType=Application\nName=Other\nExec=true %f\n"
            "MimeType=application/zip;audio/mpeg;\n", encoding="utf-8")
        assert run("update-desktop-database", applications)[0] == 0

    def programs(self, mime_type):
        """The default program of the type, and all that are offered."""
        code, output = run("gio", "mime", mime_type, environment={
            "XDG_DATA_DIRS": str(self.system), "XDG_DATA_HOME": str(self.scratch / "none"),
            "XDG_CONFIG_HOME": str(self.scratch / "none"), "XDG_CURRENT_DESKTOP": ""})
        self.assertEqual(code, 0, output)
        default = re.search(r"Default application for .*: (\S+)", output)
        return default and default.group(1), re.findall(r"(?m)^\t(\S+)", output)

    def test_it_opens_its_own_files(self):
        self.assertEqual(self.programs("video/x-cdg")[0], f"{ID}.desktop")

    def test_it_is_offered_for_archives_and_sound_behind_their_own_programs(self):
        for mime_type in ("application/zip", "audio/mpeg"):
            default, offered = self.programs(mime_type)
            self.assertEqual(default, "vlc.desktop")
            self.assertIn(OPEN_WITH, offered)

    def test_it_takes_no_files_of_unknown_content(self):
        self.assertEqual(self.programs("application/octet-stream"), (None, []))


if __name__ == "__main__":
    unittest.main()
