# SPDX-License-Identifier: GPL-3.0-or-later
"""What is told of the command lines: by the programs, in the manual, and by the completion."""
import pathlib
import re
import tempfile
import unittest

from installed import InstalledTest, run

PROGRAMS = ("lyric-lantern", "lantern-tool")
KINDS = "mp3,wav,ogg,wma,flac,mp4,mod,xm,it,aif,aac,au,ape,mpc".split(",")


class CommandTest(InstalledTest):
    def help_of(self, program):
        code, text = run(self.bin / program, "--help")
        self.assertEqual(code, 0)
        return text

    def options_of(self, program):
        return set(re.findall(r"(?<![\w-])--?[a-z]+", self.help_of(program)))

    def page(self, program):
        return self.share / f"man/man1/{program}.1"


class Manual(CommandTest):
    def test_the_pages_are_well_written(self):
        for program in PROGRAMS:
            self.assert_silent("mandoc", "-T", "lint", "-W", "warning", self.page(program))
            code, text = run("man", "--warnings", "-P", "cat", "-l", self.page(program),
                             environment={"MANWIDTH": "80"})
            self.assertEqual(code, 0)
            self.assertNotIn("warning", text)

    def test_they_have_every_option_and_no_other(self):
        for program in PROGRAMS:
            page = self.page(program).read_text(encoding="utf-8").replace("\\-", "-")
            options = page.split(".SH OPTIONS")[1].split(".SH EXIT")[0]
            heads = re.findall(r"(?m)^\.TP\n(.*)$", options)
            told = {option for head in heads for option in re.findall(r"(?<![\w-])--?[a-z]+",
                                                                      head.replace("\\fB", ""))}
            # One letter goes without saying in the program's own text of the companion.
            self.assertEqual(told - {"-h", "-v"}, self.options_of(program) - {"-h"}, program)

    def test_they_have_the_version_of_the_program(self):
        for program in PROGRAMS:
            version = run(self.bin / program, "--version")[1].split()[-1]
            self.assertIn(f'"Lyric Lantern {version}"', self.page(program).read_text("utf-8"))


class Completion(CommandTest):
    @classmethod
    def setUpClass(cls):
        super().setUpClass()
        cls.folder = cls.scratch / "tracks"
        (cls.folder / "a folder").mkdir(parents=True)
        for name in ["one.cdg", "Two.CDG", "three.txt", "four"] + [f"s.{kind}" for kind in KINDS]:
            (cls.folder / name).touch()

    def answers(self, *words):
        """What bash offers for the last word."""
        program = words[0]
        script = ('source "$1"; shift; COMP_WORDS=("$@"); COMP_CWORD=$(($# - 1)); '
                  'f=$(complete -p "$1"); f=${f#* -F }; "${f% *}"; printf "%s\\n" "${COMPREPLY[@]}"')
        completions = self.share / "bash-completion/completions"
        code, text = run("bash", "--norc", "-uc", script, "bash", completions / program, *words,
                         cwd=self.folder)
        self.assertEqual(code, 0, text)
        return {line for line in text.splitlines() if line}

    def commands(self):
        return set(re.findall(r"(?m)lantern-tool ([a-z]+) TRACK", self.help_of("lantern-tool")))

    def test_they_offer_every_option(self):
        self.assertEqual(self.answers("lyric-lantern", "-"), self.options_of("lyric-lantern"))
        offered = self.answers("lantern-tool", "-")
        for command in self.commands():
            offered |= self.answers("lantern-tool", command, "--")
        self.assertEqual(offered - {"-h", "-v"}, self.options_of("lantern-tool"))

    def test_they_offer_every_command(self):
        self.assertEqual({word for word in self.answers("lantern-tool", "") if word[0] != "-"},
                         self.commands())
        self.assertEqual(self.answers("lantern-tool", "fr"), {"frame"})

    def test_they_go_into_folders_by_the_short_name_of_home(self):
        home = str(pathlib.Path.home())
        with tempfile.TemporaryDirectory(dir=home, prefix="lantern-songs-") as songs:
            (pathlib.Path(songs) / "one.cdg").touch()
            short = "~/" + pathlib.Path(songs).name
            self.assertEqual(self.answers("lyric-lantern", short[:-1]), {short})
            self.assertEqual(self.answers("lyric-lantern", short + "/"), {short + "/one.cdg"})

    def test_they_offer_folders_and_what_can_be_played(self):
        tracks = {"a folder", "one.cdg", "Two.CDG"} | {f"s.{kind}" for kind in KINDS}
        self.assertEqual(self.answers("lyric-lantern", ""), tracks)
        self.assertEqual(self.answers("lantern-tool", "info", ""), tracks)
        self.assertEqual(self.answers("lantern-tool", "frame", "Tw"), {"Two.CDG"})

    def test_they_offer_nothing_where_nothing_fits(self):
        self.assertEqual(self.answers("lyric-lantern", "one.cdg", ""), set())
        self.assertEqual(self.answers("lantern-tool", "frame", "one.cdg", "--at", ""), set())
        self.assertIn("four", self.answers("lantern-tool", "frame", "one.cdg", "--out", ""))


if __name__ == "__main__":
    unittest.main()
