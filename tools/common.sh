# shellcheck shell=bash
# Sourced by check and by the scripts of this folder: common paths and functions.
# shellcheck disable=SC2034  # the variables are for the scripts that source this file

project=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd -P)
cache=${LATCHKEY_CACHE:-~/.cache/latchkey}
wine32_root=$cache/wine32/root  # a Debian for i386, for its Wine, if the machine has no 32-bit one
package_root=$cache/packages/root  # a clean Debian that the project's packages are installed in, for a test

# Sources that were compiled in another clone, or before a change of branch, are not compiled again. The preprocessor's
# output decides, because a list of the headers does not show that a header has moved.
if command -v ccache >/dev/null; then
  export CMAKE_C_COMPILER_LAUNCHER=ccache CMAKE_CXX_COMPILER_LAUNCHER=ccache
  export CCACHE_BASEDIR=$project CCACHE_NOHASHDIR=1 CCACHE_NODIRECT=1
  export CCACHE_SLOPPINESS=pch_defines,time_macros  # which precompiled headers require
fi

# 125 means a failure of the script itself, not of the program that it runs.
die() {
  printf '%s: %s\n' "${0##*/}" "$*" >&2
  exit 125
}

as_root() {
  if (( EUID == 0 )); then
    "$@"
  else
    command -v sudo >/dev/null || die 'needs root, and sudo is not installed'
    sudo "$@"
  fi
}

has_native_wine32() {
  [[ -x /usr/lib/wine/wine && -d /usr/lib/i386-linux-gnu/wine/i386-unix ]]
}

# Prints the Debian mirror that apt is configured to use; nothing if debootstrap's default must be
# used.
apt_mirror() {
  # shellcheck disable=SC2016  # apt-get expands it
  apt-get indextargets --format '$(REPO_URI)' 'Created-By: Packages' 'Codename: bookworm' 'Component: main' 2>/dev/null |
    grep -m1 -E '^https?://' || true
}
