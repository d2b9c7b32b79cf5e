#!/bin/sh
# Takes a picture of a camera every minute.
set -eu

usage() {
  cat <<'TEXT'
Usage: picture-every-minute.sh ADDRESS FOLDER [SECONDS [COUNT]]

Saves the picture at ADDRESS (http://...) in FOLDER every SECONDS (60), as the
camera sent it; the file's name is the time. Ends after COUNT pictures, or never.
The login comes from ORBELCAST_USER and ORBELCAST_PASSWORD; ORBELCAST names the
program where it is not on PATH. A picture that cannot be had is told and left out.
TEXT
}

[ "$#" -ge 2 ] || { usage >&2; exit 2; }
address="$1" folder="$2" seconds="${3:-60}" count="${4:-0}"
mkdir -p "$folder"

# A text as a script takes it: between double quotes.
quoted() { printf '"%s"' "$(printf '%s' "$1" | sed 's/[\\"]/\\&/g')"; }

# One viewer, one picture. It is saved inside the event that tells that it is there: without one, no file.
take_picture() {
  "${ORBELCAST:-orbelcast}" script <<SCRIPT
create v VideoServerPush
set v Username $(quoted "${ORBELCAST_USER:-}")
set v Password $(quoted "${ORBELCAST_PASSWORD:-}")
on Connected $(quoted "call v SaveImage $(quoted "$1")")
call v Connect $(quoted "$address") true
SCRIPT
}

taken=0
while :; do
  file="$folder/$(date +%Y-%m-%d_%H-%M-%S).jpg"
  take_picture "$file" >/dev/null || true
  if [ -s "$file" ]; then echo "$file"; else echo "$0: no picture at $(date)" >&2; fi
  taken=$((taken + 1))
  [ "$taken" -ne "$count" ] || exit 0
  sleep "$seconds"
done
