"""The reference pages: what Doxygen is shown of a header, and which of its warnings count.

That all public headers have their words is tried by `./dev docs`.
"""

import pathlib
import shutil
import sys
import tempfile
import textwrap
import unittest

ROOT = pathlib.Path(__file__).resolve().parent.parent.parent
sys.path.insert(0, str(ROOT / "docs" / "reference"))
import build  # noqa: E402
import filter as shower  # noqa: E402


def shown(text, name="Other"):
    return shower.shown(textwrap.dedent(text), name).split("\n")


class AComment(unittest.TestCase):
    maxDiff = None

    def test_is_marked_above_a_declaration_and_behind_a_member(self):
        self.assertEqual(shown("""\
            #pragma once
            // A lamp.
            struct Lamp {
              bool lit = false;  // since the last write
            };
            """), ["#pragma once", "/// A lamp.", "struct Lamp {",
                   "  bool lit = false; ///< since the last write", "};", ""])

    def test_at_the_head_is_that_of_the_file_and_of_the_class_of_its_name(self):
        self.assertEqual(shown("""\
            // OVERVIEW
            //   Lights.
            //
            // RULES
            //   - One lamp.
            //
            // EXAMPLE
            //   Lamp lamp;
            #pragma once

            class Other;
            class Lamp final {
            };
            """, "Lamp"), [r"/// \file", "/// ", "///  Lights.", "/// ", "/// <b>Rules</b>",
                           "///  - One lamp.", "/// ", r"/// <b>Example</b> \code{.cpp}",
                           r"///    Lamp lamp; \endcode", "", "class Other;",
                           "/**  Lights. */ class Lamp final {", "};", ""])

    def test_speaks_of_names_alike_up_to_a_blank_line(self):
        self.assertEqual(shown("""\
            class Lamp {
             public:
              // In lux.
              int light() const;
              void lightIs(int v);
              int colour() const;

              void lightDel();
            };
            """)[2:8], ["/// In lux.", "  int light() const;",
                        "  /** In lux. */ void lightIs(int v);", "  int colour() const;", "",
                        "  void lightDel();"])

    def test_within_a_body_stays(self):
        text = """\
            inline int f() {
              // Why.
              int i{0};
              for (;;) {
                // And why.
                ++i;
              }
            }
            """
        self.assertEqual(shown(text), textwrap.dedent(text).split("\n"))

    def test_before_a_blank_line_stays(self):
        text = "#pragma once\n// About nothing in particular.\n\nint f();\n"
        self.assertEqual(shower.shown(text, "Other"), text)

    def test_is_marked_behind_a_body_and_a_requirement(self):
        self.assertEqual(shown("""\
            template <class T>
            requires requires(T v) { v.f(); }
            int g(T v) { return v.f(); }
            // Of h.
            int h();
            """)[-4:], ["int g(T v) { return v.f(); }", "/// Of h.", "int h();", ""])

    def test_has_nothing_that_is_a_command(self):
        self.assertEqual(shower.prose(r"`a<b>` of <c> \d @e #f 5% x. Throws: none. Requires: g."),
                         r"<code>a\<b\></code> of \<c\> \\d \@e \#f 5\% x. <b>Throws:</b> none. "
                         r"<b>Requires:</b> g.")

    def test_shows_tables_as_they_are(self):
        table = [" What wakes what:", "   a   f()", "   b   g()", " End."]
        self.assertEqual(shower.marked_up(table),
                         [" What wakes what:", r"\code{.unparsed}    a   f()",
                          r"   b   g() \endcode ", " End."])


class AHeader(unittest.TestCase):
    def each(self):
        for header in build.public_headers():
            text = (ROOT / header).read_text(encoding="utf-8")
            marked = shower.shown(text, pathlib.Path(header).stem)
            yield header, text.split("\n"), marked.split("\n")

    def test_keeps_its_lines(self):
        for header, lines, marked in self.each():
            self.assertEqual(len(marked), len(lines), header)

    def test_keeps_its_code(self):
        def code(line):
            return line.split(" */ ")[-1].split("//")[0].strip()
        for header, lines, marked in self.each():
            for number, (line, other) in enumerate(zip(lines, marked), 1):
                if line != "#pragma once":
                    self.assertEqual(code(other), code(line), f"{header}:{number}")

    def test_is_public_with_all_that_it_includes(self):
        headers = build.public_headers()
        for header in headers:
            text = (ROOT / header).read_text(encoding="utf-8")
            for line in text.split("\n"):
                if line.startswith('#include "'):
                    self.assertIn(line.split('"')[1], headers, header)


@unittest.skipUnless(shutil.which("doxygen"), "there is no doxygen: ./dev docs installs it")
class Doxygen(unittest.TestCase):
    def lacking(self, text):
        with tempfile.TemporaryDirectory() as folder:
            header = pathlib.Path(folder, "Small.h")
            header.write_text("// Of small things.\n#pragma once\n\n" + textwrap.dedent(text),
                              encoding="utf-8")
            return build.lacking(["Small.h"], pathlib.Path(folder), pathlib.Path(folder, "pages"))

    def test_names_a_function_without_words_by_its_line(self):
        self.assertEqual(self.lacking("int weigh(int grams);\n"),
                         ["Small.h:4: warning: Member weigh(int grams) (function) of file Small.h "
                          "is not documented."])

    def test_names_a_class_and_an_enumeration_without_words(self):
        found = self.lacking("struct Lamp {\n  int light;\n};\nenum class Colour { red };\n")
        self.assertEqual([line.split(" ")[0] for line in found], ["Small.h:4:", "Small.h:7:"])

    def test_is_content_with_our_comments_and_with_names_that_need_no_words(self):
        self.assertEqual(self.lacking("""\
            // A lamp of `<glass>`.
            class Lamp {
             public:
              explicit Lamp(int light) : light_(light) {}
              int light() const { return light_; }
              void lightIs(int v) { light_ = v; }
              bool operator==(const Lamp&) const = default;

             private:
              int light_;
            };
            // In grams. Throws: nothing.
            int weigh(const Lamp& lamp);
            """), [])

    def test_counts_every_other_warning(self):
        self.assertTrue(build.needs_words("host/A.h:3: warning: Unsupported xml/html tag <x> found"))
        self.assertFalse(build.needs_words(
            "host/A.h:3: warning: Member a (variable) of struct host::A is not documented."))


if __name__ == "__main__":
    unittest.main()
