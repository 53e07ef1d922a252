#!/usr/bin/env bash
# SPDX-License-Identifier: Apache-2.0
# scripts/bareRoot.sh FOLDER [WHEEL]: installs the packages of a folder in a bare Debian 12, as apt-get
# does it for a user, runs the tool there, builds programs with both libraries, and uses the Python
# package of the wheel. By hand, as root; takes a mirror, which is the one of this machine.
set -euo pipefail
root=$(dirname "$(dirname "$(readlink -f "${BASH_SOURCE[0]}")")")
folder=$(readlink -f "${1:?FOLDER is missing}")
wheel=${2:+$(readlink -f "$2")}
. "$root/scripts/packages.sh"
installPackages bare
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
cp "$folder"/*.deb "$tree/tmp"
inside sh -c "apt-get -q -y install --no-install-recommends /tmp/*.deb"
inside dpkg-query -W omt 'libomt*' 'libxml2' 'libgeographic*' libc6 libstdc++6

examples=/usr/share/doc/libomtreader-dev/examples
inside omt --version
inside omt show "$examples/models/HarbourBase.xml" --mim | sed -n 1,12p
inside omt encode "$examples/models/HarbourBase.xml" --mim --type SignalKind GaleWarning
inside omt check "$examples/check"

# Programs, by the packages of development alone.
inside apt-get -q -y install --no-install-recommends g++ pkg-config > /dev/null
cp "$root"/tests/consumer/*.cpp "$tree/tmp"
inside sh -c "cd /tmp && g++ -std=c++17 consumer.cpp -o consumer \$(pkg-config --cflags --libs omtReader) &&
    ./consumer && g++ -std=c++17 engineConsumer.cpp -o engine \$(pkg-config --cflags --libs omt) && ./engine"

if [[ -n $wheel ]]; then
    inside apt-get -q -y install --no-install-recommends python3-venv > /dev/null
    cp "$wheel" "$tree/tmp"
    inside sh -c "python3 -m venv /tmp/python && /tmp/python/bin/pip install --quiet --no-index /tmp/*.whl"
    inside /tmp/python/bin/python -c "import omtreader
codec = omtreader.load('$examples/models/HarbourBase.xml', mim=True).codec()
print(codec.decode('Berth.Identifier', bytes.fromhex('42000007')))"
fi
inside sh -c "apt-get -q -y purge omt 'libomt*' && ! find /usr /var -name '*omt[Rr]eader*' -o -name 'libomt*' | grep ."
