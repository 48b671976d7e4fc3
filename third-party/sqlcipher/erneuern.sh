#!/usr/bin/env bash
# Proves that sqlite3.c and sqlite3.h are the pinned ones, or moves them to another version of
# the npm package that ships the SQLCipher amalgamation.
#
#   third-party/sqlcipher/erneuern.sh           fetch the version in QUELLE and compare
#   third-party/sqlcipher/erneuern.sh 6.1.0     take that version and pin it in QUELLE
#
# Every tarball must match the SHA-512 the registry publishes for it (what npm checks); the
# pinned one must also match the SHA-256 in QUELLE. Downloads are kept in
# ~/.cache/zepKontenStamm, checked again on every use. Needs curl, openssl, sha256sum, tar.
set -euo pipefail
hier="$(cd "$(dirname "$0")" && pwd)"
quelle="$hier/QUELLE"
wert() { sed -n "s/^$1=//p" "$quelle"; }
fehler() { echo "erneuern.sh: $*" >&2; exit 1; }

paket="$(wert paket)"
pfad="$(wert pfad)"
gepinnt="$(wert version)"
version="${1:-$gepinnt}"
[[ "$version" =~ ^[0-9]+\.[0-9]+\.[0-9]+$ ]] || fehler "Version \"$version\" ist keine x.y.z."
name="${paket##*/}-$version.tgz"
cache="${XDG_CACHE_HOME:-$HOME/.cache}/zepKontenStamm"
tgz="$cache/$name"

mkdir -p "$cache"
if [ ! -f "$tgz" ]; then
    curl -fsSL --proto '=https' -o "$tgz.teil" "https://registry.npmjs.org/$paket/-/$name"
    mv "$tgz.teil" "$tgz"
fi
veroeffentlicht="$(curl -fsSL --proto '=https' "https://registry.npmjs.org/$paket/$version" \
    | grep -o '"integrity": *"sha512-[^"]*"' | head -1 | sed 's/.*"sha512-//; s/"$//')"
[ -n "$veroeffentlicht" ] || fehler "die Registry nennt für $paket $version keine Prüfsumme."
[ "$(openssl dgst -sha512 -binary "$tgz" | base64 -w0)" = "$veroeffentlicht" ] \
    || fehler "$tgz passt nicht zur SHA-512 der Registry (Datei löschen und neu laden)."
sha_tarball="$(sha256sum "$tgz" | cut -d' ' -f1)"
if [ "$version" = "$gepinnt" ] && [ "$sha_tarball" != "$(wert sha256_tarball)" ]; then
    fehler "$name hat nicht die SHA-256 aus QUELLE."
fi

tmp="$(mktemp -d)"
trap 'rm -rf "$tmp"' EXIT
tar -xzf "$tgz" -C "$tmp" "$pfad/sqlite3.c" "$pfad/sqlite3.h" "$pfad/VERSION.txt"
if [ "$version" = "$gepinnt" ]; then
    cmp -s "$tmp/$pfad/sqlite3.c" "$hier/sqlite3.c" && cmp -s "$tmp/$pfad/sqlite3.h" "$hier/sqlite3.h" \
        || fehler "sqlite3.c/sqlite3.h weichen vom Paket $version ab."
    echo "sqlite3.c und sqlite3.h sind die aus $paket $version."
    exit 0
fi

cp "$tmp/$pfad/sqlite3.c" "$tmp/$pfad/sqlite3.h" "$hier/"
sed -i -e "s/^version=.*/version=$version/" \
    -e "s/^sha256_tarball=.*/sha256_tarball=$sha_tarball/" \
    -e "s/^sha256_sqlite3_c=.*/sha256_sqlite3_c=$(sha256sum "$hier/sqlite3.c" | cut -d' ' -f1)/" \
    -e "s/^sha256_sqlite3_h=.*/sha256_sqlite3_h=$(sha256sum "$hier/sqlite3.h" | cut -d' ' -f1)/" \
    "$quelle"
echo "$paket $version übernommen: SQLite $(cat "$tmp/$pfad/VERSION.txt"), SQLCipher" \
    "$(sed -n 's/^#define CIPHER_VERSION_NUMBER //p' "$hier/sqlite3.c")."
echo "Bitte die erste Zeile von LICENSE und den Abschnitt im README anpassen, dann bauen und testen."
