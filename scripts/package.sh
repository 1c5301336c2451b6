#!/bin/bash
# Builds the Debian package of Lumora below build/package and checks it: scripts/package.sh
set -euo pipefail
cd "$(dirname "$(readlink -f "$0")")/.."
. scripts/setup.sh

need_packages build package
rm -rf build/package
mkdir -p build/package/lumora build/log
# The package is built from what is committed, in a folder of its own: dpkg-buildpackage writes above its folder.
git archive HEAD | tar -x -C build/package/lumora
say "Building the package (some minutes)"
quietly build/log/package.log env -C build/package/lumora \
    DEB_BUILD_OPTIONS="parallel=$(nproc) ${DEB_BUILD_OPTIONS-}" dpkg-buildpackage --build=binary --no-sign
say "Checking it"
desktop-file-validate packaging/lumora.desktop
appstreamcli validate --no-net packaging/*.metainfo.xml
lintian --fail-on error,warning build/package/lumora_*.changes
say "The package is finished:"
for package in build/package/lumora_*.deb; do
    say "  $package"
done
