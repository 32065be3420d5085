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
        self.assertEqual((code, called), (1, "cmake --preset dev\n"))
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
        self.assertEqual(self.step("configure_if_needed dev")[2], "cmake --preset dev\n")

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


if __name__ == "__main__":
    unittest.main()
