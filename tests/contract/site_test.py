"""The pages as a site: all of them are there, links lead somewhere, and nothing is asked of other hosts."""
import importlib.machinery
import importlib.util
import shutil
import subprocess
import tempfile
import unittest
from pathlib import Path

import yaml
from mac import ROOT

LOADER = importlib.machinery.SourceFileLoader("site_script", str(ROOT / "scripts/site"))
SITE = importlib.util.module_from_spec(importlib.util.spec_from_loader("site_script", LOADER))
LOADER.exec_module(SITE)


class Pages(unittest.TestCase):
    def test_are_all_in_the_navigation(self):
        settings = yaml.safe_load((ROOT / "packaging/site.yml").read_text())
        listed = list(SITE.pages_of(settings["nav"]))
        here = {str(path.relative_to(ROOT)) for folder in (".", "docs", "docs/decisions", "packaging/contract", "worlds")
                for path in (ROOT / folder).glob("*.md")}
        here |= {str(path.relative_to(ROOT)) for path in (ROOT / "clients").glob("*/README.md")}
        self.assertEqual(sorted(here), sorted(listed))

    @unittest.skipUnless(shutil.which("mkdocs"), "there is no mkdocs here")
    def test_make_a_site_without_faults(self):
        with tempfile.TemporaryDirectory(prefix="site-") as folder:
            done = subprocess.run([ROOT / "scripts/site", Path(folder) / "site"], capture_output=True, text=True,
                                  timeout=250, check=False)
            self.assertEqual((0, ""), (done.returncode, done.stderr), done.stdout)
            index = Path(folder) / "site/search/search_index.json"
            self.assertIn("no unambiguous target keyboard window", index.read_text())


class Faults(unittest.TestCase):
    def faults_of(self, **pages):
        with tempfile.TemporaryDirectory(prefix="site-") as name:
            folder = Path(name)
            for page, text in pages.items():
                (folder / page.replace("_", ".")).write_text(text)
            return list(SITE.faults_of(folder))

    def test_are_links_that_lead_nowhere(self):
        self.assertEqual(
            ["a.html links to c.html", "a.html links to b.html#there", "a.html links to #nowhere"],
            self.faults_of(a_html='<a href="b.html#here">1</a><a href="c.html">2</a><a href="b.html#there">3</a>'
                                  '<a href="#nowhere">4</a><a href="https://example.com/">5</a>',
                           b_html='<p id="here">'))

    def test_are_what_other_hosts_are_asked_for(self):
        self.assertEqual(
            ["a.html fetches https://example.com/a.js", "a.html fetches //example.com/a.css",
             "b.css fetches url(https://example.com/font"],
            self.faults_of(a_html='<script src="https://example.com/a.js"></script>'
                                  '<link href="//example.com/a.css"><img src="c.png">',
                           b_css="a { src: url(https://example.com/font) } b { src: url(c.png) }"))


if __name__ == "__main__":
    unittest.main()
