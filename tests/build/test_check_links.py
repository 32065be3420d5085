# SPDX-License-Identifier: MIT
"""scripts/check-links on small trees."""
import unittest

from trees import TreeTest, run


class CheckLinks(TreeTest):
    def check(self, page, **more):
        """(exit code, what was found) for a tree with docs/a.md, docs/other.md and README.md, which is `page`."""
        run("git", "init", "-q", self.root)
        self.write_all({"docs/a.md": "# First part\n\n## Twice\n\n## Twice\n", "docs/b c.md": "", "README.md": page})
        self.write_all(more)
        run("git", "-C", self.root, "add", "-A")
        return self.run_script("check-links")

    def test_links_that_lead_somewhere_pass(self):
        for link in ("docs/a.md", "docs", "docs/", "./docs/a.md", "/docs/a.md", "docs/a.md#first-part", "docs/a.md#twice-1",
                     "#here", "docs/b%20c.md", "https://example.org/none.md", "mailto:a@example.org"):
            self.assertEqual(self.check("# Here\n\n[text](%s)\n" % link), (0, ""), link)

    def test_links_that_lead_nowhere_are_told(self):
        for link, wrong in (("docs/none.md", "nothing that is tracked"), ("../README.md", "nothing that is tracked"),
                            ("docs/a.md#second", "no heading"), ("#there", "no heading"),
                            ("docs/a.md#twice-2", "no heading")):
            self.assertEqual(self.check("# Here\n\n[text](%s)\n" % link), (1, "README.md:3: %s: leads to %s\n" % (link, wrong)))

    def test_pictures_titles_and_definitions_are_links(self):
        for line in ("![a picture](none.png)", "[text](none.png \"title\")", "[text](<none.png>)", "[name]: none.png",
                     "[![a](docs/a.md)](none.png)"):
            self.assertEqual(self.check(line + "\n"), (1, "README.md:1: none.png: leads to nothing that is tracked\n"), line)

    def test_every_link_of_a_line_is_looked_at(self):
        self.assertEqual(self.check("[a](docs/a.md) [b](x.md) [c](y.md)\n")[1].count("nothing that is tracked"), 2)

    def test_a_page_is_the_place_its_links_start_from(self):
        self.assertEqual(self.check("", **{"docs/page.md": "[a](a.md)\n[up](../README.md)\n"}), (0, ""))
        code, said = self.check("", **{"docs/page.md": "[a](docs/a.md)\n"})
        self.assertEqual((code, said), (1, "docs/page.md:1: docs/a.md: leads to nothing that is tracked\n"))

    def test_code_is_no_link(self):
        self.assertEqual(self.check("`[a](none.md)`\n\n```\n[a](none.md)\n```\n"), (0, ""))
        self.assertEqual(self.check("```\ncode\n```\n[a](none.md)\n")[0], 1)

    def test_a_file_that_is_not_tracked_does_not_count(self):
        self.check("")
        self.write("loose.md", "")
        self.write("README.md", "[a](loose.md)\n")
        self.assertEqual(self.run_script("check-links")[0], 1)

    def test_wrong_use_is_told(self):
        self.assertEqual(self.run_script("check-links", "more")[0], 2)


if __name__ == "__main__":
    unittest.main()
