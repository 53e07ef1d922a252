#!/usr/bin/env bash
# SPDX-License-Identifier: Apache-2.0
# scripts/bareRoot.sh FOLDER: installs the packages of a folder in a bare Debian 12, as apt-get does
# it for a user, and runs the tool there. By hand, as root; takes debootstrap and a mirror, which is
# the one of this machine.
set -euo pipefail
packages=$(readlink -f "${1:?FOLDER is missing}")
tree=$(mktemp -d)
leave()
{
    ! mountpoint -q "$tree/proc" || umount "$tree/proc"
    rm -rf --one-file-system "$tree"
}
trap leave EXIT

inside()
{
    chroot "$tree" env LC_ALL=C.UTF-8 DEBIAN_FRONTEND=noninteractive "$@"
}

mirror=$(apt-get indextargets --format "\$(REPO_URI)" "Codename: bookworm" | head -n 1)
debootstrap --variant=minbase bookworm "$tree" "$mirror" > "$tree.log" || { cat "$tree.log"; exit 1; }
rm "$tree.log"
cp "$packages"/*.deb "$tree/tmp"
inside sh -c "apt-get -q -y install --no-install-recommends /tmp/*.deb"
inside dpkg-query -W omt 'libomt*' 'libxml2' 'libgeographic*' libc6 libstdc++6

examples=/usr/share/doc/libomtreader-dev/examples
inside omt --version
inside omt show "$examples/models/HarbourBase.xml" --mim | sed -n 1,12p
inside omt encode "$examples/models/HarbourBase.xml" --mim --type SignalKind GaleWarning
inside sh -c "apt-get -q -y purge omt 'libomt*' && ! find /usr /var -name '*omt[Rr]eader*' -o -name 'libomt*' | grep ."
