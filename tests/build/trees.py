# SPDX-License-Identifier: MIT
"""Small source trees on disk and the scripts run on them."""
import os
import shutil
import subprocess
import sys
import tempfile
import unittest

REPOSITORY = os.path.dirname(os.path.dirname(os.path.dirname(os.path.abspath(__file__))))


def run(*command):
    """(exit code, output of both channels)"""
    done = subprocess.run(command, stdout=subprocess.PIPE, stderr=subprocess.STDOUT, check=False)
    return done.returncode, done.stdout.decode("utf-8")


class TreeTest(unittest.TestCase):
    def setUp(self):
        self.root = tempfile.mkdtemp(prefix="tessera-tree-")
        self.addCleanup(shutil.rmtree, self.root)

    def write(self, path, text):
        full = os.path.join(self.root, path)
        os.makedirs(os.path.dirname(full), exist_ok=True)
        with open(full, "w", encoding="utf-8") as file:
            file.write(text)

    def write_all(self, files):
        for path, text in files.items():
            self.write(path, text)

    def run_script(self, name, *arguments):
        return run(sys.executable, os.path.join(REPOSITORY, "scripts", name), *arguments, self.root)
