#!/usr/bin/env bash
# Installs the Debian packages that the program (and, with "test", the tests)
# needs, when they are missing. Safe to run again.
set -euo pipefail
pkgs=(cmake ninja-build g++ pkg-config qt6-base-dev libqt6sql6-sqlite libqt6sql6-mysql libqrencode-dev libcurl4-openssl-dev libsqlite3-dev fonts-noto-cjk qt6-translations-l10n)
if [ "${1:-}" = "test" ]; then
  pkgs+=(mariadb-server mariadb-client poppler-utils zbar-tools libbenchmark-dev cups-daemon cups-client hledger python3-pyftpdlib python3-openssl openssl)
fi
missing=()
for p in "${pkgs[@]}"; do
  [ "$(dpkg-query -W -f='${Status}' "$p" 2>/dev/null)" = 'install ok installed' ] || missing+=("$p")
done
if [ ${#missing[@]} -gt 0 ]; then
  echo "Installing: ${missing[*]}"
  SUDO=""; [ "$(id -u)" -ne 0 ] && SUDO="sudo"
  $SUDO apt-get update -q
  DEBIAN_FRONTEND=noninteractive $SUDO apt-get install -y -q --no-install-recommends "${missing[@]}"
fi
