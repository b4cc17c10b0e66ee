#!/usr/bin/env bash
# Sets up, builds and packs: build/package/ztvlink_VERSION_ARCH.deb, and the portable folder as
# build/package/ztvlink-VERSION-linux-ARCH.tar.gz. The same commit gives the same files.
set -euo pipefail
cd "$(dirname "$0")/.."

scripts/setup.sh build package
if ! command -v dpkg-deb >/dev/null; then
    echo "The package needs the tools of Debian (dpkg-dev)." >&2
    exit 1
fi
SOURCE_DATE_EPOCH=$(git log -1 --format=%ct 2>/dev/null || date +%s)
export SOURCE_DATE_EPOCH
umask 022
scripts/build.sh release -DZTV_TESTS=OFF

out=build/package
rm -rf "$out"
mkdir -p "$out/deb"
work=$PWD/$out
DESTDIR=$work/tree cmake --install build/release --prefix /usr --strip >/dev/null

cp -r build/release/packaging/debian "$out/deb/debian"
documents=$work/tree/usr/share/doc/ztvlink
install -D -m 644 packaging/debian/copyright "$documents/copyright"
install -m 644 build/release/packaging/debian/changelog "$documents/changelog"
gzip -9 -n "$documents/changelog" "$work"/tree/usr/share/man/man1/*.1
(
    cd "$work/deb"
    mkdir "$work/tree/DEBIAN"
    dpkg-shlibdeps "$work"/tree/usr/lib/ztvlink/{ZtvLink,ztv-ctl,ztv-sim}
    dpkg-gencontrol -P"$work/tree"
)
(cd "$work/tree" && find usr -type f -print0 | LC_ALL=C sort -z | xargs -0 md5sum >DEBIAN/md5sums)
dpkg-deb --root-owner-group --build "$work/tree" "$work" >/dev/null

# The program folder runs from any place, so it is the portable folder.
read -r _ version architecture <<<"$(dpkg-deb -W --showformat='${Package} ${Version} ${Architecture}' "$work"/*.deb)"
name=ztvlink-$version-linux-$architecture
mv "$work/tree/usr/lib/ztvlink" "$work/$name"
cp -r build/release/packaging/*.1 packaging/README.portable packaging/completions "$work/$name/"
tar -C "$work" -czf "$work/$name.tar.gz" --sort=name --owner=0 --group=0 --numeric-owner \
    --mtime="@$SOURCE_DATE_EPOCH" "$name"
rm -rf "$work/tree" "$work/deb" "${work:?}/$name"
ls -l "$work"
