# SPDX-License-Identifier: MIT
"""scripts/check-includes lets the allowed through and stops each forbidden include."""
import unittest

from trees import TreeTest

CLEAN = {
    "src/engine/imarkcardbase.h": "#include <QObject>\n#include \"engine/marktypes.h\"\n",
    "src/engine/marktypes.h": "",
    "src/support/durablefile.h": "#include <QString>\n",
    "src/support/durablefile.cpp": "#include \"support/durablefile.h\"\n",
    "src/shell/CMakeLists.txt": "tessera_folder(shell SOURCES mainwindow.h USES run)\n",
    "src/shell/mainwindow.h": "#include \"run/form_marking.h\"\n",
    "src/run/CMakeLists.txt": "tessera_folder(run SOURCES form_marking.h)\n",
    "src/run/form_marking.h": "#include \"engine/marktypes.h\"\n#include \"support/durablefile.h\"\n"
                              "#include \"shell/mainwindow.h\"\n",
    "src/files/CMakeLists.txt": "tessera_folder(files SOURCES a.cpp)\n",
    "src/files/a.cpp": "",
    "src/files/copyfile.h": "",
    "simengine/card/cardcore.h": "#include \"engine/imarkcardbase.h\"\n#include \"support/durablefile.h\"\n",
    "simengine/card/cardcore.cpp": "#include \"simengine/card/cardcore.h\"\n#include \"cardcore.h\"\n",
    "simengine/simcontrol.h": "",
    "launcher/main.cpp": "#include \"simengine/simcontrol.h\"\n#include \"shell/mainwindow.h\"\n",
    "tools/tessera-ctl/main.cpp": "#include <QLocalSocket>\n",
    "tests/card/tst_card.cpp": "#include \"simengine/card/cardcore.h\"\n",
}

# name, file, include line, part of the message
FORBIDDEN = (
    ("front_end_includes_the_simulator", "src/run/x.cpp", '#include "simengine/card/cardcore.h"', "nothing of simengine/"),
    ("front_end_includes_the_control", "src/run/x.cpp", '#include "simengine/simcontrol.h"', "nothing of simengine/"),
    ("front_end_reaches_up", "src/run/x.cpp", '#include "../../simengine/card/cardcore.h"', "nothing of simengine/"),
    ("front_end_includes_what_is_not_there", "src/run/x.cpp", '#include "simengine/later.h"', "nothing of simengine/"),
    ("front_end_in_angle_brackets", "src/run/x.cpp", "#include <simengine/card/cardcore.h>", "nothing of simengine/"),
    ("front_end_with_spaces", "src/run/x.cpp", '  #  include "simengine/card/cardcore.h"', "nothing of simengine/"),
    ("front_end_includes_the_launcher", "src/run/x.cpp", '#include "launcher/options.h"', "nothing of launcher/"),
    ("engine_includes_the_front_end", "src/engine/x.h", '#include "shell/mainwindow.h"', "itself alone"),
    ("engine_includes_support", "src/engine/x.h", '#include "support/durablefile.h"', "itself alone"),
    ("engine_includes_the_simulator", "src/engine/x.h", '#include "simengine/simcontrol.h"', "nothing of simengine/"),
    ("support_includes_engine", "src/support/x.h", '#include "engine/marktypes.h"', "itself alone"),
    ("support_includes_the_front_end", "src/support/x.h", '#include "run/form_marking.h"', "itself alone"),
    ("simulator_includes_the_shell", "simengine/card/x.cpp", '#include "shell/mainwindow.h"', "engine/ and support/"),
    ("simulator_reaches_up", "simengine/card/x.cpp", '#include "../../src/run/form_marking.h"', "engine/ and support/"),
    ("simulator_names_src", "simengine/card/x.cpp", '#include "src/run/form_marking.h"', "engine/ and support/"),
    ("simulator_includes_the_launcher", "simengine/card/x.cpp", '#include "launcher/options.h"', "engine/ and support/"),
    ("launcher_includes_more", "launcher/x.cpp", '#include "simengine/card/cardcore.h"', "simcontrol.h"),
    ("tool_includes_the_simulator", "tools/a/x.cpp", '#include "simengine/simcontrol.h"', "nothing"),
    ("folder_not_named_after_uses", "src/run/x.cpp", '#include "files/copyfile.h"', 'does not name "files"'),
)


class CheckIncludes(TreeTest):
    def setUp(self):
        super().setUp()
        self.write_all(CLEAN)

    def test_clean_tree_passes(self):
        self.assertEqual(self.run_script("check-includes", "--cycles"), (0, "the layers hold\n"))

    def test_quiet_says_nothing(self):
        self.assertEqual(self.run_script("check-includes", "--quiet"), (0, ""))

    def test_each_forbidden_include_fails(self):
        for name, path, line, message in FORBIDDEN:
            with self.subTest(name):
                self.write(path, "\n" + line + "\n")
                code, output = self.run_script("check-includes", "--quiet")
                self.write(path, "")
                self.assertEqual(code, 1)
                self.assertIn(path + ":2: error:", output)
                self.assertIn(message, output)
                self.assertEqual(output.count("\n"), 1, "one finding, not more")

    def test_commented_include_is_none(self):
        self.write("src/run/x.cpp", '// #include "simengine/simcontrol.h"\n/*\n#include "simengine/simcontrol.h"\n*/\n')
        self.assertEqual(self.run_script("check-includes", "--quiet"), (0, ""))

    def test_folder_named_after_uses_passes(self):
        self.write("src/run/CMakeLists.txt", "tessera_folder(run\n  SOURCES x.cpp # USES nothing\n  USES files\n  LIBS z)\n")
        self.write("src/run/x.cpp", '#include "files/copyfile.h"\n')
        self.assertEqual(self.run_script("check-includes", "--cycles", "--quiet"), (0, ""))

    def test_circle_of_folders_fails_with_cycles_only(self):
        self.write("src/run/CMakeLists.txt", "tessera_folder(run SOURCES x.cpp USES files)\n")
        self.write("src/files/CMakeLists.txt", "tessera_folder(files SOURCES x.cpp USES run)\n")
        self.assertEqual(self.run_script("check-includes", "--quiet"), (0, ""))
        code, output = self.run_script("check-includes", "--cycles")
        self.assertEqual(code, 1)
        self.assertIn("files > run > files", output)

    def test_unknown_option_is_refused(self):
        self.assertEqual(self.run_script("check-includes", "--cycle")[0], 2)


if __name__ == "__main__":
    unittest.main()
