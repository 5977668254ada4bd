"""What the headers and the texts say must stay true: every export is declared and described, every status carries its
message, the README's program is the one that is tested, and no link leads nowhere.
usage: documentation_test.py SOURCE [unittest arguments]"""

import re
import sys
import unittest
from pathlib import Path

SOURCE = None


def read(path):
    return (SOURCE / path).read_text()


def headers():
    return sorted((SOURCE / "include").rglob("*.h"))


class Headers(unittest.TestCase):
    def test_declare_every_export_once(self):
        names = re.findall(r"^ZEP_EXPORT(?:_N8)?\((\w+)\)", read("src/core/exports.def"), re.M)
        names += [n for n in read("src/core/core_exports.txt").splitlines() if re.match(r"zep\w+$", n)]
        self.assertGreater(len(names), 30)
        declared = [n for h in headers() for n in re.findall(r"ZEP_API [^;]*?\b(zep\w+)\(", h.read_text())]
        self.assertEqual(sorted(set(names) - set(declared)), [], "exported, not declared")
        self.assertEqual(sorted(set(declared) - set(names)), [], "declared, not exported")
        self.assertEqual(sorted({n for n in declared if declared.count(n) > 1}), [], "declared twice")

    def test_name_the_statuses_of_each_function_that_returns_one(self):
        # The comment before the function, or before the first of its group; the manual's build finds those without any.
        for header in headers():
            for block in re.findall(r"/\*\*(?:(?!\*/).)*\*/\s*ZEP_API ZepStatus \w+", header.read_text(), re.S):
                comment, name = block.rsplit(None, 1)
                self.assertRegex(comment, r"@return|[Aa]s zep|same as zep", f"{header.name}: {name}")

    def test_give_each_status_the_message_of_its_text(self):
        messages = dict(re.findall(r'ZEP_ROW\((\w+), "(.*)"\)', read("src/core/status_table.cpp")))
        text = re.sub(r"\s*\n\s*\*?\s*", " ", read("include/zepstatus.h"))
        comments = dict(re.findall(r"(zepSts\w+) = -?\d+,? */\*\*< (.*?) \*/", text))
        self.assertGreater(len(comments), 250)
        self.assertEqual(comments, messages)

    def test_include_each_family(self):
        included = set(re.findall(r'#include "zeps/(\w+\.h)"', read("include/zeps.h")))
        self.assertEqual(included, {h.name for h in (SOURCE / "include/zeps").glob("*.h")})


class Texts(unittest.TestCase):
    def test_readme_prints_the_quick_start(self):
        program = re.search(r"^```c\n(.*?)^```$", read("README.md"), re.S | re.M).group(1)
        self.assertEqual(program, read("examples/quickstart.c"))
        self.assertLessEqual(len(program.splitlines()), 15)

    def test_deflate_header_prints_the_inflate_program(self):
        printed = re.search(r"^ \* @code\n(.*?)^ \* @endcode$", read("include/zeps/deflate.h"), re.S | re.M).group(1)
        self.assertEqual(re.sub(r"^ \* ?", "", printed, flags=re.M), read("examples/inflate.c"))

    def test_manual_page_names_each_command_and_option(self):
        page = read("docs/mozep.1").replace("\\-", "-")
        program = "".join(p.read_text() for p in sorted((SOURCE / "tools/mozep").glob("*.cpp")))
        names = re.findall(r'add_(?:option|flag)\(\s*"([^"]+)"', program)
        names += re.findall(r'add_subcommand\(\s*"([^"]+)"', program)
        self.assertGreater(len(names), 8)
        words = {word for name in names for word in name.split(",") if word != "FILE"}
        self.assertEqual(sorted(w for w in words if not re.search(rf"(?<![\w-]){w}(?![\w-])", page)), [])
        version = re.search(r"project\(mozep VERSION ([\d.]+)", read("CMakeLists.txt")).group(1)
        self.assertIn(f'"MOZEP {version}"', page.splitlines()[0])

    def test_tell_alignment_as_it_is(self):
        for text in ("README.md", "docs/index.md", "docs/architecture.md"):
            content = " ".join(read(text).split())
            self.assertNotRegex(content, r"never changes? a result", text)
            for exception in ("zepsSqrt_32f", "zepsInterleave_*"):
                self.assertIn(exception, content, text)

    def test_name_what_returns_no_status(self):
        declared = [d for h in headers() for d in re.findall(r"ZEP_API ([^;(]*?)\s*\b(zep\w+)\(", h.read_text())]
        silent = {name for result, name in declared if result != "ZepStatus"}
        self.assertGreater(len(silent), 20)
        for text in ("README.md", "docs/index.md"):
            content = read(text)
            for name in silent:
                known = name in content or ("GetLibVersion" in name and "`GetLibVersion`" in content) or \
                    (name.startswith("zepsMalloc_") and "`zepsMalloc_*`" in content)
                self.assertTrue(known, f"{text}: {name}")

    def test_links_and_named_files_exist(self):
        for text in [SOURCE / "README.md", SOURCE / "CONTRIBUTING.md", SOURCE / "CHANGELOG.md", *SOURCE.glob("docs/**/*.md")]:
            content = text.read_text()
            prose = re.sub(r"^```.*?^```$", "", content, flags=re.S | re.M)  # a lambda is no link
            for link in re.findall(r"\]\(([^)#:]+)[^):]*\)", prose):
                self.assertTrue((text.parent / link).exists(), f"{text.name}: {link}")
            named = re.findall(r"`((?:tools|docs|src|tests|include|benchmarks|fuzz|examples|cmake|\.ci)/[\w./-]*)", content)
            for path in named:
                self.assertTrue((SOURCE / path).exists(), f"{text.name}: {path}")


if __name__ == "__main__":
    if len(sys.argv) < 2:
        sys.exit(__doc__)
    SOURCE = Path(sys.argv[1])
    unittest.main(argv=[sys.argv[0]] + sys.argv[2:], verbosity=2)
