#!/usr/bin/env bash
# Installs the Debian packages the build and the tests need; quiet and quick
# when all of them are there already.
set -euo pipefail
PKGS=(g++ cmake ninja-build ccache pkg-config
      libgtest-dev libgmock-dev googletest libbenchmark-dev
      libhdf5-dev hdf5-tools libtiff-tools libtiff-dev
      python3 python3-numpy python3-h5py python3-tifffile python3-colorspacious python3-colormath locales)
missing=()
for p in "${PKGS[@]}"; do
  dpkg-query -W -f='${Status}' "$p" 2>/dev/null | grep -q "install ok installed" || missing+=("$p")
done
if [ ${#missing[@]} -gt 0 ]; then
  echo "installing: ${missing[*]}"
  SUDO=""
  [ "$(id -u)" -ne 0 ] && SUDO="sudo"
  $SUDO apt-get update -qq
  DEBIAN_FRONTEND=noninteractive $SUDO apt-get install -y -qq --no-install-recommends "${missing[@]}" >/dev/null
fi
# A German locale for the tests that check number texts do not follow the
# host's locale.
if ! locale -a 2>/dev/null | grep -qi '^de_DE\.utf-\?8$'; then
  SUDO=""
  [ "$(id -u)" -ne 0 ] && SUDO="sudo"
  $SUDO localedef -i de_DE -f UTF-8 de_DE.UTF-8 >/dev/null 2>&1 || echo "note: no German locale could be made"
fi
