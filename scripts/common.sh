# Shared by the scripts beside it: what the project needs, and how it is built. To be sourced.

project=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)

# Debian 12's packages: the compiler and build tools, then the libraries.
packages=(
  g++ cmake ninja-build pkg-config openssl
  libcurl4-openssl-dev libssl-dev libjsoncpp-dev libarchive-dev libidn2-dev libgtest-dev libcpp-httplib-dev
  libglib2.0-dev libwxgtk3.2-dev libdbusmenu-glib-dev libgtk-3-dev librsvg2-bin gettext
)

# What the tests and the demo need besides, to show windows where there is no screen and to drive them: a display, a
# window manager, a session bus, the accessibility bus, fonts, and pictures of the result.
display_packages=(
  xvfb openbox dbus at-spi2-core libatspi2.0-dev fonts-dejavu-core librsvg2-common imagemagick
)

say() { printf '== %s\n' "$*" >&2; }

missing_packages() {
  local package
  for package in "$@"; do
    dpkg-query -W -f='${db:Status-Status}' "$package" 2>/dev/null | grep -qx installed || echo "$package"
  done
}

# May sudo be used? Asked of whoever sits at the terminal; without one, only sudo that needs no password.
may_use_sudo() {
  if [ -t 0 ] && [ -z "${CI:-}" ]; then
    local answer
    read -r -p "Install with sudo: $*? [y/N] " answer
    [[ $answer == [yY]* ]]
  else
    sudo -n true 2>/dev/null
  fi
}

# install_missing PACKAGE...: installs those that are not there.
install_missing() {
  command -v dpkg-query >/dev/null || { say "not a Debian system: install by hand: $*"; return 0; }
  local wanted
  mapfile -t wanted < <(missing_packages "$@")
  [ ${#wanted[@]} -eq 0 ] && return 0
  local as=()
  if [ "$(id -u)" -ne 0 ]; then
    command -v sudo >/dev/null && may_use_sudo "${wanted[@]}" ||
      { say "these packages are missing, please install them: ${wanted[*]}"; return 1; }
    as=(sudo)
  fi
  say "installing ${wanted[*]}"
  # A runlevel of 1 keeps packaged services from being started.
  "${as[@]}" env DEBIAN_FRONTEND=noninteractive apt-get -qq update
  "${as[@]}" env DEBIAN_FRONTEND=noninteractive RUNLEVEL=1 \
    apt-get -qq install --yes --no-install-recommends "${wanted[@]}" >/dev/null
}

# build PRESET [CMAKE-ARGUMENT...]: configures and builds into build/PRESET.
build() {
  local preset=$1
  shift
  (cd "$project" && cmake --preset "$preset" "$@" >&2 && cmake --build --preset "$preset" >&2)
}
