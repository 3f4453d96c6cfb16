# shellcheck shell=bash
# What the emulated machines are made of, to be sourced: parts of Debian's packages that
# scripts/arm-root has unpacked into a folder, put into the folder of a guest's root.

# add_libraries DEBIAN ROOT: the libraries that ROOT's programs and libraries name, those that these
# name, and their loader, into ROOT/lib.
add_libraries() {
  local debian=$1 root=$2 added=yes name library
  while [[ -n $added ]]; do
    added=''
    while read -r name; do
      if [[ ! -e $root/lib/$name ]]; then
        library=$(find "$debian"/{,usr/}lib -name "$name" -print -quit)
        cp -L "$library" "$root/lib/$name"
        chmod 755 "$root/lib/$name"
        added=yes
      fi
    done < <(find "$root" -type f -exec readelf -d {} + 2>/dev/null |
      sed -n 's/.*(NEEDED).*\[\(.*\)\]/\1/p' | sort -u)
  done
  find "$debian" \( -path '*/lib/ld-linux*' -o -path '*/lib64/ld-linux*' \) | while read -r library; do
    install -D "$library" "$root/${library#"$debian/"}"
  done
}

# add_modules DEBIAN ROOT MODULE...: the kernel's modules with those that they need. A name that the
# kernel does not have as a module is passed over.
add_modules() {
  local debian=$1 root=$2 version module file
  shift 2
  version=$(ls "$debian/lib/modules")
  /sbin/depmod -b "$debian" "$version"
  for module; do
    /sbin/modprobe -d "$debian" -S "$version" --show-depends "$module" || true
  done 2>/dev/null | awk '/^insmod/ { print $2 }' | sort -u | while read -r file; do
    install -D -m 644 "$file" "$root/${file#"$debian/"}"
  done
  cp "$debian/lib/modules/$version"/modules.{builtin,builtin.modinfo,order} \
    "$root/lib/modules/$version/"
  /sbin/depmod -b "$root" "$version"
}

# pack_root ROOT: the folder as the kernel unpacks it into memory, on standard output.
pack_root() { (cd "$1" && find . | cpio --quiet -o -H newc); }
