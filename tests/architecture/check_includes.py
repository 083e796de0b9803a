#!/usr/bin/env python3
"""What may include what: an arrow goes down only, top folders form no circle, and no toolkit in the core."""

import pathlib
import re
import sys

CORE = {
    "platform": {"platform"},
    "platform/rich": {"platform/rich", "platform"},
    "common": {"common", "platform"},
    "irc/wire": {"irc/wire", "common", "platform"},
    "irc": {"irc", "common", "platform"},
    "profile": {"profile", "irc/wire", "common", "platform"},
    "extensions": {"extensions", "common", "platform"},
    "chat": {"chat", "extensions", "common", "platform/rich", "platform"},
    "notify": {"notify", "chat", "common", "platform/rich", "platform"},
    "announce": {"announce", "common", "platform"},
    "transfer": {"transfer", "common", "platform"},
    "mail": {"mail", "chat", "common", "platform/rich", "platform"},
    "session": {"session", "irc", "mail", "notify", "chat", "common", "platform"},
    "settings": {"settings", "session", "common", "platform"},
    "host": {
        "host", "common", "profile", "settings", "session", "irc", "irc/wire", "mail", "announce", "transfer", "notify", "chat",
        "extensions", "platform",
    },
    "host/plugin": {"host"},
}
ABOVE = {
    "simulation": {"simulation", "host", "irc", "common", "profile", "platform"},
    "simulation/robot": {"simulation/robot", "simulation", "robot", "platform"},
    "simulation/programs": {"simulation/programs", "common", "platform_qt", "platform"},
    "simulation/peer": {"simulation/peer", "transfer"},
    "simulation/files": {"simulation/files", "host", "orrery", "common", "platform_qt", "platform"},
    "simulation/windows": {"simulation/windows", "simulation", "desktop", "desktop/views", "orrery/face", "common",
                           "platform"},
    "platform_qt": {"platform_qt", "platform"},
    "desktop": {"desktop", "chat", "common", "platform_qt", "platform/rich", "platform"},
    "desktop/views": {"desktop/views", "desktop", "host", "announce", "transfer", "settings", "session", "notify", "chat", "mail",
                      "extensions", "common", "platform/rich", "platform"},
    "desktop/plugin": {"desktop/views"},
    "gate": {"gate", "common", "platform_qt", "platform"},
    "robot": {"robot", "irc", "irc/wire", "gate", "common", "profile", "platform_qt", "platform"},
    "orrery/face": {"orrery/face", "orrery", "desktop", "gate", "common", "profile", "platform_qt",
                    "platform"},
    "orrery/headless": {"orrery"},
    "orrery": {"orrery", "gate", "common", "profile", "platform_qt", "platform"},
}
INCLUDE = re.compile(r'^\s*#\s*include\s*([<"])([^>"]+)[>"]', re.M)


def circles(uses):
    """Top folders that reach themselves, however long the way."""
    def reached(start):
        seen, ahead = set(), [start]
        while ahead:
            for other in uses.get(ahead.pop(), set()) - seen:
                seen.add(other)
                ahead.append(other)
        return seen

    return [f"{folder}: top folders include each other in a circle" for folder in uses if folder in reached(folder)]


def main(src):
    faults = []
    rules = CORE | ABOVE
    uses = {}
    for path in sorted(src.rglob("*")):
        if path.suffix not in (".h", ".cpp"):
            continue
        folder = path.parent.relative_to(src).as_posix()
        if folder not in rules:
            faults.append(f"{path}: nobody said what {folder} may include")
            continue
        for kind, name in INCLUDE.findall(path.read_text()):
            if kind == '"':
                other = pathlib.PurePosixPath(name).parent.as_posix()
                tops = folder.split("/")[0], other.split("/")[0]
                if tops[0] != tops[1]:
                    uses.setdefault(tops[0], set()).add(tops[1])
                if other not in rules[folder]:
                    faults.append(f"{path}: {folder} must not include {name}")
            elif folder in CORE and re.match(r"Q[A-Za-z]|qt|sys/|unistd|fcntl", name):
                faults.append(f"{path}: <{name}> in the core")
    faults += circles(uses)
    print("\n".join(faults) or "every include goes down")
    return 1 if faults else 0


sys.exit(main(pathlib.Path(sys.argv[1])))
