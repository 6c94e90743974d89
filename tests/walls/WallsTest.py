"""The check of the walls can fail. Argument: the check."""

import pathlib
import subprocess
import sys
import tempfile
import unittest

CHECK = sys.argv.pop(1)
PICTURE = """<!-- rooms -->
| Room | May include |
|---|---|
| `app` | `app/item` `base` `Qt` |
| `app/item` | `base` |
| `base` | |
<!-- rooms -->
"""


class Walls(unittest.TestCase):
    def setUp(self):
        self.root = pathlib.Path(self.enterContext(tempfile.TemporaryDirectory()))
        self.write("docs/architecture.md", PICTURE)

    def write(self, path, text):
        file = self.root / path
        file.parent.mkdir(parents=True, exist_ok=True)
        file.write_text(text)

    def check(self):
        done = subprocess.run([CHECK, self.root], text=True, capture_output=True, timeout=30)
        return done.returncode, done.stdout + done.stderr

    def assertRefused(self, reason):
        status, said = self.check()
        self.assertEqual(status, 1, said)
        self.assertIn(reason, said)

    def testAnArrowOfThePictureIsAllowed(self):
        self.write("app/main.cpp", '#include <QWidget>\n#include "app/item/Item.h"\n')
        self.write("app/item/Item.h", '#include "app/item/Menu.h"\n#include "base/Text.h"\n')
        self.assertEqual(self.check()[0], 0)

    def testAnIncludeAgainstTheArrowsIsRefused(self):
        self.write("base/Text.h", '#pragma once\n\n#include "app/main.h"\n')
        self.assertRefused("base/Text.h:3: base may not know app (app/main.h)")

    def testASubRoomMayNotKnowWhatHoldsIt(self):
        self.write("app/item/Item.h", '#include "app/main.h"\n')
        self.assertRefused("app/item may not know app")

    def testTheToolkitStaysWhereThePictureHasIt(self):
        self.write("base/Text.cpp", "#include <QString>\n")
        self.assertRefused("base may not know Qt (QString)")

    def testAFileOutsideEveryRoomIsRefused(self):
        self.write("shed/Tool.cpp", '#include "base/Text.h"\n')
        self.assertRefused("shed/Tool.cpp: stands in no room")

    def testACircleInThePictureItselfIsRefused(self):
        self.write("docs/architecture.md", PICTURE.replace("| `base` | |", "| `base` | `app` |"))
        self.assertRefused("circle: app -> app/item -> base -> app")

    def testARoomThatThePictureNamesTwiceIsRefused(self):
        self.write("docs/architecture.md", PICTURE.replace("| `base` | |", "| `base` | |\n| `base` | `Qt` |"))
        self.assertRefused("names base twice")

    def testAPictureWithoutATableIsRefused(self):
        self.write("docs/architecture.md", "Rooms.\n")
        self.assertRefused("no table of rooms")


unittest.main()
