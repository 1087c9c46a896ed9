# SPDX-License-Identifier: GPL-3.0-or-later
"""The player's page as it is installed: it needs no network, and leads nowhere that isn't there."""
import re
import unittest
import xml.etree.ElementTree as ElementTree

from installed import SOURCE, InstalledTest

XHTML = re.compile(r"<!DOCTYPE html>\s*")


class Page(InstalledTest):
    @classmethod
    def setUpClass(cls):
        super().setUpClass()
        cls.page = cls.share / "lyric-lantern/help/index.html"
        # It is written so that a parser of XML takes it, which tells of every tag left open.
        cls.tree = ElementTree.fromstring(XHTML.sub("", cls.page.read_text(encoding="utf-8")))

    def test_every_picture_and_link_leads_to_something_installed(self):
        ids = {element.get("id") for element in self.tree.iter() if element.get("id")}
        targets = [element.get(name) for element in self.tree.iter() for name in ("href", "src")
                   if element.get(name)]
        self.assertGreater(len(targets), 5)
        for target in targets:
            if target.startswith("#"):
                self.assertIn(target[1:], ids)
            else:
                self.assertNotIn(":", target, "it is not on this machine")
                self.assertTrue((self.page.parent / target).is_file(), target)

    def test_every_picture_is_told_in_words(self):
        for image in self.tree.iter("img"):
            self.assertGreater(len(image.get("alt", "")), 20)

    def test_it_has_every_key_that_the_read_me_has(self):
        text = (SOURCE / "README.md").read_text(encoding="utf-8")
        table = text.split("## Keys")[1].split("##")[0]
        keys = {word for row in re.findall(r"(?m)^\| ([^|]+) \|", table)[1:]
                for word in re.split(r", | to | and ", row)}
        keys -= {"---"}
        self.assertGreater(len(keys), 20)
        table = next(section for section in self.tree.iter("table")
                     if any(cell.text == "What it does" for cell in section.iter("th")))
        told = {word.casefold() for row in table.iter("tr") for word in
                re.split(r", | to | and ", "".join(row[0].itertext()))}
        self.assertEqual({key.casefold() for key in keys} - told, set())


if __name__ == "__main__":
    unittest.main()
