#!/usr/bin/env python3
"""Makes the documents' site and opens every page in Chromium from its folder, as a reader does.

Every link leads to a file of the site, and to a place that exists in it; every picture is shown; no page writes an error
to the console or requests anything but files.
"""
import json
import os
import pathlib
import subprocess
import tempfile
import unittest
import urllib.parse

from selenium import webdriver

PROJECT = pathlib.Path(__file__).resolve().parents[3]
CONTENT = """
const all = (selector) => Array.from(document.querySelectorAll(selector));
return {
  links: all("a[href]").map((link) => link.href),
  places: all("[id], a[name]").map((element) => element.id || element.name),
  broken: all("img").filter((image) => !image.complete || !image.naturalWidth).map((image) => image.src),
};
"""


def start_browser(profile):
    options = webdriver.ChromeOptions()
    for argument in ("headless", "disable-gpu", "disable-dev-shm-usage", "disable-background-networking", "no-first-run",
                     f"user-data-dir={profile}", *(["no-sandbox"] if os.geteuid() == 0 else [])):
        options.add_argument("--" + argument)
    options.set_capability("goog:loggingPrefs", {"browser": "ALL", "performance": "ALL"})
    return webdriver.Chrome(options=options)


def split(url):
    """The file of a URL and its fragment."""
    parts = urllib.parse.urlsplit(url)
    return pathlib.Path(urllib.parse.unquote(parts.path)), urllib.parse.unquote(parts.fragment)


class Site:
    """The pages that are reached from index.html, and their faults."""

    def __init__(self, browser, folder):
        self.browser, self.folder = browser, folder
        self.faults = []
        self.pages = {}  # file -> its content
        waiting = [folder / "index.html"]
        while waiting:
            page = waiting.pop()
            if page not in self.pages:
                self.pages[page] = self.open(page)
                waiting += [file for file in self.linked_files(page) if file.suffix == ".html"]
        self.check_places()

    def name(self, path):
        return path.relative_to(self.folder) if path.is_relative_to(self.folder) else path

    def open(self, page):
        self.browser.get(page.as_uri())
        content = self.browser.execute_script(CONTENT)
        self.faults += [f"{self.name(page)}: no picture {source}" for source in content["broken"]]
        self.faults += [f"{self.name(page)}: {entry['message']}" for entry in self.browser.get_log("browser")]
        for entry in self.browser.get_log("performance"):
            event = json.loads(entry["message"])["message"]
            if event["method"] == "Network.requestWillBeSent":
                url = event["params"]["request"]["url"]
                if not url.startswith(("file:", "data:")):
                    self.faults.append(f"{self.name(page)}: requests {url}")
        return content

    def linked_files(self, page):
        """The files that a page links to; those that are not in the site are faults."""
        files = {split(url)[0] for url in self.pages[page]["links"] if url.startswith("file:")}
        found = {file for file in files if file.is_file() and file.is_relative_to(self.folder)}
        self.faults += [f"{self.name(page)}: no file {self.name(file)}" for file in sorted(files - found)]
        return found

    def check_places(self):
        for page, content in self.pages.items():
            for url in content["links"]:
                file, place = split(url)
                if place and file in self.pages and place not in self.pages[file]["places"]:
                    self.faults.append(f"{self.name(page)}: no place {self.name(file)}#{place}")


class BrowserTest(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        folder = tempfile.TemporaryDirectory()
        cls.addClassCleanup(folder.cleanup)
        cls.folder = pathlib.Path(folder.name).resolve()
        cls.browser = start_browser(cls.folder / "profile")
        cls.addClassCleanup(cls.browser.quit)
        cls.browser.get("about:blank")
        cls.browser.get_log("performance")  # of the browser's own first page


class SiteTest(BrowserTest):
    def test_every_page_is_complete_and_reached(self):
        folder = self.folder / "site"
        subprocess.run([PROJECT / "tools" / "make_site", folder], check=True)
        site = Site(self.browser, folder)
        self.assertEqual(site.faults, [])
        self.assertEqual(set(site.pages), set(folder.rglob("*.html")))
        documents = {file.relative_to(PROJECT).with_suffix(".html") for file in PROJECT.glob("docs/*.md")}
        self.assertLessEqual(documents, {site.name(page) for page in site.pages})

    def test_files_are_copies_of_the_same_date(self):
        folder = self.folder / "dated"
        subprocess.run([PROJECT / "tools" / "make_site", folder], check=True, env={**os.environ, "SOURCE_DATE_EPOCH": "10"})
        for path in folder.rglob("*"):
            self.assertFalse(path.is_symlink(), path)
            self.assertEqual(path.stat().st_mtime, 10, path)
        for file in ("LICENSE", "docs/using.md", "include/latchkey.h", "examples/c/encrypt_bytes.c"):
            self.assertEqual((folder / file).read_bytes(), (PROJECT / file).read_bytes())


class FaultTest(BrowserTest):
    """The test finds each kind of fault."""

    def faults_of(self, body):
        folder = self.folder / "faulty"
        folder.mkdir(exist_ok=True)
        (folder / "index.html").write_text(f'<!DOCTYPE html><link rel="icon" href="data:,"><body>{body}</body>')
        (folder / "other.html").write_text('<!DOCTYPE html><link rel="icon" href="data:,"><h1 id="there">Other</h1>')
        return Site(self.browser, folder).faults

    def test_a_page_without_faults(self):
        self.assertEqual(self.faults_of('<a href="other.html#there">1</a> <a href="https://example.invalid/">2</a>'), [])

    def test_a_link_to_a_missing_file(self):
        self.assertEqual(self.faults_of('<a href="docs/no.html">1</a>'), ["index.html: no file docs/no.html"])

    def test_a_link_to_a_file_outside(self):
        self.assertEqual(self.faults_of('<a href="../profile">1</a>'), [f"index.html: no file {self.folder / 'profile'}"])

    def test_a_link_to_a_missing_place(self):
        self.assertEqual(self.faults_of('<a href="other.html#no">1</a>'), ["index.html: no place other.html#no"])

    def test_a_picture_that_is_not_shown(self):
        (self.folder / "bad.svg").write_text("no picture")
        self.assertIn(f"index.html: no picture {(self.folder / 'bad.svg').as_uri()}",
                      self.faults_of('<img src="../bad.svg">'))

    def test_an_error_in_a_script(self):
        self.assertRegex("\n".join(self.faults_of("<script>missing()</script>")), "missing is not defined")

    def test_a_request_to_a_server(self):
        self.assertIn("index.html: requests http://127.0.0.1:9/style.css",
                      self.faults_of('<link rel="stylesheet" href="http://127.0.0.1:9/style.css">'))


if __name__ == "__main__":
    unittest.main()
