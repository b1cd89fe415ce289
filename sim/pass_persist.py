"""python3 -m sim.pass_persist TOP DATA_FILE...: answers snmpd's questions about one subtree out of a printer's data
files.

snmpd starts it (pass_persist in snmpd.conf(5)) and speaks with it in lines over its standard input and output; see
snmp_agent.py. TOP is the subtree's name; an object of a later file takes the place of an earlier one's.
"""

import sys

from .mib import (
    COUNTER,
    COUNTER64,
    GAUGE,
    INTEGER,
    IP_ADDRESS,
    OBJECT_ID,
    OCTET_STRING,
    TIMETICKS,
    Mib,
    Oid,
    Value,
    format_oid,
    parse_oid,
)

TYPE_WORDS = {
    INTEGER: "integer",
    COUNTER: "counter",
    GAUGE: "gauge",
    TIMETICKS: "timeticks",
    COUNTER64: "counter64",
    IP_ADDRESS: "ipaddress",
    OBJECT_ID: "objectid",
    OCTET_STRING: "octet",
}
TAGS = {word: tag for tag, word in TYPE_WORDS.items()} | {"string": OCTET_STRING}


def answer(mib: Mib, top: Oid, command: str, oid: Oid, value_line: str) -> list[str]:
    """The lines that answer one question."""
    if command == "set":
        return set_object(mib, oid, value_line)
    found = (oid, mib.get(oid)) if command == "get" else mib.next(oid, top)
    if found is None or found[1] is None:
        return ["NONE"]
    name, value = found
    return ["." + format_oid(name), TYPE_WORDS[value.tag], value_text(value)]


def set_object(mib: Mib, oid: Oid, value_line: str) -> list[str]:
    held = mib.get(oid)
    if held is None:
        return ["not-writable"]
    word, _, text = value_line.partition(" ")
    if TAGS.get(word) != held.tag:
        return ["wrong-type"]
    try:
        mib.set(oid, Value(held.tag, parse_set_value(word, text)))
    except ValueError:
        return ["wrong-value"]
    return ["DONE"]


def value_text(value: Value) -> str:
    if value.tag == OCTET_STRING:
        return value.data.hex(" ")
    if value.tag == OBJECT_ID:
        return "." + format_oid(value.data)
    if value.tag == IP_ADDRESS:
        return ".".join(map(str, value.data))
    return str(value.data)


def parse_set_value(word: str, text: str) -> int | bytes | Oid:
    if word == "string":
        return text.removeprefix('"').removesuffix('"').encode("latin-1")
    if word == "octet":
        return bytes.fromhex(text.strip('"'))
    if word == "objectid":
        return parse_oid(text)
    if word == "ipaddress":
        return bytes(int(octet) for octet in text.split("."))
    return int(text)


def main(top_name: str, *data_files: str) -> None:
    mib = Mib(*data_files)
    top = parse_oid(top_name)
    sys.stdin.reconfigure(encoding="latin-1")
    while line := sys.stdin.readline():
        command = line.strip()
        if command == "PING":
            lines = ["PONG"]
        elif command in ("get", "getnext", "set"):
            oid = parse_oid(sys.stdin.readline().strip())
            value_line = sys.stdin.readline().rstrip("\n") if command == "set" else ""
            mib.refresh()
            lines = answer(mib, top, command, oid, value_line)
        else:
            # snmpd sends an empty line after the value of a set.
            continue
        print("\n".join(lines), flush=True)


if __name__ == "__main__":
    main(*sys.argv[1:])
