#!/bin/bash
# Installs the bundle and its links, or removes them: the part of install.sh that needs root. $DESTDIR is
# prepended to every path, for tests and packagers.
#
#   placement.sh digest FOLDER    prints a digest of the bundle FOLDER
#   placement.sh put FOLDER DIGEST POLICY_DIGEST
#                                 installs the bundle FOLDER, replacing an installed one
#   placement.sh remove           removes everything
#   placement.sh list             lists what `remove` would remove, one path per line
#
# Others may change the bundle at any time, above all while sudo waits for a password. `put` therefore copies it
# into a folder of its own, checks that copy against the digests (SHA-256 of the bundle and of the polkit policy),
# and from then on reads nothing else.

set -euo pipefail
umask 022
export LC_ALL=C.UTF-8

destination=${DESTDIR:-}
app=/Applications/Corvane.app
# Hidden, so that file managers do not show them, and beside the bundle, so that renaming can replace it: a
# running program keeps its open files.
staged=$destination/Applications/.Corvane.app.new
replaced=$destination/Applications/.Corvane.app.old
# Copied, unlike the other files, which are linked: write access to the bundle must not give write access to
# polkit's rules.
policy=usr/share/polkit-1/actions/org.corvane.policy
# Polkit reads only files whose names end with ".policy".
staged_policy=$destination/usr/share/polkit-1/actions/.org.corvane.policy.new
# Debian 12's polkit and AppStream read /usr/share only.
link_folders=(usr/local/bin usr/local/share/applications usr/local/share/icons/hicolor
    usr/local/share/man/man1 usr/share/metainfo)

fail() {
    printf 'error: %s\n' "$*" >&2
    exit 1
}

# digest FOLDER: prints a digest of the paths and contents in the folder; fails unless it holds only regular
# files and folders.
digest() {
    local other
    other=$(find "$1" ! -type f ! -type d -print -quit)
    [ -z "$other" ] || fail "$other is neither a file nor a folder"
    (cd "$1" && find . -type f -print0 | sort -z | xargs -0 sha256sum) | sha256sum | cut -d' ' -f1
}

is_bundle() { [ -x "$1/bin/corvane" ] && [ -f "$1/share/applications/org.corvane.Corvane.desktop" ]; }

is_ours() { [ -L "$1" ] && [[ $(readlink "$1") == "$app"/* ]]; }

is_our_policy() { [ -f "$1" ] && grep -q 'action id="org\.corvane\.' "$1"; }

# our_links: prints every link into the bundle, including dangling ones.
our_links() {
    local folder
    for folder in "${link_folders[@]}"; do
        [ ! -d "$destination/$folder" ] || find "$destination/$folder" -type l -lname "$app/*"
    done
}

# wanted_links BUNDLE: prints a line "PATH TARGET" for each link of the bundle, both without $DESTDIR.
wanted_links() {
    local file
    echo "/usr/local/bin/corvane $app/bin/corvane"
    (cd "$1/share" && find applications icons man metainfo ! -type d) | while read -r file; do
        case $file in
            metainfo/*) echo "/usr/share/$file $app/share/$file" ;;
            *) echo "/usr/local/share/$file $app/share/$file" ;;
        esac
    done
}

drop_dangling_links() {
    our_links | while read -r link; do
        [ -e "$destination$(readlink "$link")" ] || rm -f "$link"
    done
}

# used_folders: prints the folders that this installation may have created, the deepest first.
used_folders() {
    local path target
    {
        our_links
        ! is_bundle "$destination$app" || wanted_links "$destination$app" | while read -r path target; do
            echo "$destination$path"
        done
        echo "$destination/$policy"
    } | sed 's|/[^/]*$||' | sort -ur
}

# drop_empty_folders FOLDERS: removes the empty ones of these folders (one per line) and parents that become
# empty.
drop_empty_folders() {
    local folder
    while read -r folder; do
        # The folder for manual pages is Debian's own.
        while [[ $folder == "$destination"/usr/*share/* && $folder != */share/man ]] && [ -d "$folder" ]; do
            rmdir "$folder" 2>/dev/null || break
            folder=${folder%/*}
        done
    done <<<"$1"
    # A folder with other permissions was not created by this script.
    folder=$destination/Applications
    [ ! -d "$folder" ] || [ "$(stat -c %a "$folder")" != 755 ] ||
        rmdir --ignore-fail-on-non-empty "$folder"
}

# A missing cache needs no refresh: desktops then read the folders themselves.
refresh_caches() {
    local share=$destination/usr/local/share
    if [ -f "$share/applications/mimeinfo.cache" ] && command -v update-desktop-database >/dev/null; then
        update-desktop-database -q "$share/applications" || true
    fi
    if [ -d "$share/icons/hicolor" ]; then
        touch "$share/icons/hicolor" # running desktops check its modification time
        if [ -f "$share/icons/hicolor/icon-theme.cache" ] && command -v gtk-update-icon-cache >/dev/null; then
            gtk-update-icon-cache -q -t "$share/icons/hicolor" || true
        fi
    fi
}

# recover: cleans up after an earlier run that was killed between two renames.
recover() {
    rm -rf "$staged" "$staged_policy"
    if [ -d "$replaced" ] && ! is_bundle "$destination$app"; then
        rm -rf "$destination$app"
        mv -T "$replaced" "$destination$app"
    fi
    rm -rf "$replaced"
}

undo() {
    local status=$?
    trap - EXIT
    if [ -d "$replaced" ]; then
        rm -rf "$destination$app"
        mv -T "$replaced" "$destination$app"
        rm -rf "$staged" "$staged_policy"
        drop_dangling_links
        echo "The installation is as it was before." >&2
    elif [ "$fresh" = yes ]; then
        remove
        echo "Nothing is installed." >&2
    else
        rm -rf "$staged" "$staged_policy"
        echo "The installation is as it was before." >&2
    fi
    exit "$status"
}

put() {
    local bundle=$1 expected=$2 expected_policy=$3 path target found
    is_bundle "$bundle" || fail "$bundle is not a bundle of Corvane"
    recover
    fresh=yes
    if [ -e "$destination$app" ] || [ -L "$destination$app" ]; then
        is_bundle "$destination$app" || fail "$destination$app exists and is not Corvane; move it away first"
        fresh=no
    fi
    [ ! -e "$destination/$policy" ] || is_our_policy "$destination/$policy" ||
        fail "$destination/$policy exists and does not belong to this installation; move it away first"

    trap undo EXIT
    trap 'exit 130' INT TERM HUP
    mkdir -p "$destination/Applications"
    # Whoever may write there could exchange what is checked for something else.
    [ "$(id -u)" != 0 ] || [ -z "$(find "$destination/Applications" -maxdepth 0 \( ! -uid 0 -o -perm /022 \))" ] ||
        fail "$destination/Applications must belong to root and be writable by nobody else"
    # Closed to others until it is checked: a link put into the bundle may have led to files of others.
    mkdir -m 700 "$staged"
    cp -R -P -T "$bundle" "$staged"
    found=$(digest "$staged") || exit 1
    [ "$found" = "$expected" ] || fail "$bundle has changed since it was checked"
    chmod -R u=rwX,go=rX "$staged"
    while read -r path target; do
        path=$destination$path
        [ ! -e "$path" ] && [ ! -L "$path" ] || is_ours "$path" ||
            fail "$path exists and does not belong to this installation; move it away first"
    done < <(wanted_links "$staged")
    install -D -m 644 "$staged/share/polkit-1/actions/org.corvane.policy" "$staged_policy"
    [ "$(sha256sum <"$staged_policy")" = "$expected_policy  -" ] ||
        fail "the polkit policy of $bundle is not the one of this version"
    [ "$fresh" = yes ] || mv -T "$destination$app" "$replaced"
    mv -T "$staged" "$destination$app"
    while read -r path target; do
        path=$destination$path
        mkdir -p "${path%/*}"
        [ "$(readlink "$path")" = "$target" ] || ln -sfn "$target" "$path"
    done < <(wanted_links "$destination$app")
    drop_dangling_links
    refresh_caches
    # The new version is complete from here on; the remaining steps must not be interrupted.
    trap '' INT TERM HUP
    mv -T "$staged_policy" "$destination/$policy"
    trap - EXIT
    rm -rf "$replaced"
}

remove() {
    local folders
    recover
    folders=$(used_folders)
    our_links | while read -r link; do
        rm -f "$link"
    done
    ! is_our_policy "$destination/$policy" || rm -f "$destination/$policy"
    if is_bundle "$destination$app"; then
        mv -T "$destination$app" "$staged"
        rm -rf "$staged"
    elif [ -e "$destination$app" ]; then
        echo "$destination$app is not Corvane and was not removed" >&2
    fi
    refresh_caches
    drop_empty_folders "$folders"
}

list() {
    local path
    for path in "$destination$app" "$staged" "$replaced"; do
        ! is_bundle "$path" || echo "$path"
    done
    our_links
    ! is_our_policy "$destination/$policy" || echo "$destination/$policy"
}

case "${1:-} $#" in
    'digest 2') digest "$2" ;;
    'put 4') put "$2" "$3" "$4" ;;
    'remove 1') remove ;;
    'list 1') list ;;
    *) fail "usage: placement.sh digest FOLDER | put FOLDER DIGEST POLICY_DIGEST | remove | list" ;;
esac
