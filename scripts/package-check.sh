#!/usr/bin/env bash
# Checks the Debian package built in BUILD (default build/): its files and
# its dependencies; then, when run as root, installs it (again, if it is
# there already) and starts both programs as an installed program is
# started, into a home folder of its own.
set -euo pipefail
build="${1:-build}"
debs=$(ls -t "$build"/tillora_*.deb)
deb=${debs%%$'\n'*}
fail() { echo "package-check: $*" >&2; exit 1; }

files=$(dpkg-deb -c "$deb" | awk '{print $6}')
for f in ./usr/bin/tillora ./usr/bin/tillora-admin ./usr/share/applications/tillora.desktop \
         ./usr/share/icons/hicolor/16x16/apps/tillora.png ./usr/share/icons/hicolor/48x48/apps/tillora.png \
         ./usr/share/icons/hicolor/256x256/apps/tillora.png ./usr/share/man/man1/tillora-admin.1.gz; do
  grep -qxF "$f" <<<"$files" || fail "$deb lacks $f"
done
# nothing of the build tree or the tests
if grep -E 'tst_|bench|CMake|/build/' <<<"$files"; then fail "$deb holds files of the build"; fi

depends=$(dpkg-deb -f "$deb" Depends)
for d in libqt6core6 libqt6widgets6 libqt6sql6 libqt6printsupport6 libqrencode4 \
         libqt6sql6-sqlite libqt6sql6-mysql qt6-qpa-plugins fonts-noto-cjk; do
  grep -qE "(^|, )$d( |,|$)" <<<"$depends" || fail "$deb does not depend on $d (Depends: $depends)"
done
# Whole outputs are taken before they are matched: with pipefail, a grep -q
# that stops reading early would fail the pipe on its writer's broken pipe.
[ "$(dpkg-deb -f "$deb" Package)" = "tillora" ] || fail "$deb has no package name"
echo "package-check: $(basename "$deb"): files and dependencies as expected"

if [ "$(id -u)" -ne 0 ]; then
  echo "package-check: not root, the package is not installed"
  exit 0
fi
DEBIAN_FRONTEND=noninteractive apt-get install -y -q --reinstall -o DPkg::Lock::Timeout=300 "./$deb" >/dev/null
[ "$(dpkg-query -W -f='${Version}' tillora)" = "$(dpkg-deb -f "$deb" Version)" ] || fail "the installed version differs"
version=$(/usr/bin/tillora --version)
[[ "${version%%$'\n'*}" =~ ^tillora\ \(Tillora\)\ [0-9]+\.[0-9]+\.[0-9]+$ ]] || fail "tillora --version: $version"
version=$(/usr/bin/tillora-admin --version)
[[ "${version%%$'\n'*}" =~ ^tillora-admin\ \(Tillora\)\  ]] || fail "tillora-admin --version: $version"

# An installed program keeps its data in the user's data folder, made on first use.
home=$(mktemp -d /tmp/tillora-home.XXXXXX)
trap 'rm -rf "$home"' EXIT
run() { env -u TILLORA_ROOT -u XDG_DATA_HOME HOME="$home" "$@"; }
run /usr/bin/tillora-admin init >/dev/null
[ -f "$home/.local/share/tillora/data/DATA.MDB" ] || fail "init made no tree in ~/.local/share/tillora"
[ "$(run /usr/bin/tillora-admin ctrl USE_TYPE)" = "1" ] || fail "the installed tillora-admin reads no settings"
[ "$(run /usr/bin/tillora-admin sql --db work "SELECT COUNT(*) FROM L_ETO")" = "60" ] || fail "no delivered rows"
run /usr/bin/tillora-admin backup "$home" >/dev/null 2>&1
ls "$home"/tillora-backup-*.tar >/dev/null || fail "no backup written"
echo "package-check: installed; tillora-admin made and backed up ~/.local/share/tillora"
