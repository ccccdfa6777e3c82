# scripts/prepare.sh
# What ./run and ./test share: the packages that Tavora is built from, and one configured build folder.

# Headers and tools for the build; the fonts and Qt's Japanese texts are what the window needs to be read.
build_packages=(build-essential cmake ninja-build ccache pkg-config
  qt6-base-dev libsqlite3-dev libicu-dev libpcre2-dev liblhasa-dev libcpp-httplib-dev)
run_packages=(fonts-noto-cjk qt6-translations-l10n libqt6network6)
test_packages=(sqlite3 curl xvfb openbox trayer xdotool)

# Asks dpkg once; only what is missing is installed, so a second call costs nothing.
install_packages() {
  local missing=() package
  for package in "$@"; do
    dpkg-query -W -f='${Status}' "$package" 2>/dev/null | grep -q 'ok installed' || missing+=("$package")
  done
  [ ${#missing[@]} -eq 0 ] && return 0
  echo "インストールします: ${missing[*]}"
  local as_root=()
  if [ "$(id -u)" -ne 0 ]; then
    command -v sudo >/dev/null || { echo "root で実行するか、sudo を入れてください。" >&2; return 1; }
    as_root=(sudo)
  fi
  "${as_root[@]}" env DEBIAN_FRONTEND=noninteractive apt-get update -q &&
    "${as_root[@]}" env DEBIAN_FRONTEND=noninteractive apt-get install -y -q --no-install-recommends "${missing[@]}"
}

# build PRESET [target…]
build_preset() {
  local preset=$1
  shift
  cmake --preset "$preset" >/dev/null || return 1
  cmake --build --preset "$preset" ${1:+--target "$@"}
}
