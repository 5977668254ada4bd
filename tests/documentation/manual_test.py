"""The manual as Doxygen builds it: without a warning, every summary whole, every group titled, every function in the table by
type, every example shown, nothing of the build's folder in it. And what Clang says of the comments: nothing.
usage: manual_test.py SOURCE DOXYGEN CLANG [unittest arguments]; an empty DOXYGEN or CLANG skips its tests."""

import re
import subprocess
import sys
import tempfile
import unittest
import xml.etree.ElementTree as ElementTree
from pathlib import Path

SOURCE = DOXYGEN = CLANG = None


def headers():
    return sorted((SOURCE / "include").rglob("*.h"))


def declared():
    return {n for h in headers() for n in re.findall(r"ZEP_API [^;]*?\b(zep\w+)\(", h.read_text())}


class Manual(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        if not DOXYGEN:
            raise unittest.SkipTest("no Doxygen")
        cls.folder = tempfile.TemporaryDirectory(prefix="mozep_manual_")
        out = Path(cls.folder.name)
        subprocess.run([sys.executable, "-B", SOURCE / "docs/function_table.py", SOURCE / "include", out / "functions.md"],
                       check=True)
        settings = (SOURCE / "docs/Doxyfile.in").read_text()
        for name, value in {"PROJECT_VERSION": "0", "PROJECT_DESCRIPTION": "test", "PROJECT_SOURCE_DIR": SOURCE,
                            "CMAKE_CURRENT_SOURCE_DIR": SOURCE / "docs", "CMAKE_CURRENT_BINARY_DIR": out}.items():
            settings = settings.replace(f"@{name}@", str(value))
        (out / "Doxyfile").write_text(settings)
        cls.run_ = subprocess.run([DOXYGEN, out / "Doxyfile"], cwd=out, capture_output=True, text=True)
        cls.html = {p.name: p.read_text() for p in (out / "html").glob("*.html")}
        cls.files = [ElementTree.parse(p).getroot() for p in (out / "xml").glob("*_8h.xml")]

    @classmethod
    def tearDownClass(cls):
        cls.folder.cleanup()

    def page_with(self, title):
        pages = [text for text in self.html.values() if f'<div class="title">{title}' in text]
        self.assertEqual(len(pages), 1, title)
        return pages[0]

    maxDiff = None

    def test_is_built_without_a_warning(self):
        self.assertEqual((self.run_.returncode, self.run_.stderr), (0, ""))

    def test_summaries_are_whole_sentences(self):
        summaries = {m.find("name").text: " ".join("".join(m.find("briefdescription").itertext()).split())
                     for f in self.files for m in f.iter("memberdef") if m.get("kind") == "function"}
        self.assertGreaterEqual(len(summaries), len(declared()))
        for name, text in summaries.items():
            with self.subTest(name, summary=text):
                self.assertGreater(len(text), 10)
                # Neither cut at a dot in the midst of it, nor within brackets. A colon stands before a list.
                self.assertRegex(text, r"[\w)\]|*'\"][.:]$")
                for opening, closing in ("()", "[]"):
                    self.assertEqual(text.count(opening), text.count(closing))

    def test_groups_have_their_titles(self):
        shown = {" ".join(h.text.split()) for f in self.files for h in f.iter("header") if h.text}
        wanted = {t.strip() for h in headers() for t in re.findall(r"@name (.*)", h.read_text())}
        self.assertGreater(len(wanted), 20)
        self.assertEqual(sorted(wanted - shown), [])

    def test_names_no_folder_of_the_build(self):
        for name, text in self.html.items():
            for folder in (self.folder.name, str(SOURCE)):
                self.assertNotIn(folder, text, name)

    def test_table_by_type_links_every_function(self):
        page = self.page_with("Functions by type")
        linked = {re.sub(".*: *", "", title) for title in re.findall(r'<a class="el" href="[^"]*" title="([^"]*)"', page)}
        linked |= set(re.findall(r'<a class="el" href="[^"]*"[^>]*>(zep\w+)</a>', page))
        anchors = set(re.findall(r'<a class="el" href="([^"]*_8h\.html#[^"]*)"', page))
        places = {f'{f.find("compounddef").get("id")}.html#{m.get("id").split("_1")[-1]}': m.find("name").text
                  for f in self.files for m in f.iter("memberdef") if m.get("kind") == "function"}
        self.assertEqual(sorted(declared() - {places[a] for a in anchors if a in places}), [])
        self.assertIn(f"{len(declared())} functions in all", page)

    def test_first_page_tells_how_to_test_for_errors(self):
        first = self.html["index.html"]
        self.assertIn("status &lt; 0", first)
        for word in ("positive values are warnings", "zepStsDivByZero", "do not return a status"):
            self.assertIn(word, first)
        for title in ("Install and link", "Accuracy", "Performance", "Functions by type"):
            self.assertRegex(first, rf'<a class="el" href="[^"]*">{title}</a>')

    def test_shows_each_example_and_what_it_prints(self):
        listings = [re.sub(r"\s+", "", re.sub(r"<[^>]*>", "", listing)) for text in self.html.values()
                    for listing in re.findall(r'<div class="fragment">.*?<!-- fragment -->|<pre class="fragment">.*?</pre>', text, re.S)]
        for example in [*SOURCE.glob("examples/*.c"), *SOURCE.glob("examples/*.txt")]:
            if example.name == "CMakeLists.txt":
                continue
            text = re.sub(r"\s+", "", example.read_text())
            for sign, entity in (("&", "&amp;"), ("<", "&lt;"), (">", "&gt;"), ('"', "&quot;")):
                text = text.replace(sign, entity)
            # Behind the text stand what the pointer shows over its links.
            shown = [l for l in listings if l.replace("&#39;", "'").startswith(text)]
            self.assertNotEqual(shown, [], example.name)

    def test_typesets_formulas(self):
        for title in ("The packed spectrum of a real signal", "Spectrum estimation", "Filtering by transforms"):
            self.assertIn("<math display=", self.page_with(title))


class Comments(unittest.TestCase):
    maxDiff = None

    def test_draw_no_warning_from_clang(self):
        if not CLANG:
            self.skipTest("no Clang")
        for header in headers():
            languages = [["-x", "c++", "-std=c++20"]] + ([["-x", "c", "-std=c11"]] if header.name != "mozep.h" else [])
            for language in languages:
                command = [CLANG, *language, "-fsyntax-only", "-Wdocumentation", "-Wno-pragma-once-outside-header",
                           f"-I{SOURCE / 'include'}", header]
                self.assertEqual(subprocess.run(command, capture_output=True, text=True).stderr, "", header.name)


if __name__ == "__main__":
    if len(sys.argv) < 4:
        sys.exit(__doc__)
    SOURCE, DOXYGEN, CLANG = Path(sys.argv[1]).resolve(), sys.argv[2], sys.argv[3]
    unittest.main(argv=[sys.argv[0]] + sys.argv[4:], verbosity=2)
