#!/usr/bin/env python3
"""What may include what: an arrow goes down only, and no toolkit in the core."""

import pathlib
import re
import sys

CORE = {
    "platform": {"platform"},
    "platform/rich": {"platform/rich", "platform"},
    "host/common": {"host/common", "platform"},
    "irc/wire": {"irc/wire", "platform"},
    "irc": {"irc", "host/common", "platform"},
    "host/profile": {"host/profile", "irc/wire", "host/common", "platform"},
    "extensions": {"extensions", "host/common", "platform"},
    "chat": {"chat", "extensions", "host/common", "platform/rich", "platform"},
    "notify": {"notify", "chat", "host/common", "platform/rich", "platform"},
    "session": {"session", "irc", "notify", "chat", "host/common", "platform"},
    "settings": {"settings", "session", "host/common", "platform"},
    "host": {
        "host", "host/common", "host/profile", "settings", "session", "irc", "irc/wire", "notify", "chat", "platform",
    },
    "host/plugin": {"host"},
}
ABOVE = {
    "platform_qt": {"platform_qt", "platform"},
    "desktop": {"desktop", "chat", "host/common", "platform_qt", "platform/rich", "platform"},
    "desktop/views": {"desktop/views", "desktop", "host", "settings", "session", "notify", "chat", "extensions",
                      "host/common", "platform/rich", "platform"},
    "desktop/plugin": {"desktop/views"},
    "gate": {"gate", "host/common", "platform_qt", "platform"},
    "robot": {"robot", "irc", "irc/wire", "gate", "host/common", "host/profile", "platform_qt", "platform"},
    "orrery/face": {"orrery/face", "orrery", "desktop", "gate", "host/common", "host/profile", "platform_qt",
                    "platform"},
    "orrery": {"orrery", "gate", "host/common", "host/profile", "platform_qt", "platform"},
}
INCLUDE = re.compile(r'^\s*#\s*include\s*([<"])([^>"]+)[>"]', re.M)


def main(src):
    faults = []
    rules = CORE | ABOVE
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
                if other not in rules[folder]:
                    faults.append(f"{path}: {folder} must not include {name}")
            elif folder in CORE and re.match(r"Q[A-Za-z]|qt|sys/|unistd|fcntl", name):
                faults.append(f"{path}: <{name}> in the core")
    print("\n".join(faults) or "every include goes down")
    return 1 if faults else 0


sys.exit(main(pathlib.Path(sys.argv[1])))
