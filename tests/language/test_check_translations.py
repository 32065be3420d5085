#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""The check of the translations finds what is missing and nothing else."""
import os
import subprocess
import sys
import tempfile
import unittest

SCRIPT = os.path.join(os.path.dirname(os.path.abspath(__file__)), "..", "..", "scripts", "check-translations")
HEAD = '<?xml version="1.0" encoding="utf-8"?><!DOCTYPE TS><TS version="2.1"><context><name>Tessera</name>'


class CheckTranslations(unittest.TestCase):
    def run_on(self, source, texts=(("运行", "Run"), ("暂停", "Pause")), chinese=()):
        with tempfile.TemporaryDirectory() as root:
            os.makedirs(os.path.join(root, "resources", "translations"))
            os.makedirs(os.path.join(root, "src", "shell"))
            for name, entries in (("en", texts), ("zh_CN", chinese)):
                path = os.path.join(root, "resources", "translations", "tessera_%s.ts" % name)
                with open(path, "w", encoding="utf-8") as file:
                    file.write(HEAD)
                    for key, text in entries:
                        file.write("<message><source>%s</source><translation>%s</translation></message>" % (key, text))
                    file.write("</context></TS>")
            with open(os.path.join(root, "src", "shell", "a.cpp"), "w", encoding="utf-8") as file:
                file.write(source)
            done = subprocess.run([sys.executable, "-B", SCRIPT, root], stdout=subprocess.PIPE, check=False)
            return done.returncode, done.stdout.decode("utf-8")

    def test_a_translated_key_passes(self):
        self.assertEqual(self.run_on('x = LanguageManager::GetLanText("运行");'), (0, ""))

    def test_a_missing_key_is_named_with_its_line(self):
        code, output = self.run_on('\nx = GetLanText("停止");')
        self.assertEqual(code, 1)
        self.assertEqual(output, 'src/shell/a.cpp:2: error: no English text for "停止"\n')

    def test_english_keys_are_checked_too(self):
        self.assertEqual(self.run_on('x = Lan("FlyType");')[0], 1)

    def test_a_key_in_latin_letters_needs_a_chinese_text(self):
        texts = (("FlyType", "Kind"),)
        code, output = self.run_on('x = Lan("FlyType");', texts)
        self.assertEqual(code, 1)
        self.assertEqual(output, 'resources/translations/tessera_zh_CN.ts: error: no Chinese text for "FlyType"\n')
        self.assertEqual(self.run_on('x = Lan("FlyType");', texts, (("FlyType", "类型"),)), (0, ""))

    def test_wrapped_and_split_literals_are_read(self):
        self.assertEqual(self.run_on('x = GetLanText(QStringLiteral("运" // half\n "行"));')[0], 0)
        self.assertEqual(self.run_on('x = GetLanText(QStringLiteral("运" "止"));')[0], 1)

    def test_both_sides_of_a_choice_are_checked(self):
        self.assertEqual(self.run_on('x = GetLanText(on ? "运行" : "停止");')[0], 1)
        self.assertEqual(self.run_on('x = GetLanText(on() ? "运行" : "暂停"); y = "停止";')[0], 0)

    def test_tables_of_keys_are_checked(self):
        table = 'constexpr char const* k[] = {"运行", "停止"};\nx = GetLanText(k[i]);'
        self.assertEqual(self.run_on(table)[0], 1)
        self.assertEqual(self.run_on(table.replace("停止", "暂停"))[0], 0)

    def test_lines_that_are_not_shown_are_left_out(self):
        table = 'char const* k = "运行";\nlog->ShowNode(4, "按钮");\nsend("协议"); // not shown\nx = GetLanText(k);'
        self.assertEqual(self.run_on(table), (0, ""))

    def test_comments_are_no_keys(self):
        source = '// GetLanText("停止")\n/* Lan("停止") */\nx = "/* no comment"; y = Lan("运行");'
        self.assertEqual(self.run_on(source)[0], 0)

    def test_a_file_without_table_may_hold_any_text(self):
        self.assertEqual(self.run_on('send("停止");')[0], 0)

    def test_an_empty_or_double_translation_is_found(self):
        self.assertEqual(self.run_on("", (("运行", ""),))[0], 1)
        self.assertEqual(self.run_on("", (("运行", "Run"), ("运行", "Go")))[0], 1)

    def test_a_folder_without_texts_is_a_wrong_use(self):
        with tempfile.TemporaryDirectory() as root:
            done = subprocess.run([sys.executable, "-B", SCRIPT, root], stderr=subprocess.DEVNULL, check=False)
            self.assertEqual(done.returncode, 2)


if __name__ == "__main__":
    unittest.main()
