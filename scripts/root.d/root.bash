# shellcheck shell=bash
# Debian roots that have nothing but what is asked for, to be sourced. Each is made once per list of
# packages, kept as an archive below the user's cache, and unpacked for every use. Root may do that
# by itself, everybody else needs user namespaces (packages uidmap and util-linux).
#
#   open_root NAME PREPARATION [OPTION...] PACKAGE...     then $root is the folder
#   in_root FOLDER COMMAND                                runs a shell command in it

as_root=()
if ((EUID != 0)); then
  as_root=(unshare --user --map-auto --map-root-user)
fi

# The sources from which this machine's apt takes Debian, as lines of a sources.list: all, or those of
# one suite.
debian_sources() {
  # shellcheck disable=SC2016  # the fields are apt's
  local fields='$(ORIGIN)|$(REPO_URI)|$(RELEASE)|$(COMPONENT)'
  apt-get indextargets --format "$fields" 'Created-By: Packages' | sort -u |
    awk -F'|' -v suite="${1:-}" '/^Debian\|/ && (suite == "" || $3 == suite) { print "deb", $2, $3, $4 }'
}

# PREPARATION is a shell command that the root runs once, before it is put away. A root of several
# architectures is made of the release alone: its lists agree with each other, while those of updates
# may be out of step for hours.
open_root() {
  local name=$1 prepare=$2 options=() packages=() word
  shift 2
  for word; do
    if [[ $word == -* ]]; then
      options+=("$word")
    else
      packages+=("$word")
    fi
  done
  scripts/setup root
  local sources key archive suite
  suite=$(. /etc/os-release && echo "$VERSION_CODENAME")
  if [[ ${options[*]} == *--architectures=* ]]; then
    sources=$(debian_sources "$suite")
  else
    sources=$(debian_sources)
  fi
  key=$(sha256sum <<<"$sources ${options[*]} ${packages[*]} $prepare" | cut -c 1-12)
  archive=${XDG_CACHE_HOME:-$HOME/.cache}/hearth/roots/$name-$key.tar
  if [[ ! -e $archive ]]; then
    echo "root: making $archive"
    mkdir -p "${archive%/*}"
    # mmdebstrap takes the sources from a file; what a machine adds to Debian stays out.
    mmdebstrap --quiet --variant=apt --skip=cleanup/apt --dpkgopt=force-unsafe-io \
      --aptopt='APT::Install-Recommends "false"' --aptopt='APT::Get::Assume-Yes "true"' \
      --include="$(IFS=, && echo "${packages[*]}")" "${options[@]}" \
      --customize-hook="chroot \"\$1\" /bin/sh -ec '${prepare:-true}'" \
      "$suite" "${archive%.tar}.new.tar" - <<<"$sources"
    # Those of earlier lists of packages take hundreds of megabytes and are not needed again.
    rm -f "${archive%-*}"-????????????.tar
    mv "${archive%.tar}.new.tar" "$archive"
  fi
  root=$(mktemp -d "${TMPDIR:-/tmp}/hearth-root.XXXXXX")
  chmod 755 "$root"
  trap 'close_root' EXIT
  "${as_root[@]}" tar -C "$root" -xf "$archive" --numeric-owner
  "${as_root[@]}" cp /etc/resolv.conf "$root/etc/"
}

in_root() {
  # Kept apart from this machine's processes and mounts; the network is the machine's own.
  # shellcheck disable=SC2016  # expanded inside
  "${as_root[@]}" unshare --mount --pid --fork --kill-child sh -ec '
    mount --rbind /dev "$1/dev"
    mount -t proc proc "$1/proc"
    exec chroot "$1" /usr/bin/env -i PATH=/usr/local/sbin:/usr/local/bin:/usr/sbin:/usr/bin:/sbin:/bin \
      HOME=/root LC_ALL=C.UTF-8 DEBIAN_FRONTEND=noninteractive http_proxy="$http_proxy" \
      https_proxy="$https_proxy" /bin/bash -ec "cd $2 && $3"' sh "$root" "$1" "$2"
}

close_root() { "${as_root[@]}" rm -rf --one-file-system "$root"; }
