# Sourced by ./run: two phones side by side, and the exchange at which they register.

kPairLook=0.05 # seconds
kPairWaits=200

# A password that nobody has to type.
pair_password() { tr -dc a-z0-9 </dev/urandom | head -c 20; }

# pair_fill NAME NUMBER OTHER OTHER_NUMBER PASSWORD PORT: the files of one phone. What its user has set stays, but for
# the account, which is this start's.
pair_fill() {
  local root=$root/${1,,} new=0 account keys
  mkdir -p "$root" && fill_root || fail "cannot write to $root (--root chooses another folder)"
  account=$root/rundata/config/user/voip/sipAccount0.cfg keys=$root/rundata/data/dsskey.xml
  set_keys "$account" account Enable=1 "DisplayName=$1" "AuthName=$2" "UserName=$2" "password=$5" SIPServerHost=127.0.0.1 \
           "SIPServerPort=$6" UseOutboundProxy=0 'VoiceMail=*97' && set_keys "$account" Transfer bByOther=1 ||
    fail "cannot write $account"
  [ "$new" = 1 ] || return 0
  # Nobody's phone book has his own number for somebody else.
  sed -i -e "s|\"Anna\"|\"$3\"|" -e "s|\"1002\"|\"$4\"|g" "$root/rundata/data/"{contactData,picture-dial,dsskey}.xml ||
    fail "cannot write to $root"
  # The third key is the other phone's lamp, the fourth one the guest's, the fifth one calls the voice mail; so does
  # the message key while there is a message.
  sed -i -e 's|Label="Front desk" Extension="8001" Value="8001"|Label="Cleo" Extension="1003" Value="1003"|' \
         -e 's|Label="Door" Extension="" Value="8100"|Label="Voice mail" Extension="" Value="*97"|' "$keys" &&
    set_keys "$root/rundata/config/system.ini" Features bAutoCallOutMessage=1 || fail "cannot write to $root"
}

# pair_picture NAME: what the phone has instead of a camera: a ball, or coloured stripes, that move. NAME in the user's
# own HX_PICTURE_SOURCE is the phone's.
pair_picture() {
  local kind=pattern=ball
  [ "$1" = Anna ] || kind='pattern=smpte horizontal-speed=4'
  [ -z "${HX_PICTURE_SOURCE:-}" ] || { printf %s "${HX_PICTURE_SOURCE//NAME/$1}"; return; }
  printf %s "videotestsrc is-live=true $kind ! capsfilter caps=video/x-raw,width=640,height=480,framerate=25/1"
}

# pair_start NAME NUMBER PORT: a start of its own, which ends with this one.
pair_start() {
  HX_TITLE="$1, $2" HX_PICTURE_SOURCE=$(pair_picture "$1") setpriv --pdeathsig TERM -- ./run --built "$built" --root "$root/${1,,}" --port "$3" \
    ${control:+--control "$control.${1,,}"} > >(sed -u "s/^/$1: /") 2>&1 &
  phones+=($!)
}

pair_end() {
  trap '' INT QUIT TERM HUP
  [ ${#phones[@]} = 0 ] || { kill "${phones[@]}"; wait "${phones[@]}"; } 2>/dev/null
  [ -z "$exchange" ] || { kill "$exchange"; wait "$exchange"; } 2>/dev/null
  rm -f "$root/exchange"
}

run_pair() {
  local i address server anna ben guest second=$port ended
  phones=() exchange=''
  [ -x "$built/bin/hxRegistrar" ] || fail "$built holds no exchange"
  umask 077
  mkdir -p "$root" 2>/dev/null || fail "cannot make the folder $root (--root chooses another)"
  root=$(readlink -f "$root")
  anna=$(pair_password) ben=$(pair_password) guest=$(pair_password)
  printf '1001 %s Ben\n1002 %s Anna\n1003 %s Cleo\n' "$ben" "$anna" "$guest" 2>/dev/null >"$root/accounts" ||
    fail "cannot write to $root (--root chooses another folder)"
  trap pair_end EXIT
  trap 'exit 130' INT QUIT TERM HUP
  : >"$root/exchange"
  setpriv --pdeathsig TERM -- "$built/bin/hxRegistrar" "$root/accounts" >"$root/exchange" &
  exchange=$!
  for i in $(seq $kPairWaits); do [ -s "$root/exchange" ] && break; sleep $kPairLook; done
  address=$(head -n 1 "$root/exchange") server=${address##*:}
  [ -n "$server" ] || fail "the exchange did not start"
  pair_fill Anna 1002 Ben 1001 "$anna" "$server"
  pair_fill Ben 1001 Anna 1002 "$ben" "$server"
  fresh=0
  say "The exchange is at ${address#sip:}. Anna's phone has 1002, Ben's 1001. Calls stay on this machine."
  cat <<TEXT
What to try:
  call      dial 1001 at Anna's phone, answer at Ben's; hold, resume, hang up on either side
  lamps     the third key at the bottom of each home screen is the other phone: green when it is free, orange while it
            rings, red in a call; press it to call
  message   let it ring for 30 seconds: the other phone shows a message. Its message key (F9) calls *97, the voice
            mail: nothing is heard there, the call ends after three seconds, and the message is gone
  transfer  register a third phone on this machine as 1003 (Cleo; password $guest, server ${address#sip:}), and transfer
            a call to 1003
What you set on the phones stays in $root. ./run --pair --fresh begins anew.
TEXT
  pair_start Anna 1002 "$port"
  [ "$port" = 0 ] || second=$((port + 1))
  pair_start Ben 1001 "$second"
  while [ ${#phones[@]} -gt 0 ]; do
    wait -n -p ended "${phones[@]}" "$exchange"
    [ "$ended" != "$exchange" ] || { exchange=''; fail "the exchange has ended unexpectedly"; }
    for i in "${!phones[@]}"; do [ "${phones[i]}" != "$ended" ] || unset "phones[i]"; done
  done
  say "Both phones have ended."
}
