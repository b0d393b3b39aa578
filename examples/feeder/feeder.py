#!/usr/bin/env python3
"""Turns table dumps of a device's QoS objects into what qosoc reads.

    feeder.py document DUMP         prints the native document of a dump
    feeder.py changes BEFORE AFTER  prints the change lines from one dump to the next

A dump has a table's row on each line, as a JSON object. The rows that there are stand in TABLES:

    {"table": "tx-queue", "interface": "Ethernet1", "queue": "uc-3", "bandwidth": 40}

Each row that is wrong is named on standard error; then nothing is printed, and the exit code is 2.
It is 1 when standard output can't take all of it.
"""

import contextlib
import json
import re
import sys
from collections.abc import Callable, Iterator
from dataclasses import dataclass
from typing import Any

Document = dict[str, Any]
Path = tuple[str, ...]


class BadRow(Exception):
    """What is wrong with a row."""


# ===== Members of rows: each kind takes a value of JSON and returns the document's

def text(value: Any) -> str:
    if not isinstance(value, str):
        raise BadRow("is not a string")
    value.encode()  # not every string of JSON is Unicode text
    return value


def number(most: int) -> Callable[[Any], int]:
    def read(value: Any) -> int:
        if type(value) is not int or not 0 <= value <= most:  # True is an int, too
            raise BadRow(f"is not a whole number from 0 to {most}")
        return value
    return read


def seconds(value: Any) -> int | float:
    if (isinstance(value, bool) or not isinstance(value, int | float)
            or abs(value) > sys.float_info.max):
        raise BadRow("is not a number")
    return value


def words(*known: str) -> Callable[[Any], list[str]]:
    def read(value: Any) -> list[str]:
        if not isinstance(value, list) or any(one not in known or value.count(one) > 1
                                              for one in value):
            raise BadRow(f"is not a list of {' and '.join(known)}, each at most once")
        return sorted(value)  # it is a set
    return read


def priority(value: Any) -> str:
    if value not in ("strict", "unset"):
        raise BadRow("is neither strict nor unset")
    return text(value)


def priorities(value: Any) -> int:
    if not isinstance(value, list) or any(type(one) is not int or not 0 <= one <= 7
                                          for one in value):
        raise BadRow("is not a list of priorities from 0 to 7")
    return sum(1 << one for one in set(value))  # a bit each


def queue(value: Any) -> str:
    name = text(value)
    if not re.fullmatch(r"[um]c-(0|[1-9]\d{0,2})", name, re.ASCII) or int(name[3:]) > 255:
        raise BadRow("is neither uc-N nor mc-N, N from 0 to 255")
    return name


# ===== The tables

@dataclass(frozen=True)
class Key:
    """A part of a place, which a member says."""
    name: str
    read: Callable[[Any], Any] = text
    prefix: str = ""


@dataclass(frozen=True)
class Table:
    place: tuple[str | Key, ...]
    members: dict[str, Callable[[Any], Any]]
    # What stands at the place, from the members that the row has.
    content: Callable[[Document], Any] = lambda members: members


BYTE, LONG = number(255), number(2**32 - 1)
NAME, INTERFACE, QUEUE = Key("name"), Key("interface"), Key("queue", queue)
OPTIONS = words("ip-access-group", "ipv6-access-group")
RULE = ("rules", Key("sequence", LONG))
TX_QUEUE = ("interfaces", INTERFACE, "tx-queues", QUEUE)
PROFILE_QUEUE = ("qos-profiles", Key("profile"), "tx-queues", QUEUE)
SETTINGS = {"priority": priority, "bandwidth": BYTE, "shape": LONG}
DROP = {"min-threshold": LONG, "max-threshold": LONG, "threshold-unit": BYTE,
        "max-drop-percent": BYTE, "weight": LONG}

TABLES = {
    "class-map": Table(("class-maps", "qos", NAME), {"match": OPTIONS}),
    "acl": Table(("access-lists", "ipv4", NAME), {}),
    "acl-rule": Table(("access-lists", "ipv4", Key("acl"), *RULE), {"dscp": number(63)}),
    "ipv6-acl": Table(("access-lists", "ipv6", NAME), {}),
    "ipv6-acl-rule": Table(  # the DSCP is the upper six bits of the traffic class
        ("access-lists", "ipv6", Key("acl"), *RULE), {"dscp": number(63)},
        lambda row: {"tc": row["dscp"] << 2, "tc-mask": 0xfc} if row else {}),
    "policy-map": Table(("policy-maps", "qos", NAME), {}),
    "policy-class": Table(
        ("policy-maps", "qos", Key("policy-map"), "classes", Key("class-map")),
        {"set-traffic-class": LONG}, lambda row: {"actions": row} if row else {}),
    "service-policy": Table(  # the tag before the name only keeps keys apart
        ("service-policies", Key("policy-map", prefix="1:"), "interfaces", INTERFACE), {},
        lambda row: True),
    "interface": Table(("interfaces", NAME), {}),
    "tx-queue": Table(TX_QUEUE, SETTINGS),
    "ecn": Table((*TX_QUEUE, "ecn"), DROP),
    "wred": Table((*TX_QUEUE, "wred"), DROP),
    "pfc": Table(("interfaces", INTERFACE, "pfc"), {"priorities": priorities}),
    "profile": Table(("qos-profiles", NAME), {}),
    "profile-queue": Table(PROFILE_QUEUE, SETTINGS),
    "profile-ecn": Table((*PROFILE_QUEUE, "ecn"), DROP),
    "profile-wred": Table((*PROFILE_QUEUE, "wred"), DROP),
    "comment": Table(("comments", Key("key")), {"text": text}, lambda row: row["text"]),
    "traffic-class": Table(("tc-to-tx-queue", Key("traffic-class", number(16))), {"queue": BYTE},
                           lambda row: row["queue"]),
    "forwarding-group": Table(("forwarding-groups", NAME), {"traffic-class": BYTE},
                              lambda row: row["traffic-class"]),
    "queue-name": Table(("queue-names", NAME), {"queue": BYTE}, lambda row: row["queue"]),
    "pfc-watchdog": Table(("pfc-watchdog",), {
        "time-a": seconds, "time-b": seconds, "time-c": seconds, "action": BYTE,
        "priorities": priorities}),
}

# What stands in a section refers only to those before it, so it comes after them and goes first.
SECTIONS = ("queue-names", "forwarding-groups", "tc-to-tx-queue", "qos-profiles", "interfaces",
            "class-maps", "access-lists", "policy-maps", "comments", "service-policies",
            "pfc-watchdog")


# ===== From a dump to a document

def read_member(row: Document, name: str, read: Callable[[Any], Any]) -> Any:
    try:
        return read(row[name])
    except BadRow as error:
        raise BadRow(f'"{name}" {error}') from None


def read_row(row: Any) -> tuple[Path, Any]:
    if not isinstance(row, dict):
        raise BadRow("not a JSON object")
    table = TABLES.get(str(row["table"]))
    if table is None:
        raise BadRow(f'no table "{row["table"]}"')
    keys = {part.name: part for part in table.place if isinstance(part, Key)}
    for name in row:
        if name not in ("table", *keys, *table.members):
            raise BadRow(f'unknown member "{name}"')
    texts = {name: f"{key.prefix}{read_member(row, name, key.read)}" for name, key in keys.items()}
    members = {name: read_member(row, name, read)
               for name, read in table.members.items() if name in row}
    place = tuple(texts[part.name] if isinstance(part, Key) else part for part in table.place)
    return place, table.content(members)


def distinct(pairs: list[tuple[str, Any]]) -> Document:
    members = dict(pairs)
    if len(members) != len(pairs):
        raise BadRow("a member twice")
    return members


def no_number(word: str) -> Any:
    raise BadRow(f"not JSON: {word}")


def read_line(line: bytes) -> tuple[Path, Any]:
    try:
        return read_row(json.loads(line.decode(), object_pairs_hook=distinct,
                                   parse_constant=no_number))
    except KeyError as missing:
        raise BadRow(f"no member {json.dumps(missing.args[0])}") from None
    except UnicodeError:
        raise BadRow("not Unicode text in UTF-8") from None
    except json.JSONDecodeError as error:
        raise BadRow(f"not JSON: {error.msg} at column {error.colno}") from None
    except (ValueError, RecursionError) as error:  # a number of thousands of digits, too
        raise BadRow(f"not JSON: {error}") from None


def insert(document: Document, place: Path, value: Any) -> None:
    for key in place[:-1]:
        document = document.setdefault(key, {})
    if isinstance(value, dict):  # a row of what is below it may have come before
        document.setdefault(place[-1], {}).update(value)
    else:
        document[place[-1]] = value


def read_dump(file: str, faults: list[str]) -> Document:
    document: Document = {section: {} for section in SECTIONS}
    lines: dict[Path, int] = {}  # by place
    with open(file, "rb") as dump:
        for count, line in enumerate(dump, 1):
            if not line.strip():
                continue
            try:
                place, value = read_line(line)
                if place in lines:
                    raise BadRow(f"the same object as in line {lines[place]}")
                lines[place] = count
                insert(document, place, value)
            except BadRow as error:
                faults.append(f"{file}:{count}: {error}")
    return document


# ===== From two documents to change lines

def change(operation: str, place: Path, **value: Any) -> str:
    path = "".join("/" + key.replace("~", "~0").replace("/", "~1") for key in place)
    return json.dumps([{"op": operation, "path": path, **value}], ensure_ascii=False)


def removals(before: Document, after: Document, place: Path = ()) -> Iterator[str]:
    for key in reversed(before):
        if key not in after:
            yield change("remove", (*place, key))
        elif isinstance(before[key], dict):
            yield from removals(before[key], after[key], (*place, key))


def additions(before: Document, after: Document, place: Path = ()) -> Iterator[str]:
    for key, value in after.items():
        if key not in before:
            yield change("add", (*place, key), value=value)
        elif isinstance(value, dict):
            yield from additions(before[key], value, (*place, key))
        elif before[key] != value:
            yield change("replace", (*place, key), value=value)


def document_text(document: Document) -> str:
    sections = {section: content for section, content in document.items() if content}
    return json.dumps(sections, ensure_ascii=False, indent=2)


def write(text: str) -> int:
    """To standard output. Returns the exit code."""
    try:
        sys.stdout.buffer.write(text.encode())
        sys.stdout.buffer.flush()
    except OSError as error:
        print(f"standard output: {error.strerror}", file=sys.stderr)
        with contextlib.suppress(OSError):
            sys.stdout.close()  # the interpreter would try once more at its end
        return 1
    return 0


def main(command: str = "", *files: str) -> int:
    if (command, len(files)) not in (("document", 1), ("changes", 2)):
        print(__doc__, file=sys.stderr)
        return 2
    faults: list[str] = []
    try:
        dumps = [read_dump(file, faults) for file in files]
    except OSError as error:
        faults.append(f"{error.filename}: {error.strerror}")
    if faults:
        print("\n".join(faults), file=sys.stderr)
        return 2
    before, after = dumps[0], dumps[-1]
    lines = ([document_text(before)] if command == "document"
             else [*removals(before, after), *additions(before, after)])
    return write("".join(line + "\n" for line in lines))


if __name__ == "__main__":
    sys.exit(main(*sys.argv[1:]))
