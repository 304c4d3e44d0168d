#!/bin/sh
# Puts the settings and data of the phone back to how they left the factory.
# HX_SYSROOT is the folder that holds the phone's file system; empty on a phone.
set -eu
umask 077 # settings hold passwords
root="${HX_SYSROOT:-}"
pristine="$root/phone/factory/rundata"
live="$root/rundata"
fresh="$live/.factory"
old="$live/.factory.old"

[ -d "$pristine" ] || {
    echo "factory.sh: $pristine is missing" >&2
    exit 1
}

# "factory.sh finish", at the start of a phone: a reset that had begun to take things away is gone through again, of one
# that had not nothing stays.
if [ "${1:-}" = finish ] && [ -z "$(ls -A "$old" 2>/dev/null)" ]; then
    rm -rf "$fresh" "$old"
    exit 0
fi

# /rundata is a partition of its own: it is refilled in place. The copy is complete before anything old
# goes, and a run that was cut short is made good by the next one. "run" belongs to the phone that is running:
# its processes meet there.
rm -rf "$fresh" "$old"
# Half a copy would keep the room that the settings need.
trap 'rm -rf "$fresh" "$old"' EXIT
mkdir -p "$fresh" "$old"
cp -R "$pristine/." "$fresh"
trap - EXIT
sync

# exchange NAME: away with the old one, and the new one, if there is one, in its place. A phone that runs may make it
# again in between; where it always does, the new one is laid over that.
moved=0
exchange() {
    tries=50
    until {
        moved=$((moved + 1))
        { [ ! -e "$live/$1" ] && [ ! -L "$live/$1" ]; } || mv "$live/$1" "$old/$moved"
    } && { [ ! -e "$fresh/$1" ] || mv -T "$fresh/$1" "$live/$1"; }; do
        tries=$((tries - 1))
        [ "$tries" -gt 0 ] && continue
        [ ! -d "$fresh/$1" ] || cp -R "$fresh/$1/." "$live/$1"
        break
    done
}
for entry in "$live"/* "$live"/.[!.]* "$fresh"/* "$fresh"/.[!.]*; do
    [ -e "$entry" ] || [ -L "$entry" ] || continue # done already
    case ${entry##*/} in
        .factory | .factory.old | run) ;;
        *) exchange "${entry##*/}" ;;
    esac
done
rm -rf "$fresh" "$old"
# A phone that runs starts anew when it sees this.
[ ! -d "$live/run" ] || : >"$live/run/restart"
sync
