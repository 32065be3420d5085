# SPDX-License-Identifier: MIT
"""The functions of cmake/ on small projects of their own: what they refuse, and that a forbidden include stops the build."""
import json
import os
import shlex
import subprocess
import unittest

from trees import REPOSITORY, TreeTest, run

PROJECT = """
cmake_minimum_required(VERSION 3.25)
project(Tree VERSION 0.0.1 LANGUAGES CXX)
list(APPEND CMAKE_MODULE_PATH "%s/cmake")
include(CTest)
include(TesseraToolchain)
include(TesseraDependencies)
include(TesseraFolders)
include(TesseraChecks)
add_subdirectory(src)
add_subdirectory(simengine)
tessera_join_libraries()
""" % REPOSITORY

TREE = {
    "CMakeLists.txt": PROJECT,
    "src/CMakeLists.txt": "add_subdirectory(support)\nadd_subdirectory(engine)\nadd_subdirectory(run)\n",
    "src/support/CMakeLists.txt": "tessera_support_library(SOURCES version.cpp)\n",
    "src/support/version.cpp": "const char* version() { return TESSERA_VERSION; }\n",
    "src/engine/CMakeLists.txt": "tessera_engine_headers()\n",
    "src/engine/marktypes.h": "#pragma once\nenum MarkState { ms_Idle };\n",
    "src/run/CMakeLists.txt": "tessera_folder(run SOURCES run.cpp run.h)\n",
    "src/run/run.h": "#pragma once\n#include \"engine/marktypes.h\"\nMarkState state();\n",
    "src/run/run.cpp": "#include \"run/run.h\"\nMarkState state() { return ms_Idle; }\n",
    "simengine/CMakeLists.txt": "tessera_add_subfolders()\n",
    "simengine/card/CMakeLists.txt": "sim_folder(card SOURCES card.cpp)\n",
    "simengine/card/card.cpp": "#include \"engine/marktypes.h\"\nMarkState cardState() { return ms_Idle; }\n",
}

# name, file, its new text, part of CMake's message
REFUSED = (
    ("folder_with_a_misspelled_keyword", "src/run/CMakeLists.txt", "tessera_folder(run SOURCES run.cpp USE files)",
     "tessera_folder(run): unknown keyword: USE"),
    ("test_with_a_misspelled_keyword", "src/run/CMakeLists.txt", "tessera_test(x SOURCES x.cpp LABEL unit)",
     "tessera_test(x): unknown keyword: LABEL"),
    ("folder_with_words_before_the_first_keyword", "src/run/CMakeLists.txt", "tessera_folder(run run.cpp SOURCES run.cpp)",
     "tessera_folder(run): unknown argument: run.cpp"),
    ("folder_without_sources", "src/run/CMakeLists.txt", "tessera_folder(run LIBS Qt5::Core)",
     "tessera_folder(run): SOURCES is missing"),
    ("folder_with_an_empty_keyword", "src/run/CMakeLists.txt", "tessera_folder(run SOURCES run.cpp USES)",
     "tessera_folder(run): nothing given for: USES"),
    ("simulator_folder_with_words_first", "simengine/card/CMakeLists.txt", "sim_folder(card x SOURCES card.cpp)",
     "sim_folder(card): unknown argument: x"),
    ("engine_with_an_argument", "src/engine/CMakeLists.txt", "tessera_engine_headers(x)",
     "tessera_engine_headers: unknown argument: x"),
)


class FolderFunctions(TreeTest):
    def setUp(self):
        super().setUp()
        self.write_all(TREE)
        self.build = os.path.join(self.root, "out")

    def configure(self):
        """(exit code, output)"""
        return run("cmake", "-G", "Ninja", "-S", self.root, "-B", self.build, "-DCMAKE_EXPORT_COMPILE_COMMANDS=ON")

    def configure_well(self):
        code, output = self.configure()
        self.assertEqual(code, 0, output)

    def make(self, *targets):
        return run("ninja", "-C", self.build, *targets)

    def compile(self, path):
        """What the compiler says of the file by its target's include folders, the check of the sources left out."""
        self.configure_well()
        database = os.path.join(self.build, "compile_commands.json")
        with open(database, encoding="utf-8") as file:
            entry = next(entry for entry in json.load(file) if entry["file"] == os.path.join(self.root, path))
        done = subprocess.run(shlex.split(entry["command"]) + ["-fsyntax-only"], cwd=entry["directory"], check=False,
                              stdout=subprocess.PIPE, stderr=subprocess.STDOUT)
        return done.stdout.decode("utf-8")

    def check_header_alone(self, header, fails):
        self.write("CMakeLists.txt", PROJECT + "compile_headers_alone(alone ROOT ${PROJECT_SOURCE_DIR}/src FOLDER engine)\n")
        self.configure_well()
        code, output = self.make("alone")
        self.assertEqual(code != 0, fails, output)
        self.assertIn("engine_" + header + ".h.cpp", output)

    def test_clean_tree_builds_both_libraries(self):
        self.configure_well()
        code, output = self.make()
        self.assertEqual(code, 0, output)
        for library in ("libtessera.so", "libmarkengine.so", "libtessera-support.so"):
            self.assertTrue(os.path.isfile(os.path.join(self.build, "lib", library)), library)

    def test_wrong_arguments_are_refused(self):
        for name, path, text, message in REFUSED:
            with self.subTest(name):
                self.write(path, text + "\n")
                code, output = self.configure()
                self.write(path, TREE[path])
                self.assertNotEqual(code, 0)
                if message:
                    self.assertIn(message, " ".join(output.split()))

    def test_forbidden_include_stops_the_build_of_any_object(self):
        self.write("src/run/run.cpp", "#include \"../../simengine/card/card.h\"\n")
        self.write("simengine/card/card.h", "\n")
        self.configure_well()
        code, output = self.make("sim_card")
        self.assertNotEqual(code, 0)
        self.assertIn("src/run/run.cpp:1: error: includes \"../../simengine/card/card.h\"", output)

    def test_simulators_include_folders_do_not_show_the_front_end(self):
        self.write("simengine/card/card.cpp", "#include \"run/run.h\"\n")
        self.assertIn("run/run.h: No such file", self.compile("simengine/card/card.cpp"))
        self.write("simengine/card/card.cpp", "#include \"engine/marktypes.h\"\n")
        self.assertEqual(self.compile("simengine/card/card.cpp"), "")

    def test_front_ends_include_folders_do_not_show_the_simulator(self):
        self.write("simengine/card/card.h", "\n")
        self.write("src/run/run.cpp", "#include \"simengine/card/card.h\"\n")
        self.assertIn("simengine/card/card.h: No such file", self.compile("src/run/run.cpp"))
        self.write("src/run/run.cpp", TREE["src/run/run.cpp"])
        self.assertEqual(self.compile("src/run/run.cpp"), "")

    def test_header_that_leans_on_another_does_not_compile_alone(self):
        self.write("src/engine/leaning.h", "#pragma once\ninline MarkState leaning() { return ms_Idle; }\n")
        self.check_header_alone("leaning", fails=True)

    def test_header_without_a_guard_does_not_compile_alone(self):
        self.write("src/engine/unguarded.h", "struct Unguarded {};\n")
        self.check_header_alone("unguarded", fails=True)

    def test_sound_headers_compile_alone(self):
        self.check_header_alone("marktypes", fails=False)


if __name__ == "__main__":
    unittest.main()
