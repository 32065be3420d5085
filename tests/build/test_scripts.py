# SPDX-License-Identifier: MIT
"""The steps of run.sh and test.sh, with package tools of our own put before the system's."""
import os
import re
import stat
import subprocess
import unittest

from trees import REPOSITORY, TreeTest

DPKG_QUERY = """#!/bin/bash
for name in "${@:4}"; do
    case "$name" in installed-*) echo "installed $name" ;; removed-*) echo "config-files $name" ;; esac
done
exit 1
"""
LOGGED = """#!/bin/bash
echo "%s $*" >> "$CALLS"
exit ${%s:-0}
"""


class Scripts(TreeTest):
    def setUp(self):
        super().setUp()
        self.tool("dpkg-query", DPKG_QUERY)
        self.tool("sudo", "#!/bin/bash\necho \"sudo $*\" >> \"$CALLS\"\n\"$@\"\n")
        self.tool("apt-get", LOGGED % ("apt-get", "APT_RESULT"))
        self.tool("cmake", LOGGED % ("cmake", "CMAKE_RESULT"))
        self.tool("id", "#!/bin/bash\necho ${USER_ID:-0}\n")
        self.calls = os.path.join(self.root, "calls")

    def tool(self, name, text):
        path = "bin/" + name
        self.write(path, text)
        os.chmod(os.path.join(self.root, path), stat.S_IRWXU)

    def step(self, command, packages="installed-a\n", **environment):
        """(exit code, what was said, the tools called)"""
        self.write("packages.txt", packages)
        if os.path.exists(self.calls):
            os.remove(self.calls)
        values = dict(os.environ, PATH=os.path.join(self.root, "bin") + ":" + os.environ["PATH"], CALLS=self.calls,
                      PACKAGE_LIST=os.path.join(self.root, "packages.txt"), **environment)
        script = '. "%s/scripts/common.sh"; TESSERA_DIR="%s"; %s' % (REPOSITORY, self.root, command)
        done = subprocess.run(["bash", "-u", "-c", script], env=values, check=False, stdout=subprocess.PIPE,
                              stderr=subprocess.STDOUT)
        called = ""
        if os.path.exists(self.calls):
            with open(self.calls, encoding="utf-8") as file:
                called = file.read()
        return done.returncode, done.stdout.decode("utf-8"), called

    def test_nothing_missing_asks_for_nothing(self):
        self.assertEqual(self.step("ensure_packages", "# head\n\ninstalled-a # why\ninstalled-b\n"), (0, "", ""))

    def test_missing_packages_are_installed(self):
        code, said, called = self.step("ensure_packages", "installed-a\nlost-b\nremoved-c\n")
        self.assertEqual(code, 0)
        self.assertIn("Installing lost-b removed-c", said)
        self.assertEqual(called, "apt-get update -q\napt-get install -q -y --no-install-recommends lost-b removed-c\n")

    def test_package_whose_name_is_part_of_an_installed_one_is_missing(self):
        self.assertIn("lost-b", self.step("missing_packages installed-lost-b lost-b")[1].split("\n"))

    def test_packages_of_one_way_to_run_are_added(self):
        self.assertIn("lost-wayland", self.step("ensure_packages lost-wayland")[2])

    def test_another_user_goes_through_sudo(self):
        called = self.step("ensure_packages", "lost-b\n", USER_ID="1000")[2]
        self.assertIn("sudo apt-get update -q\n", called)
        self.assertIn("sudo env DEBIAN_FRONTEND=noninteractive apt-get install", called)

    def test_a_failed_fetch_says_what_to_do(self):
        code, said, called = self.step("ensure_packages", "lost-b\n", APT_RESULT="100")
        self.assertEqual(code, 1)
        self.assertIn("check the network", said.splitlines()[-1])
        self.assertNotIn("install", called)

    def test_a_failed_configure_says_what_to_do(self):
        code, said, called = self.step("configure_if_needed dev", CMAKE_RESULT="1")
        self.assertEqual((code, called), (1, "cmake --preset dev -DTESSERA_PRECOMPILED=ON\n"))
        self.assertIn("mend what CMake says", said.splitlines()[-1])

    def test_a_failed_build_says_what_to_do(self):
        code, said, called = self.step("build_targets dev one two", CMAKE_RESULT="1")
        self.assertEqual((code, called), (1, "cmake --build --preset dev --target one two\n"))
        self.assertIn("remove build/dev", said.splitlines()[-1])

    def test_a_configured_build_is_not_configured_again(self):
        self.write("CMakePresets.json", "{}")
        self.write("build/dev/build.ninja", "")
        self.age("CMakePresets.json", 100)
        self.assertEqual(self.step("configure_if_needed dev"), (0, "", ""))

    def test_newer_presets_are_configured_again(self):
        self.write("CMakePresets.json", "{}")
        self.write("build/dev/build.ninja", "")
        self.age("build/dev/build.ninja", 100)
        self.assertEqual(self.step("configure_if_needed dev")[2], "cmake --preset dev -DTESSERA_PRECOMPILED=ON\n")

    def age(self, path, seconds):
        full = os.path.join(self.root, path)
        then = os.stat(full).st_mtime - seconds
        os.utime(full, (then, then))

    def test_a_locale_without_utf8_is_replaced(self):
        self.assertEqual(self.step("use_utf8_locale; echo $LC_ALL", LC_ALL="C")[1], "C.UTF-8\n")

    def test_an_unknown_sanitizer_is_refused(self):
        done = subprocess.run([os.path.join(REPOSITORY, "test.sh"), "--sanitize", "memory"], check=False,
                              stdout=subprocess.PIPE, stderr=subprocess.STDOUT)
        self.assertEqual((done.returncode, done.stdout), (1, b"After --sanitize comes address or thread.\n"))

    def test_package_list_is_one_name_a_line_without_repeats(self):
        with open(os.path.join(REPOSITORY, "packaging", "packages.txt"), encoding="utf-8") as file:
            lines = [line.split("#")[0].strip() for line in file]
        names = [line for line in lines if line]
        self.assertTrue(names)
        self.assertEqual(len(names), len(set(names)))
        for name in names:
            self.assertTrue(re.fullmatch(r"[a-z0-9][a-z0-9+.-]+", name), name)


class Commands(TreeTest):
    """run.sh and test.sh in a tree of their own, where every tool and the program only write down their arguments."""

    def setUp(self):
        super().setUp()
        for name in ("run.sh", "test.sh", "scripts/common.sh", "packaging/packages.txt"):
            with open(os.path.join(REPOSITORY, name), encoding="utf-8") as file:
                self.write(name, file.read())
        writes = "#!/bin/bash\necho \"%s $*\" >> \"$CALLS\"\nexit ${RESULT_%s:-0}\n"
        for path in ("bin/cmake", "bin/ctest", "bin/ninja", "bin/setarch", "build/dev/bin/tessera"):
            name = os.path.basename(path)
            self.write(path, writes % (name, name.upper()))
            os.chmod(os.path.join(self.root, path), stat.S_IRWXU)
        self.write("bin/dpkg-query", "#!/bin/bash\nprintf 'installed %s\\n' \"${@:4}\"\n")
        os.chmod(os.path.join(self.root, "bin/dpkg-query"), stat.S_IRWXU)
        self.write("build/dev/build.ninja", "")
        self.calls = os.path.join(self.root, "calls")

    def call(self, script, *arguments, **environment):
        """(exit code, what was said, lines of the tools called with ROOT for the tree)"""
        if os.path.exists(self.calls):
            os.remove(self.calls)
        values = dict(os.environ, PATH=os.path.join(self.root, "bin") + ":" + os.environ["PATH"], CALLS=self.calls)
        for name in ("DISPLAY", "WAYLAND_DISPLAY"):
            values.pop(name, None)
        values.update(environment)
        done = subprocess.run(["bash", os.path.join(self.root, script), *arguments], env=values, check=False,
                              stdout=subprocess.PIPE, stderr=subprocess.STDOUT)
        with open(self.calls, encoding="utf-8") as file:
            return done.returncode, done.stdout.decode("utf-8"), file.read().replace(self.root, "ROOT").splitlines()

    JOB = ("tessera -platform offscreen --root ROOT/out/root --import ROOT/samples/gear-plate.svg --mark 2 --report "
           "--screenshot ROOT/out/screenshot.png --trace ROOT/out/trace.svg --trace ROOT/out/trace.png "
           "--size 1280x800 --quit")
    BUILD = "cmake --build --preset dev --target tessera_launcher"

    def test_run_without_a_display_marks_the_sample(self):
        self.assertEqual(self.call("run.sh"), (0, "", [self.BUILD, self.JOB]))

    def test_run_headless_with_a_display_marks_the_sample(self):
        self.assertEqual(self.call("run.sh", "--headless", DISPLAY=":7"), (0, "", [self.BUILD, self.JOB]))

    def test_run_headless_begins_with_an_empty_root(self):
        self.write("out/root/left", "")
        self.call("run.sh", "--headless")
        self.assertEqual(os.listdir(os.path.join(self.root, "out/root")), [])

    def test_run_with_a_display_opens_the_sample_and_the_panel(self):
        opened = "tessera --root ROOT/out/desk --import ROOT/samples/gear-plate.svg --panel"
        self.assertEqual(self.call("run.sh", DISPLAY=":7"), (0, "", [self.BUILD, opened]))

    def test_run_keeps_what_the_operator_saved(self):
        self.write("out/desk/saved", "")
        self.call("run.sh", DISPLAY=":7")
        self.assertTrue(os.path.exists(os.path.join(self.root, "out/desk/saved")))

    def test_run_hands_options_on_and_lets_them_win(self):
        called = self.call("run.sh", "--root", "my root", "--keyboard", "full", "--open=a b.mkf", DISPLAY=":7")[2]
        self.assertEqual(called[1], "tessera --root my root --keyboard full --open=a b.mkf --panel")
        called = self.call("run.sh", "--mark", "5", "--import", "x.svg", "--root=r")[2]
        self.assertEqual(called[1], "tessera -platform offscreen --mark 5 --import x.svg --root=r --size 1280x800 --quit")
        called = self.call("run.sh", "--size=800x600", "--mark", "5")[2]
        self.assertTrue(called[1].endswith(" --size=800x600 --mark 5 --root ROOT/out/root --import ROOT/samples/gear-plate.svg --quit"), called)

    def test_run_asks_the_program_for_its_help(self):
        self.assertEqual(self.call("run.sh", "--help", DISPLAY=":7")[2][1:], ["tessera -platform offscreen --help"])

    def test_run_stops_after_a_failed_build(self):
        code, said, called = self.call("run.sh", RESULT_CMAKE="1")
        self.assertEqual((code, called), (1, [self.BUILD]))
        self.assertIn("The build failed: ", said)

    def test_run_tells_of_a_failed_job(self):
        code, said, _ = self.call("run.sh", RESULT_TESSERA="3")
        self.assertEqual(code, 1)
        self.assertTrue(said.startswith("The job did not end well: "), said)

    CTEST = "ctest --test-dir ROOT/build/%s --output-on-failure --no-tests=error --parallel 2"

    def test_test_leaves_out_the_slow_ones(self):
        self.assertEqual(self.call("test.sh", TEST_JOBS="2"),
                         (0, "", ["cmake --build --preset dev --target all", self.CTEST % "dev" + " -LE ^slow$"]))

    def test_test_with_a_label_builds_and_runs_that(self):
        self.assertEqual(self.call("test.sh", "-L", "slow", TEST_JOBS="2")[2],
                         ["ninja -C build/dev -t query tests_label_slow", "cmake --build --preset dev --target tests_label_slow",
                          self.CTEST % "dev" + " -L slow"])

    def test_test_with_several_labels_builds_and_runs_these(self):
        both = "tests_label_unit tests_label_e2e"
        self.assertEqual(self.call("test.sh", "-L", "unit|e2e", "-LE", "^slow$", TEST_JOBS="2")[2],
                         ["ninja -C build/dev -t query " + both, "cmake --build --preset dev --target " + both,
                          self.CTEST % "dev" + " -L unit|e2e -LE ^slow$"])

    def test_test_with_a_label_without_a_target_builds_all(self):
        self.assertIn("cmake --build --preset dev --target all", self.call("test.sh", "-L", "uni", RESULT_NINJA="1")[2])

    def test_test_under_thread_sanitizer_takes_its_label(self):
        called = self.call("test.sh", "--sanitize", "thread", TEST_JOBS="2")[2]
        self.assertEqual(called[0], "cmake --preset tsan -DTESSERA_PRECOMPILED=ON")
        self.assertIn("cmake --build --preset tsan --target tests_label_tsan", called)
        self.assertTrue(called[-1].startswith("setarch ") and called[-1].endswith(self.CTEST % "tsan" + " -L ^tsan$"), called[-1])

    def test_test_under_address_sanitizer_takes_all_but_the_slow_ones(self):
        called = self.call("test.sh", "--sanitize", "address", TEST_JOBS="2")[2]
        self.assertEqual(called, ["cmake --preset asan -DTESSERA_PRECOMPILED=ON", "cmake --build --preset asan --target all",
                                  self.CTEST % "asan" + " -LE ^slow$"])

    def test_test_fails_with_ctest(self):
        self.assertEqual(self.call("test.sh", RESULT_CTEST="8")[0], 8)


if __name__ == "__main__":
    unittest.main()
