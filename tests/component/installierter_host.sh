#!/usr/bin/env bash
# Installs the build into a temporary prefix, builds the probe host against the installed
# package and checks that it receives the release event.
set -euo pipefail
build="$1"
quelle="$2"
tmp="$(mktemp -d)"
trap 'rm -rf "$tmp"' EXIT
cmake --install "$build" --prefix "$tmp/prefix" >/dev/null
cmake -S "$quelle" -B "$tmp/host" -G Ninja -DCMAKE_PREFIX_PATH="$tmp/prefix" >/dev/null
cmake --build "$tmp/host" >/dev/null
ausgabe="$(QT_QPA_PLATFORM=offscreen LD_LIBRARY_PATH="$tmp/prefix/lib:$tmp/prefix/lib/x86_64-linux-gnu" "$tmp/host/host")"
echo "$ausgabe"
grep -qx "Programmende_OK 1" <<<"$ausgabe"
grep -qx "dllKontenStammEvent 3" <<<"$ausgabe"
