#!/usr/bin/env python3
"""What the desktop knows of the program and its kinds of files: told by the program, or by an installation.

usage: file_types_test.py PROGRAM
Needs gio, update-mime-database and update-desktop-database.
"""

import os
import shutil
import subprocess
import unittest
from pathlib import Path

from program_case import DEADLINE, PROGRAM, TITLE, ProgramTest, picture, wait_for

ROOT = Path(__file__).resolve().parents[2]
ENTRY = "applications/com.talvorine.Vistrel.desktop"
PACKAGE = "mime/packages/com.talvorine.Vistrel.xml"
ICON = "icons/hicolor/scalable/apps/com.talvorine.Vistrel.svg"
TYPES = {".iff": "image/x-ilbm", ".tff": "image/x-vistrel-graphic", ".tmg": "image/x-vistrel-graphic2",
         ".psd": "image/vnd.adobe.photoshop"}
CONTENTS = {(b"FORM", b"ILBM"): "image/x-ilbm", (b"LIST", b"ILBM"): "image/x-vistrel-graphic",
            (b"FORM", b"MIPM"): "image/x-vistrel-graphic"}


class FileTypesTest(ProgramTest):
    def setUp(self):
        super().setUp()
        self.data = Path(self.folder.name, "data")
        # The system's types, and none of the machine's programs: this one may be installed on it.
        system = Path(self.folder.name, "system")
        system.mkdir()
        (system / "mime").symlink_to("/usr/share/mime")
        self.look_in(system)

    def look_in(self, *folders):
        """Has these hold what is installed for all users."""
        self.screen.environment["XDG_DATA_DIRS"] = ":".join(str(folder) for folder in folders)

    def run_program(self):
        """Starts it without a file, and ends it once it shows its window."""
        program = subprocess.Popen([PROGRAM], env=self.screen.environment)
        try:
            wait_for(lambda: self.screen.windows(TITLE), "the main window")
        finally:
            program.kill()
            program.wait()

    def register(self):
        self.run_program()
        # What the program starts beside itself writes these.
        wait_for((self.data / "mime/version").exists, "the types to be gathered")
        wait_for((self.data / "applications/mimeinfo.cache").exists, "the entries to be gathered")

    def files(self):
        """What is below the data folder, with content and time of change."""
        return {path: (path.read_bytes(), path.stat().st_mtime_ns) for path in self.data.rglob("*") if path.is_file()}

    def content_type(self, path):
        done = subprocess.run(["gio", "info", "-a", "standard::content-type", path], env=self.screen.environment,
                              capture_output=True, text=True, check=True, timeout=DEADLINE)
        return done.stdout.split()[-1]

    def test_every_file_has_the_type_of_its_extension_or_content(self):
        self.register()
        for sample in sorted((ROOT / "samples").iterdir()):
            content = sample.read_bytes()
            for extension, expected in TYPES.items():
                for name in ("a" + extension, "B" + extension.upper()):
                    self.assertEqual(self.content_type(self.path(name, content)), expected, f"{sample.name} as {name}")
            expected = CONTENTS.get((content[:4], content[8:12]), "image/vnd.adobe.photoshop")
            self.assertEqual(self.content_type(self.path("without", content)), expected, sample.name)
        for (group, form), expected in CONTENTS.items():
            content = group + picture()[4:8] + form + picture()[12:]
            self.assertEqual(self.content_type(self.path("without", content)), expected, (group, form))

    def test_what_is_there_stays(self):
        self.register()
        subprocess.run(["desktop-file-validate", self.data / ENTRY], check=True)
        self.assertIn(f"\nTryExec={os.path.realpath(PROGRAM)}\n", (self.data / ENTRY).read_text())
        self.assertEqual((self.data / PACKAGE).read_text(), (ROOT / "share" / "com.talvorine.Vistrel.xml").read_text())
        before = self.files()
        self.assertIn(self.data / ICON, before)
        self.run_program()
        self.assertEqual(self.files(), before)

    def test_an_installation_into_the_users_own_folder_stays_as_it_is(self):
        (self.data / ENTRY).parent.mkdir(parents=True)
        shutil.copy(ROOT / "share" / Path(ENTRY).name, self.data / ENTRY)
        before = self.files()
        self.run_program()
        self.assertEqual(self.files(), before)

    def test_an_installation_takes_the_place_of_what_was_told(self):
        self.register()
        # The user's own folder among those of all users is no installation.
        again = Path(self.folder.name, "again")
        again.symlink_to(self.data)
        self.look_in(again)
        self.run_program()
        self.assertTrue((self.data / ENTRY).exists())
        installed = Path(self.folder.name, "installed")
        (installed / ENTRY).parent.mkdir(parents=True)
        shutil.copy(ROOT / "share" / Path(ENTRY).name, installed / ENTRY)
        self.look_in(again, installed)
        own = self.data / "applications" / "own.desktop"
        own.write_text("[Desktop Entry]\n")
        for _ in range(2):
            self.run_program()
            self.assertEqual([name for name in (ENTRY, PACKAGE, ICON) if (self.data / name).exists()], [])
        self.assertTrue(own.exists())
        globs = self.data / "mime" / "globs2"
        wait_for(lambda: not globs.exists() or "vistrel" not in globs.read_text(), "the types to be forgotten")


if __name__ == "__main__":
    unittest.main(verbosity=2)
