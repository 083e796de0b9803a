#!/bin/sh
# get-hybrid.sh DIR: unpacks ircd-hybrid into DIR unless it is there. Its package excludes ngircd's, so it is
# never installed; it runs from DIR, with DIR as its working folder.
set -eu
[ $# -eq 1 ] || { echo "usage: $0 DIR" >&2; exit 2; }
case $1 in /*) dir=$1 ;; *) dir=$(pwd)/$1 ;; esac
[ ! -x "$dir/usr/sbin/ircd-hybrid" ] || exit 0

mkdir -p "$(dirname "$dir")"
work=$(mktemp -d "$dir.XXXXXX")
trap 'rm -rf "$work"' EXIT
mkdir "$work/root" "$work/packages"
cd "$work/packages"
packages=ircd-hybrid
/sbin/ldconfig -p | grep -q 'libltdl\.so\.7' || packages="$packages libltdl7"
# shellcheck disable=SC2086
apt-get -q -o APT::Sandbox::User="$(id -un)" download $packages >&2
for package in *.deb; do dpkg -x "$package" "$work/root"; done
mkdir "$work/root/lib-extra"
find "$work/root/usr/lib" -name 'libltdl.so.7*' -exec cp -P {} "$work/root/lib-extra/" \;

# The program changes to /usr and loads its modules from below it. Both places become relative to its working
# folder; the new texts are as long as the old ones.
LC_ALL=C sed -i -e 's#/usr/lib/ircd-hybrid/modules/#usr/lib//ircd-hybrid/modules/#g' \
    -e 's#\x00/usr\x00#\x00././\x00#' "$work/root/usr/sbin/ircd-hybrid"
chmod 755 "$work/root"
cd /
mv "$work/root" "$dir"
