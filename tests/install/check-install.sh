#!/usr/bin/env bash
# Installs the build into an empty prefix and checks it as a desktop would find it: every file
# in place, the menu entry and the AppStream description valid and naming what was installed,
# the icons at their sizes, and the installed program running from there, without a display,
# on the encoder library of the prefix (not the build tree's).
# Usage: check-install.sh CMAKE BUILD_DIR VERSION BINDIR LIBDIR DATADIR
set -euo pipefail
cmake=$1 build=$2 version=$3 bindir=$4 libdir=$5 datadir=$6
id=org.capstan.Capstan
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
prefix=$work/prefix
failures=0
fail() { echo "FAIL: $*"; failures=$((failures + 1)); }

"$cmake" --install "$build" --prefix "$prefix" >"$work/install.log" 2>&1 || { cat "$work/install.log"; exit 1; }

program=$prefix/$bindir/capstan
library=$prefix/$libdir/libMediaEncoder.so
desktop=$prefix/$datadir/applications/$id.desktop
metainfo=$prefix/$datadir/metainfo/$id.metainfo.xml
icons=$prefix/$datadir/icons/hicolor
[ -x "$program" ] || fail "no program at $program"
[ -f "$library" ] || fail "no encoder library at $library"
for f in "$desktop" "$metainfo"; do [ -f "$f" ] || fail "no $f"; done
grep -q '<svg' "$icons/scalable/apps/$id.svg" 2>/dev/null || fail "no SVG icon in $icons/scalable/apps"

# The PNGs: real PNG files, drawn at the size of their folder (width and height in the header).
for size in 16 32 48 64 128 256; do
  png=$icons/${size}x$size/apps/$id.png
  if [ ! -f "$png" ]; then fail "no $png"; continue; fi
  # shellcheck disable=SC2207 # the first 24 bytes, as numbers
  head=($(od -An -tu1 -N24 "$png"))
  [ "${head[*]:1:3}" = "80 78 71" ] || fail "$png is not a PNG"
  w=$(((head[16] << 24) | (head[17] << 16) | (head[18] << 8) | head[19]))
  h=$(((head[20] << 24) | (head[21] << 16) | (head[22] << 8) | head[23]))
  [ "$w" = "$size" ] && [ "$h" = "$size" ] || fail "$png is ${w}x$h, not ${size}x$size"
done

# The menu entry: valid, and what it names is what was installed.
desktop-file-validate "$desktop" || fail "desktop-file-validate $desktop"
value() { sed -n "/^\[$2\]/,/^\[/s/^$3=//p" "$1" | head -1; }
[ "$(value "$desktop" 'Desktop Entry' Exec)" = capstan ] || fail "Exec is not the installed capstan"
icon=$(value "$desktop" 'Desktop Entry' Icon)
[ -f "$icons/scalable/apps/$icon.svg" ] || fail "Icon=$icon: no such icon installed"
[ "$(value "$desktop" 'Desktop Action Clip' Exec)" = "capstan --clip" ] || fail "the Clip action does not run capstan --clip"
[ "$(value "$desktop" 'Desktop Action Clip' Name)" = "Clip Screen Area" ] || fail "the Clip action's name"

# The AppStream description: valid, launching the installed entry, at the program's version.
appstreamcli validate --no-net "$metainfo" || fail "appstreamcli validate $metainfo"
grep -q "<launchable type=\"desktop-id\">$(basename "$desktop")</launchable>" "$metainfo" ||
  fail "the metainfo does not launch $(basename "$desktop")"
grep -q "<binary>$(basename "$program")</binary>" "$metainfo" || fail "the metainfo does not provide the binary"
grep -q "<release version=\"$version\"" "$metainfo" || fail "the metainfo has no release $version"

# The installed program, with an empty environment: no display, no library path.
run() { env -i PATH=/usr/bin:/bin timeout 20 "$program" "$@"; }
out=$(run --version) || fail "capstan --version exited $?"
[ "$out" = "capstan $version" ] || fail "capstan --version printed '$out', not 'capstan $version'"
out=$(run --help) || fail "capstan --help exited $?"
for option in --clip --version --help; do
  grep -q -- "^ *$option " <<<"$out" || fail "capstan --help does not list $option"
done
status=0
out=$(run --no-such-option 2>"$work/stderr") || status=$?
[ "$status" = 2 ] || fail "an unknown option exited $status, not 2"
[ -z "$out" ] && grep -q -- --clip "$work/stderr" || fail "an unknown option does not print the usage to stderr only"

# The encoder library is found in the prefix, through the program's RUNPATH, not the build tree.
found=$(env -i PATH=/usr/bin:/bin ldd "$program" | awk '$1 == "libMediaEncoder.so" { print $3 }')
[ -n "$found" ] && [ "$(realpath "$found")" = "$(realpath "$library")" ] ||
  fail "ldd finds libMediaEncoder.so at '$found', not $library"
! env -i PATH=/usr/bin:/bin ldd "$program" | grep 'not found' || fail "unresolved libraries"
! readelf -d "$program" | grep -E 'R(UN)?PATH' | grep -F "$(realpath "$build")" ||
  fail "the installed program's RUNPATH names the build tree"

[ "$failures" = 0 ] || { echo "$failures failures"; exit 1; }
echo "install into a prefix: ok"
