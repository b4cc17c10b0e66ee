#!/usr/bin/env bash
# Installs the package, uses it without the sources, removes it and checks that nothing is left; then runs the portable
# folder. Works in a temporary layer over this system, or on the system itself if the machine permits no layer.
# REQUIRES: scripts/package.sh has run; root on a Debian system. Elsewhere it ends with status 77.
set -euo pipefail
cd "$(dirname "$0")/.."

if [ "$(id -u)" -ne 0 ] || ! command -v dpkg >/dev/null; then
    echo "Skipped: to install a package takes root on a Debian system." >&2
    exit 77
fi

if [ "${1:-}" != --here ]; then
    scripts/setup.sh test package
    layer=$(mktemp -d)
    trap 'rmdir "$layer"' EXIT
    # shellcheck disable=SC2016
    in_layer='mount -t tmpfs tmpfs "$0" && mkdir "$0/changes" "$0/work" "$0/root" &&
        mount -t overlay overlay -o "lowerdir=/,upperdir=$0/changes,workdir=$0/work" "$0/root" &&
        mount -t proc proc "$0/root/proc" && mount --rbind /dev "$0/root/dev" &&
        mkdir -p "$0/root/$PWD" && mount --rbind "$PWD" "$0/root/$PWD" && exec chroot "$0/root" "$@"'
    new_layer=(unshare --mount --pid --fork --kill-child sh -c "$in_layer" "$layer")
    if "${new_layer[@]}" dpkg-query -W dpkg >/dev/null 2>&1; then
        "${new_layer[@]}" "$PWD/scripts/try_package.sh" --here
    else
        echo "This machine makes no layer over its system; installing on the system itself."
        scripts/try_package.sh --here
    fi
    exit
fi

fail() {
    echo "FAILED: $*" >&2
    exit 1
}

package=$(echo build/package/*.deb)
archive=$(echo build/package/*.tar.gz)
[ -e "$package" ] && [ -e "$archive" ] || fail "there is no package; scripts/package.sh makes it"
! dpkg-query -W -f='${Status}' ztvlink 2>/dev/null | grep -q 'ok installed' || fail "ztvlink is installed here already"

# A user with an empty home and without access to the sources.
home=$(mktemp -d)
trap 'rm -rf "$home"' EXIT
cp -r tests/e2e "$package" "$archive" "$home"
chown -R nobody:nogroup "$home"
mkdir -p /tmp/.X11-unix # a display server needs it, and only root may make it
chmod 1777 /tmp/.X11-unix
as_user() {
    (cd "$home" && setpriv --reuid=nobody --regid=nogroup --clear-groups env -i PATH=/usr/local/bin:/usr/bin:/bin \
        HOME="$home" LANG=C.UTF-8 TMPDIR="$home" "$@")
}

# Lists all files of the system, except logs, caches and the package managers' records.
listing() {
    find /etc /opt /usr /var -xdev \
        \( -path /var/log -o -path /var/cache -o -path /var/lib/dpkg -o -path /var/lib/apt -o -path "$PWD" \) -prune \
        -o -type d -printf '%p/ %m\n' -o -printf '%p %m %s %l\n' | LC_ALL=C sort
}

# Uses ztv-ctl of a folder on a simulated sensor: writes, saves, compares, loads, watches.
try_ctl() {
    rm -rf "$home/ctl" "$home/sensor"
    as_user mkdir "$home/ctl"
    exec 9> >(as_user "$1" --quiet simulate --link "$home/sensor" >/dev/null) # its commands
    for ((i = 0; i < 100; i++)); do
        [ -e "$home/sensor" ] && break
        sleep 0.1
    done
    ctl() { as_user "$ctl" --port "$home/sensor" "$@"; }
    local ctl=$1 files="$home/ctl"
    [ "$(ctl get 28)" = '28   Near Distance  12.00"' ] || fail "$1 get"
    ctl --quiet set "Near Distance=20" >/dev/null || fail "$1 set"
    [ "$(ctl get 28)" = '28   Near Distance  20.00"' ] || fail "$1 get after set"
    ctl save "$files/20.ztv" >/dev/null || fail "$1 save"
    ctl diff "$files/20.ztv" || fail "$1 diff"
    ctl --quiet set 28=30 >/dev/null
    [ "$(ctl diff "$files/20.ztv" >/dev/null; echo $?)" = 1 ] || fail "$1 diff finds no difference"
    ctl --quiet load --yes "$files/20.ztv" >/dev/null || fail "$1 load"
    [ "$(ctl get 28)" = '28   Near Distance  20.00"' ] || fail "$1 get after load"
    [ "$(ctl --quiet watch 32 --every 200 --for 1s | wc -l)" -gt 3 ] || fail "$1 watch"
    echo quit >&9
    exec 9>&-
}

# Lists the packages that an empty system gets when this one is installed.
needed() {
    apt-get --simulate -o Dir::State::status=/dev/null --no-install-recommends install "./$package" | sed -n 's/^Inst \([^ ]*\).*/\1/p'
}

# Qt uses these where they are installed, and works without them: for the cursors of a theme, and for SVG files, of which the
# program shows none.
optional="libxcursor1 libxrender1 libqt6svg6"

listing >"$home/before"
needed >"$home/needed" || { apt-get update -qq && needed >"$home/needed"; }

echo "Installing $package"
dpkg --path-include='*' -i "$package" >"$home/dpkg.log" 2>&1 || { cat "$home/dpkg.log" >&2; fail "dpkg -i"; }
version=$(dpkg-query -W -f='${Version}' ztvlink)
for program in ztv-ctl ztv-sim; do
    [ "$(as_user $program --version)" = "$program $version" ] || fail "$program isn't of version $version"
done
as_user ztv-ctl ports >/dev/null || fail "ztv-ctl ports"
scripts/check_no_screen /usr/bin/ztv-ctl || fail "ztv-ctl links what needs a screen"
diff packaging/completions/ztv-ctl.bash /usr/share/bash-completion/completions/ztv-ctl
diff packaging/completions/ztv-ctl.fish /usr/share/fish/vendor_completions.d/ztv-ctl.fish
for part in Presets.fil ZTV.chm help; do # the help exists only if it was built
    [ ! -e "build/release/bin/$part" ] || diff -r "build/release/bin/$part" "/usr/lib/ztvlink/$part"
done
desktop-file-validate /usr/share/applications/ztv-link.desktop
for page in ztvlink ztv-ctl ztv-sim; do
    said=$(as_user man --warnings -E UTF-8 -Tutf8 "$page" 2>&1 >"$home/page")
    sed 's/.\x08//g' "$home/page" >"$home/$page.txt" # without overstruck letters
    [ -z "$said" ] || fail "man $page: $said"
    grep -q "ZTV Link $version" "$home/$page.txt" || fail "man $page isn't of version $version"
done
for program in ztv-ctl ztv-sim; do
    as_user $program --help | grep -o -- '--[a-z-]*' | sort -u | while read -r option; do
        grep -q -- "$option" "$home/$program.txt" || fail "man $program lacks $option"
    done
done
if command -v lintian >/dev/null; then # optional: it depends on more than a hundred packages
    as_user lintian --fail-on error,warning "$home/${package##*/}"
fi

echo "Running ztv-ctl against the simulated sensor"
try_ctl /usr/bin/ztv-ctl

echo "Running the program against the simulated sensor"
as_user "$home/e2e/assistive_client.sh" /usr/lib/ztvlink
echo "Opening settings files by their type"
as_user "$home/e2e/assistive_client.sh" /usr/lib/ztvlink file_type_client.py | grep '^/' >"$home/mapped"
while read -r file; do
    # A file may be registered by its old name, from before the root's folders moved below /usr.
    owner=$(dpkg -S "$file" 2>/dev/null || dpkg -S "${file#/usr}" 2>/dev/null) || fail "$file is of no package"
    [[ " $optional " == *" ${owner%%:*} "* ]] || grep -qx "${owner%%:*}" "$home/needed" || fail "$file is of ${owner%%:*}, which nothing asks for"
done <"$home/mapped"
echo "$(wc -l <"$home/mapped") files in use, all of $(wc -l <"$home/needed") packages that it asks for"

echo "Removing it"
dpkg --purge ztvlink >"$home/dpkg.log" 2>&1 || { cat "$home/dpkg.log" >&2; fail "dpkg --purge"; }
listing | diff "$home/before" - || fail "what is marked above was left, changed or taken away"

echo "Running the portable folder"
as_user mkdir "$home/a portable folder"
as_user tar -C "$home/a portable folder" -xf "$home/${archive##*/}"
portable=$(echo "$home/a portable folder"/ztvlink-*)
[ "$(as_user "$portable/ztv-sim" --version)" = "ztv-sim $version" ] || fail "the portable folder isn't of version $version"
scripts/check_no_screen "$portable/ztv-ctl" || fail "ztv-ctl links what needs a screen"
diff -r packaging/completions "$portable/completions"
try_ctl "$portable/ztv-ctl"
as_user "$home/e2e/assistive_client.sh" "$portable"
echo "The package and the portable folder are good."
