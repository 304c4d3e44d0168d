#!/usr/bin/env bash
# Makes docs/contact-sheet.jpg: every page and state, in all five languages, from the built phone.
# usage: tools/contact-sheet.sh
set -eu
cd "$(dirname "$(readlink -f "$0")")/.."
. tools/packages.sh
build=build/release
build release hxPhone hxctl hxRootfs hxContactSheet hxSignServer hxSignageDemo
work=$(mktemp -d)
trap 'kill "$phone" "$feeds" 2>/dev/null || true; rm -rf "$work"' EXIT

cp -r "$build/rootfs/rundata" "$work/rundata"
ln -s "$PWD/$build/rootfs/phone" "$work/phone"
ln -s "$PWD/$build/rootfs/mini-boot" "$work/mini-boot"
mkdir -p "$work/rundata/run" "$work/storage" "$work/shots"
sed -i '0,/name=""/s//name="HRBR"/; 0,/name=""/s//name="TIDE"/' "$work/rundata/data/stockData.xml"
"$build/bin/hxSignServer" --port none --feeds 6090 --clock 2026-11-21T14:05:00Z "$build/signageDemo" >/dev/null 2>&1 &
feeds=$!
QT_QPA_PLATFORM=offscreen "$build/bin/hxPhone" --sysroot "$work" --control "$work/control" 2>/dev/null &
phone=$!
ctl() { "$build/bin/hxctl" -s "$work/control" "$@" >/dev/null; }
until ctl wait page frmDesktop 10000 2>/dev/null; do sleep 0.1; done

n=0
calls=0
shot() { ctl wait idle 3000; ctl shot "$work/shots/$(printf %03d $n).png"; n=$((n + 1)); }
back() { ctl key F4; ctl wait idle 3000; }

ctl set clock "2026-11-21 14:05:00"
ctl set line 0 state=5 user=1001 server=pbx new=3
sleep 4 # menus look at the clock every three seconds
for language in English Chinese German French Spanish; do
  ctl set language $language
  ctl wait idle 3000
  shot
  for menu in setting callfeature application media; do ctl menu $menu.xml; shot; back; done
  ctl open-info WAN /phone/resource/theme/default/bmp/menu/menu_wan.png WAN
  ctl wait page dlgWan 3000
  ctl touch 188 213; ctl touch 600 213; shot
  ctl key F1; shot
  ctl key Return; back
  ctl open "Date & Time"; shot; back
  ctl open "Account Setting"; shot
  ctl touch 270 100; shot; back; back
  ctl open "Directory"; shot; back
  ctl open "Call Histroy"; shot; back
  for page in "Photo Manager" "Sound Manager" "Sound Set" "Screen Saver" "Personalize" "Auto Provision"; do
    ctl open "$page"; ctl wait idle 3000; sleep 1; shot; back # a preview comes after a moment
  done
  for page in "Forward" "Hotline" "Call Waiting" "Key As Send" "Auto Answer" "Anonymous Call" "Video Set"; do
    ctl open "$page"; shot; back
  done
  for page in "Voice Mail" "Picture-dial Setting" "Door Phone1"; do
    ctl open "$page"; ctl wait idle 3000; shot; back
  done
  for page in "Weather" "Stock"; do
    ctl open "$page"; ctl wait idle 3000; sleep 1; shot; back # the feed's answer, and its pictures
  done
  ctl key 5; ctl wait page frmDial 3000; shot; back; back
  ctl ring 1002; ctl wait page frmCall 3000; ctl key F1
  calls=$((calls + 1))
  ctl streams $calls sound=Opus quality=4 encrypted=1; ctl wait idle 3000; shot; ctl key F4; ctl wait page frmDesktop 5000
  ctl open "LCD Adjusting"; ctl key Return; ctl wait page dlgCalibration 3000; shot; back
  ctl open "DSS Key"; shot; ctl key F1; shot; back; back
  ctl menu callfeature.xml; ctl key F1; ctl touch 233 300; ctl wait page dlgSpeedDial 3000; shot; back; back
  ctl open "Status"; shot; ctl key F2; shot; back; back
  ctl open "Security"; shot; back
  ctl menu setting.xml; ctl key F1; ctl touch 719 130; ctl wait page dlgPassWord 3000; shot; back; back
  ctl open "Reboot"; shot; ctl key Escape; ctl wait idle 3000
done
"$build/bin/hxContactSheet" docs/contact-sheet.jpg "$work"/shots/*.png
echo "docs/contact-sheet.jpg: $n pictures"
