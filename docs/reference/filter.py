#!/usr/bin/env python3
"""Shows a header of ours to Doxygen, line for line.

Our comments are plain `//`. The block above a declaration speaks of it, and of those of a like name
that follow it without a blank line (`name`, `nameIs`, `otherName`); the block at the head of a
file, of the file and of the class of its name; one behind a member, of that.

    filter.py HEADER
"""

import os
import pathlib
import re
import sys

# ===== The text of comments

CODE_SPAN = re.compile(r"`([^`]*)`")
SPECIAL = re.compile(r"[\\@<>&#%$]|(?<!\w)::|(?<=\s)--(?=\s)")
PROMISE = re.compile(r"(?:^|(?<=^- )|(?<=[.;] ))((?:Requires|Throws|Notifies)(?:,[^:]*)?:)")
SECTION = re.compile(r"^(OVERVIEW|RULES|EXAMPLE)(?::(.*))?$")


def literal(text):
    """Text in which nothing is a command, a tag or a link."""
    return SPECIAL.sub(lambda found: "\\" + found[0], text)


def prose(text):
    """The same with `code`, and with what a function promises in bold letters."""
    pieces = CODE_SPAN.split(PROMISE.sub(r"<<<\1>>>", text))
    shown = "".join(f"<code>{literal(piece)}</code>" if i % 2 else literal(piece)
                    for i, piece in enumerate(pieces))
    return shown.replace(r"\<\<\<", "<b>").replace(r"\>\>\>", "</b>")


def marked_up(block):
    """The lines of a comment, each as one line. Lines that stand deeper, outside of lists, are
    tables and code, and stay as they are."""
    lines, in_list, as_is, margin = [], False, "", 0
    for line in block:
        text = line.strip()
        depth = len(line) - len(line.lstrip()) - margin
        section = SECTION.match(text) if depth + margin == 1 else None
        if section:
            if as_is:
                lines[-1] += as_is
            in_list, as_is, margin = False, "", 0 if section[2] else 2
            if section[1] == "EXAMPLE":
                lines.append(r"<b>Example</b> \code{.cpp}")
                as_is, margin = r" \endcode", -100
            else:
                lines.append("" if section[1] == "OVERVIEW" else "<b>Rules</b>")
                lines[-1] += prose(section[2] or "")
            continue
        if margin > 0 and text and depth < 1:  # behind the sections
            margin, depth = 0, depth + margin
        in_list = text.startswith("- ") or (in_list and bool(text) and depth > 1)
        is_table = bool(text) and not in_list and depth > 2
        if is_table and not as_is:
            lines.append(r"\code{.unparsed}" + " " + line)
            as_is = r" \endcode "
        elif is_table or as_is == r" \endcode":
            lines.append(line)
        else:
            if as_is:
                lines[-1] += as_is
                as_is = ""
            lines.append(" " * max(depth, 0) + prose(text))
    if as_is:
        lines[-1] += as_is
    return lines


def on_one_line(block):
    """The comment for another declaration that it speaks of."""
    words = []
    for line in block:
        if line.strip() == "" and words:
            break
        words.append(prose(line.strip()))
    return "/** " + " ".join(words).replace("*/", "* /") + " */ "


# ===== The declarations of a header

TOKEN = re.compile(r'//[^\n]*|/\*.*?\*/|R"\w*\(.*?\)\w*"|"(?:\\.|[^"\\\n])*"|\'(?:\\.|[^\'\\\n])*\''
                   r"|(?<=\w)'(?=\w)|[\w:]+|.|\n", re.DOTALL)
HEAD = re.compile(r"^(?:inline )?(namespace|class|struct|union|enum)\b")


def kind_of(statement):
    """What a brace behind the statement opens."""
    text = re.sub(r"\[\[.*?\]\]|QOS_EXPORT", "", statement).strip()
    while text.startswith("template"):
        depth, at = 0, text.index("<")
        for at in range(at, len(text)):
            depth += {"<": 1, ">": -1}.get(text[at], 0)
            if depth == 0:
                break
        text = re.sub(r"^requires .*?(?=\b(?:class|struct)\b|$)", "", text[at + 1:].strip())
    found = HEAD.match(text)
    return found[1] if found else "body"


class Declarations:
    """The lines at which declarations begin, and those on which one ends."""

    def __init__(self, text):
        self.begins, self.ends, self.resets = set(), set(), set()
        scopes, statement, line = [], "", 1
        tokens = TOKEN.findall(text)
        for i, token in enumerate(tokens):
            is_open = not scopes or scopes[-1] not in ("body", "requirement")
            if token.startswith("#") and not statement.strip():
                statement = "#"
            elif token.startswith(("//", "/*")):
                pass
            elif token == "{":
                scopes.append(kind_of(statement) if is_open else "body")
                if re.search(r"\brequires *(\([^()]*\))? *$", statement):
                    scopes[-1] = "requirement"
                elif scopes[-1] != "body":
                    statement = ""
                    self.resets.add(line)
            elif token == "}":
                was = scopes.pop()
                follows = next((t for t in tokens[i + 1:] if t.strip()), "")
                if was == "requirement":
                    statement += " {}"
                elif scopes[-1:] != ["body"] and (was == "namespace" or follows not in ";,{)="):
                    statement = ""
                    self.ends.add(line)
                elif was not in ("body", "namespace"):
                    statement = "}"
            elif is_open and token == ";":
                statement = ""
                self.ends.add(line)
            elif is_open and token == "," and scopes[-1:] == ["enum"]:
                statement = ""
                self.ends.add(line)
            elif is_open and token in ("public:", "protected:", "private:"):
                self.resets.add(line)
            elif token == "\n" and statement.startswith("#"):
                statement = "" if not text.split("\n")[line - 1].endswith("\\") else "#"
            elif is_open and token.strip():
                if not statement.strip():
                    self.begins.add(line)
                statement += token
            elif is_open and statement:
                statement += " "
            line += token.count("\n")


# ===== The header as Doxygen reads it

COMMENT = re.compile(r"^ *//(?!/)(.*)$")
BEHIND = re.compile(r"^(.*\S) +// (.*)$")
ASIDE = re.compile(r"^ *(NOLINT|=====|---)")
NAME = re.compile(r"([\w]+)(?:\(|;| =|\{)")
NO_NAME = re.compile(
    r"\[\[.*?\]\]|^ *template <.*>$|^ *requires .*|decltype\(.*?\)|QOS_EXPORT|operator.*")
ENDING = re.compile(r"(Is|Del|DelAll)$")
NEVER_ALIKE = ("handleInitialized", "doPrepareToDie")
NOT_OURS = re.compile(
    r"^ *(friend|using [\w:]+;|using enum|static_assert|class \w+;|struct \w+;|})")


def name_of(lines):
    """The name that is declared at the first line, without what the house puts behind names."""
    line = next(line for line in lines if NO_NAME.sub("", line).strip() or "operator" in line)
    found = NAME.search(NO_NAME.sub("", line))
    return ENDING.sub("", found[1]) or found[1] if found and "~" not in line else ""


def common(one, other):
    """How many characters two names have in common at their begin."""
    return len(os.path.commonprefix([one, other]))


def are_alike(first, other):
    """Whether a comment that speaks of the first name speaks of the other, too."""
    if not first or not other or other in NEVER_ALIKE:
        return False
    return first == other or common(first, other) > 4 or common(first[::-1], other[::-1]) > 2


def named(lines):
    """The line that names what begins at the first one."""
    return next(line for line in lines if not line.startswith(("template ", "requires ")))


def shown(text, name):
    """The header with its comments marked. Its head is about the class that it is named after."""
    source = text.split("\n")
    own_class = re.compile(rf"^(class|struct) (QOS_EXPORT )?{name}\b(?!;)")
    lines = list(source)
    declared = Declarations(text)
    head = 0
    while COMMENT.match(source[head]):
        head += 1
    if head:  # it takes the line of `#pragma once`
        comments = [COMMENT.match(line)[1] for line in source[:head]]
        lines[1:head + 1] = ["/// " + line for line in marked_up(comments)]
        lines[0] = r"/// \file"
        about = [SECTION.sub(r"\2", line.strip()) for line in comments]
    block, group, leader, first = [], [], "", 0
    for i in range(head + 1 if head else 0, len(source)):
        line, number = source[i], i + 1
        comment = COMMENT.match(line)
        if comment and number not in declared.begins:
            if not block:
                first = i
            block.append(comment[1])
            continue
        text_of_block = [entry for entry in block if not ASIDE.match(entry)]
        is_macro = bool(text_of_block) and line.startswith("#define")
        if is_macro or (number in declared.begins and not NOT_OURS.match(line)):
            behind = BEHIND.match(line) if number in declared.ends else None
            if behind and not ASIDE.match(behind[2]):
                lines[i] = behind[1] + " ///< " + prose(behind[2])
            elif not text_of_block and head and own_class.match(named(source[i:])):
                lines[i] = on_one_line(about) + line
                head = 0
            elif not text_of_block and group and are_alike(leader, name_of(source[i:])):
                indent = len(line) - len(line.lstrip())
                lines[i] = line[:indent] + on_one_line(group) + line[indent:]
            if text_of_block:
                marked = iter(marked_up(text_of_block))
                for j, entry in enumerate(block, first):
                    if not ASIDE.match(entry):
                        lines[j] = "///" + next(marked)
                group, leader = text_of_block, name_of(source[i:])
        elif not line.strip():
            group = []
        if number in declared.resets:
            group = []
        block = []
    return "\n".join(lines)


if __name__ == "__main__":
    header = pathlib.Path(sys.argv[1])
    sys.stdout.write(shown(header.read_text(encoding="utf-8"), header.stem))
