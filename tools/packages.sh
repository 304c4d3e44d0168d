# Sourced by ./run and ./test: the Debian packages that each needs, and how they get there.

BUILD_PACKAGES="g++ cmake ninja-build ccache lld pkg-config qt6-base-dev qt6-base-private-dev
  qt6-base-dev-tools qt6-tools-dev qt6-tools-dev-tools qt6-l10n-tools libgl-dev libcrypt-dev libexpat1-dev libfontconfig-dev librsvg2-dev
  qt6-webengine-dev qt6-websockets-dev libboost-dev libjpeg62-turbo-dev libpng-dev libisal-dev libgstreamer1.0-dev libgstreamer-plugins-base1.0-dev
  gstreamer1.0-plugins-base gstreamer1.0-plugins-good gstreamer1.0-plugins-bad gstreamer1.0-plugins-ugly
  libcurl4-openssl-dev libsofia-sip-ua-dev libsrtp2-dev libssl-dev
  gstreamer1.0-libav gstreamer1.0-tools
  libcairo2-dev tzdata fonts-noto-core fonts-noto-extra fonts-noto-cjk"
# locales: a test prints numbers under a decimal comma. docbook-xsl, shared-mime-info: documents that others wrote.
# sip-tester, baresip-core: phones that call ours; kamailio: a server at which they register.
# nginx-light: the cache that the signage server's document describes; the tests start their own.
TEST_PACKAGES="libgtest-dev libgmock-dev locales clang-format docbook-xsl shared-mime-info nginx-light openssl sip-tester
  baresip-core baresip-ffmpeg kamailio kamailio-tls-modules kamailio-presence-modules"
WINDOW_PACKAGES="xserver-xephyr"
BROWSER_PACKAGES="tigervnc-standalone-server novnc"
FUZZ_PACKAGES="clang libclang-rt-14-dev"
# alsa-utils: recorded speech.
BENCH_PACKAGES="libbenchmark-dev libpugixml-dev alsa-utils"

# Bold in a terminal alone: a file or a pipe gets the words.
say() { if [ -t 1 ]; then printf '\033[1m%s\033[0m\n' "$*"; else printf '%s\n' "$*"; fi; }
fail() { printf '%s: %s\n' "$(basename "$0")" "$*" >&2; exit 1; }

missing_packages() {
  local name
  for name in "$@"; do
    dpkg-query -W -f='${db:Status-Status}' "$name" 2>/dev/null | grep -qx installed || printf '%s ' "$name"
  done
}

# Installs what is missing of the packages named; a no-op when all are there.
need_packages() {
  command -v dpkg-query >/dev/null || fail "this needs Debian 12 (no dpkg here)"
  local missing root=""
  missing=$(missing_packages "$@")
  [ -n "$missing" ] || return 0
  if [ "$(id -u)" != 0 ]; then
    command -v sudo >/dev/null || fail "these packages are missing, and there is no sudo to install them: $missing"
    root=sudo
  fi
  say "Installing: $missing"
  $root apt-get update -q || fail "apt-get update failed: is the network there?"
  # shellcheck disable=SC2086
  $root env DEBIAN_FRONTEND=noninteractive apt-get install -y -q --no-install-recommends $missing ||
    fail "could not install: $missing"
}

# build PRESET TARGET...: configures once, then builds; ninja shows the progress.
build() {
  local preset=$1; shift
  local log=build/$preset/configure.log
  mkdir -p "build/$preset"
  if [ ! -f "build/$preset/build.ninja" ]; then
    say "Configuring ($preset)"
    cmake --preset "$preset" >"$log" 2>&1 || { tail -20 "$log" >&2; fail "cmake failed; all of it: $log"; }
  fi
  say "Building ($preset)"
  cmake --build "build/$preset" --target "$@" || fail "the build failed; the first error is above"
}
