#!/bin/sh
# Puts the settings and data of the phone back to how they left the factory.
# HX_SYSROOT is the folder that holds the phone's file system; empty on a phone.
set -eu
root="${HX_SYSROOT:-}"
pristine="$root/phone/factory/rundata"
live="$root/rundata"
fresh="$live/.factory"

[ -d "$pristine" ] || {
    echo "factory.sh: $pristine is missing" >&2
    exit 1
}

# /rundata is a partition of its own: it is refilled in place. The copy is complete before anything old
# goes, and a run that was cut short is made good by the next one.
rm -rf "$fresh"
mkdir -p "$fresh"
cp -R "$pristine/." "$fresh"
sync
find "$live" -mindepth 1 -maxdepth 1 ! -name .factory -exec rm -rf {} +
find "$fresh" -mindepth 1 -maxdepth 1 -exec mv {} "$live" \;
rmdir "$fresh"
sync
