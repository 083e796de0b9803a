#!/bin/sh
# on_a_screen.sh PROGRAM [ARGUMENT...]: runs it on a screen of its own with a window manager; 77 if there is none.
for needed in xvfb-run openbox; do
    command -v "$needed" >/dev/null || { echo "$needed is not installed"; exit 77; }
done
# libraries of the desktop leak what they keep for the life of the program
ASAN_OPTIONS=detect_leaks=0 DBUS_SESSION_BUS_ADDRESS=unix:path=/nonexistent QT_QPA_PLATFORM=xcb \
    exec "$(dirname "$0")/../../scripts/on_screen" "$@"
