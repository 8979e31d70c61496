#!/usr/bin/env bash
# Installs what a build needs and is missing: Debian packages from scripts/packages.txt, and the header-only Taskflow
# library, which Debian 12 does not have and the release after it does. Only that one package is taken from there, with
# list and cache folders of its own, so that the system's package sources stay as they are.
set -euo pipefail
here=$(cd "$(dirname "$0")" && pwd)
taskflow_suite=trixie
taskflow_package=libtaskflow-cpp-dev

as_root() { if [ "$(id -u)" = 0 ]; then "$@"; else sudo "$@"; fi; }
installed() { dpkg-query -W -f='${Status}' "$1" 2>/dev/null | grep -q 'ok installed'; }

mapfile -t wanted < <(grep -vE '^\s*(#|$)' "$here/packages.txt")
missing=()
for package in "${wanted[@]}"; do installed "$package" || missing+=("$package"); done
if [ ${#missing[@]} -gt 0 ]; then
  echo "Installing: ${missing[*]}"
  as_root apt-get update -qq
  as_root env DEBIAN_FRONTEND=noninteractive apt-get install -y -qq --no-install-recommends "${missing[@]}" >/dev/null
fi

if ! installed "$taskflow_package"; then
  echo "Installing: $taskflow_package (from $taskflow_suite, that package alone)"
  mirror=$(apt-get indextargets --format '$(REPO_URI)' 'Created-By: Packages' 'Codename: bookworm' | head -n 1)
  [ -n "$mirror" ] || mirror=$(apt-get indextargets --format '$(REPO_URI)' 'Created-By: Packages' | head -n 1)
  if [ -z "$mirror" ]; then
    echo "setup: no Debian mirror stands in this system's package sources, so $taskflow_package can't be fetched" >&2
    exit 1
  fi
  state=$(mktemp -d)
  trap 'rm -rf "$state"' EXIT
  chmod 755 "$state"
  mkdir -p "$state/lists/partial" "$state/archives/partial" "$state/parts"
  echo "deb [signed-by=/usr/share/keyrings/debian-archive-keyring.gpg] $mirror $taskflow_suite main" > "$state/sources.list"
  own=(-o "Dir::Etc::SourceList=$state/sources.list" -o "Dir::Etc::SourceParts=$state/parts"
       -o "Dir::State::Lists=$state/lists" -o "Dir::Cache::Archives=$state/archives"
       -o "Dir::Cache::pkgcache=$state/pkgcache.bin" -o "Dir::Cache::srcpkgcache=$state/srcpkgcache.bin"
       -o "APT::Sandbox::User=root")
  as_root apt-get "${own[@]}" update -qq
  (cd "$state" && as_root apt-get "${own[@]}" download -qq "$taskflow_package")
  as_root dpkg -i "$state"/"$taskflow_package"_*.deb >/dev/null
fi
