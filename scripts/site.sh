#!/usr/bin/env bash
# SPDX-License-Identifier: Apache-2.0
# The documentation as a site in build/site: the documents, and the pages of the public headers. It
# needs no server: open build/site/index.html. A link that leads nowhere is an error. Without a way
# to PyPI, only the pages of the headers are made.
set -euo pipefail
root=$(dirname "$(dirname "$(readlink -f "${BASH_SOURCE[0]}")")")
. "$root/scripts/packages.sh"
cd "$root"

# As they are installed, so that the names of files on the pages are those that programs include.
copyHeaders()
{
    local header headers
    headers=$(scripts/arrows.py --public)
    rm -rf build/api
    for header in $headers; do
        case $header in
            omt/*) install -D -m 644 "libsrc/$header" "build/api/include/omt-0/$header" ;;
            *) install -D -m 644 "libsrc/$header" "build/api/include/omtReader-1/$header" ;;
        esac
    done
}

# What the one list says, where it is not there yet.
setUp()
{
    cmp -s docs/requirements.txt build/sphinx/installed && return
    python3 -m venv build/sphinx
    if ! build/sphinx/bin/python -m pip install --quiet --disable-pip-version-check \
        -r docs/requirements.txt; then
        echo "PyPI cannot be reached. Left out: the site, but for build/api/html"
        exit 0
    fi
    cp docs/requirements.txt build/sphinx/installed
}

installPackages site
copyHeaders
doxygen docs/Doxyfile
setUp
rm -rf build/site
build/sphinx/bin/python -m sphinx --quiet --fail-on-warning --keep-going --jobs auto \
    -c docs/site -d build/sphinx/doctrees . build/site
cp -r build/api/html build/site/api
echo '<!doctype html><meta http-equiv="refresh" content="0; url=README.html"><a href="README.html">omtReader</a>' \
    > build/site/index.html
echo "The site is in build/site; begin with build/site/index.html"
