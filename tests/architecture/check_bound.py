#!/usr/bin/env python3
"""Every control that a form shows is bound: a view of the form names it. Walks the forms' headers.

A control without a widget is a dead button, and nobody notices. What is a control is told by its type; where
its view is, by who holds a reference to the form."""

import pathlib
import re
import sys

CONTROLS = (
    "Label|Image|CommandButton|CheckBox|ComboBox|EditCombo|TextBox|VScrollBar|ListBox|ListView|TreeView|"
    "ProgressBar|Toolbar|TabStrip|RichTextBox|IRCWin|UserList|Menu|HButton"
)
# What is shown nowhere on purpose, and why.
NOWHERE = {
    # Set with each block; their panel draws from the meter, so many times a second.
    "frmReceiveFile.ProgressBar1",
    "frmReceiveFile.ProgressBar2",
    "frmTransferStatus.ProgressBar1",
    "frmTransferStatus.ProgressBar2",
}
CONTROL = re.compile(rf"^    (?:ControlArray<)?(?:{CONTROLS})\b>? (\w+(?:, \w+)*)\s*[;{{(=]", re.MULTILINE)
CLASS = re.compile(r"^class (\w+)(?: final)?(?: : ([^{]*))?\{(.*?)^\};", re.MULTILINE | re.DOTALL)
MEMBER = re.compile(r"^    (?:std::optional<)?(\w+)>? (\w+);", re.MULTILINE)


class Form:
    def __init__(self, name, bases, body):
        public = re.split(r"^  (?:private|protected):", body, maxsplit=1, flags=re.MULTILINE)[0]
        self.name = name
        self.bases = re.findall(r"public (?:\w+::)?(\w+)", bases or "")
        self.controls = [one for names in CONTROL.findall(public) for one in names.split(", ")]
        self.members = {member: kind for kind, member in MEMBER.findall(public)}


def forms_of(src):
    found = {}
    for folder in ("chat", "notify", "session", "settings", "mail", "announce", "transfer", "extensions"):
        for header in sorted((src / folder).glob("*.h")):
            for name, bases, body in CLASS.findall(header.read_text()):
                found[name] = Form(name, bases, body)
    return found


def holders_of(form, forms):
    """The form itself, what derives from it, and what has it as a part."""
    yield form.name
    for other in forms.values():
        if form.name in other.bases or form.name in other.members.values():
            yield from holders_of(other, forms)


def unbound(src):
    forms = forms_of(src)
    folder = src / "desktop/views"
    sources = {path.stem: path.read_text() for path in sorted(folder.glob("*.cpp"))}
    texts = {}
    for header in sorted(folder.glob("*.h")):
        view = header.stem
        member = re.compile(rf"^\S.*\b{view}::", re.MULTILINE)
        own = [text for stem, text in sources.items() if stem == view or member.search(text)]
        texts[view] = "".join([header.read_text(), *own])
    for form in forms.values():
        holders = "|".join(set(holders_of(form, forms)))
        seen = "".join(text for text in texts.values() if re.search(rf"\b(?:{holders})\b\s*[&>]", text))
        for control in form.controls if seen else []:
            bound = re.search(rf"[.>]{control}(?![A-Za-z0-9])", seen) is not None
            if bound == (f"{form.name}.{control}" in NOWHERE):
                yield f"{form.name}.{control} is bound to {'a' if bound else 'no'} widget"
        if form.controls and not seen:
            yield f"{form.name} has controls and no view"


def main():
    faults = list(unbound(pathlib.Path(sys.argv[1])))
    print("\n".join(faults))
    return 1 if faults else 0


if __name__ == "__main__":
    sys.exit(main())
