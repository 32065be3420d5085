# SPDX-License-Identifier: MIT
"""scripts/check-texts finds missing licence lines and leftovers, and nothing else."""
import os
import subprocess
import unittest

from trees import TreeTest

MIT = "// SPDX-License-Identifier: MIT\n"
GPL = "// SPDX-License-Identifier: GPL-2.0-or-later\n"
CLEAN = {
    "src/run/a.cpp": MIT + "auto text = line.simplified(); // Simplified Chinese\nedit->setPlaceholderText(text);\n",
    "src/run/a.ui": "<ui><property name=\"placeholderText\"/></ui>\n",
    "simengine/card/a.cpp": GPL,
    "simengine/simcontrol.h": MIT,
    "tools/run-it": "#!/bin/bash\n# SPDX-License-Identifier: MIT\n",
    "docs/a.md": "# A page\nThe parts 2 and 3 stay as they are, forever and now.\n",
    "tests/a/CMakeLists.txt": "# SPDX-License-Identifier: MIT\n",
}

# The words are cut here so that this file itself is clean.
WORDS = (
    "TO" + "DO", "to" + "do", "FIX" + "ME", "simpl" + "ified", "a st" + "ub", "st" + "ubs", "place" + "holder", "dum" + "my",
    "dum" + "mies", "not yet impl" + "emented", "for n" + "ow", "For\nn" + "ow", "Part 1" + ".3", "parts 12" + ".1",
    "the sp" + "ec", "The sp" + "ecification", "the document s" + "ays",
)


class CheckTexts(TreeTest):
    def setUp(self):
        super().setUp()
        self.write_all(CLEAN)

    def test_clean_tree_passes(self):
        self.assertEqual(self.run_script("check-texts"), (0, "%d files are in order\n" % len(CLEAN)))

    def test_each_word_is_found_in_each_kind_of_file(self):
        for path, head in (("src/run/x.cpp", MIT), ("docs/x.md", "#\n"), ("simengine/x.h", GPL), ("src/run/x.ui", "<ui/>\n")):
            for word in WORDS:
                with self.subTest(word, path=path):
                    self.write(path, head + "// here is " + word + ".\n")
                    code, output = self.run_script("check-texts")
                    self.assertEqual(code, 1)
                    self.assertIn(path + ":2: error:", output)
                    self.assertEqual(output.count("error:"), 1)
            self.write(path, head)

    def test_missing_license_line_is_found(self):
        for path in ("src/run/x.cpp", "src/run/x.h", "tools/x.py", "tests/x/CMakeLists.txt"):
            with self.subTest(path):
                self.write(path, "\n")
                code, output = self.run_script("check-texts")
                self.write(path, "# SPDX-License-Identifier: MIT\n")
                self.assertEqual(code, 1)
                self.assertIn(path + ":1: error: no SPDX line", output)

    def test_script_without_suffix_needs_the_line_too(self):
        self.write("scripts/x", "#!/bin/bash\n")
        self.assertEqual(self.run_script("check-texts")[0], 1)

    def test_wrong_license_is_found(self):
        for path, right, wrong in (("simengine/card/x.h", GPL, MIT), ("src/run/x.h", MIT, GPL), ("simengine/simcontrol.h", MIT, GPL)):
            with self.subTest(path):
                self.write(path, wrong)
                code, output = self.run_script("check-texts")
                self.write(path, right)
                self.assertEqual(code, 1)
                self.assertIn(path + ":1: error: the licence here is", output)

    def test_files_that_git_ignores_are_left_alone(self):
        self.write(".gitignore", "/src/ignored/\n")
        self.write("src/ignored/x.cpp", "\n")
        self.assertEqual(self.run_script("check-texts")[0], 1)
        subprocess.run(["git", "init", "-q", self.root], check=True)
        self.assertEqual(self.run_script("check-texts")[0], 0)

    def test_empty_tree_is_not_called_clean(self):
        self.root = os.path.join(self.root, "docs")
        self.assertEqual(self.run_script("check-texts")[0], 2)


if __name__ == "__main__":
    unittest.main()
