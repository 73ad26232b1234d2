#!/usr/bin/env bash
# Makes the pictures of docs/pictures from the example town: every window in English and Croatian, light and
# dark, and the ways of defining areas.
# Needs a build with the tests (./check makes one).
set -euo pipefail
cd "$(dirname "$(readlink -f "$0")")/.."
bin=build/release/bin
[ -x "$bin/velmor-pictures" ] || { echo "build first: ninja -C build/release velmor velmor-pictures zemxvelmor zemxoverview" >&2; exit 1; }
export QT_QPA_PLATFORM=offscreen
export VELMOR_CONFIG_DIR
VELMOR_CONFIG_DIR="$(mktemp -d)"
trap 'rm -rf "$VELMOR_CONFIG_DIR"' EXIT
mkdir -p out docs/pictures
"$bin/velmor" run examples/import_town.velmor
mv out/town.dxf out/town_network.dxf
"$bin/velmor" run examples/town.velmor
"$bin/velmor-pictures" out/town.dxf out/town_network.dxf docs/pictures
ls docs/pictures
