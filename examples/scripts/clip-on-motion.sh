#!/bin/sh
# Records a clip whenever something moves before a camera.
set -eu

usage() {
  cat <<'TEXT'
Usage: clip-on-motion.sh SERVER[:PORT] DEVICE FOLDER [SECONDS [CLIPS]]

Watches the camera DEVICE (its id; 'orbelcast info SERVER' lists them) and, when
something moves, records SECONDS (10) of it as a clip in FOLDER; then it watches
again. Ends after CLIPS clips, or never. The login comes from ORBELCAST_USER and
ORBELCAST_PASSWORD; ORBELCAST names the program where it is not on PATH.
TEXT
}

[ "$#" -ge 3 ] || { usage >&2; exit 2; }
server="$1" device="$2" folder="$3" seconds="${4:-10}" clips="${5:-0}"
mkdir -p "$folder"

# A text as a script takes it: between double quotes.
quoted() { printf '"%s"' "$(printf '%s' "$1" | sed 's/[\\"]/\\&/g')"; }

host="${server%:*}" port="${server##*:}"
[ "$host" != "$server" ] || port=80

# A player on the camera. For two seconds the detection learns what the picture looks like; then the first motion
# begins a clip, inside the event, and the clip is ended after its time. Without motion within an hour there is none.
watch_once() {
  "${ORBELCAST:-orbelcast}" script <<SCRIPT
create p UserControl1
place p 9600 9000
load p Server=$(quoted "$host") Port=$port Username=$(quoted "${ORBELCAST_USER:-}") Password=$(quoted "${ORBELCAST_PASSWORD:-}") Device=$(quoted "$device")
set p.VS FrameRate 5
set p.VS MotionArea_x2 100
set p.VS MotionArea_Y2 100
set p.VS MotionSensivity 90
set p.VS MotionDetector true
run 2000
answer save $(quoted "$1")
answer compression "Motion JPEG"
on MotionDetected "call p AviStart"
until MotionDetected 3600000
run $((seconds * 1000))
call p StopAvi
SCRIPT
}

recorded=0
while :; do
  file="$folder/$(date +%Y-%m-%d_%H-%M-%S).avi"
  if watch_once "$file" >/dev/null && [ -s "$file" ]; then
    echo "$file"
    recorded=$((recorded + 1))
    [ "$recorded" -ne "$clips" ] || exit 0
  else
    # No motion, or no camera: not at once again, so that a camera that is down is left in peace.
    sleep 5
  fi
done
