#!/bin/bash
# Installs Corvane for everyone who uses this machine, or takes it away again.

usage="Usage: ./install.sh [--bundle FOLDER]
       ./install.sh --uninstall

Builds Corvane, as ./run does, and installs it for everyone who uses this machine: the application
directory /Applications/Corvane.app, links to it where desktops look (the command corvane, the menu
entry, icons, metadata, the manual page) and the polkit action that guards the key. Run it again to
upgrade; a Corvane that runs goes on undisturbed.

  --bundle FOLDER   install this Corvane.app instead of building one
  --uninstall       take everything away again, also the login item of the user who calls this;
                    only the settings and the key in the keyring stay
  --help            show this text

Run it as an ordinary user: sudo is asked for only where something is put in place or taken away.
With DESTDIR=FOLDER everything goes below FOLDER, and sudo is never asked for."

bundle='' uninstall=''
while [ $# != 0 ]; do
    case "$1" in
        --bundle) [ -d "${2:-}" ] || { echo "--bundle needs a folder" >&2; exit 2; }
            bundle=$(cd "$2" && pwd) && shift ;;
        --uninstall) uninstall=yes ;;
        --help | -h) echo "$usage"; exit ;;
        *) echo "$usage" >&2; exit 2 ;;
    esac
    shift
done

# Given from where this was called, which is left now.
[ -z "${DESTDIR:-}" ] || DESTDIR=$(realpath -m "$DESTDIR")
. "$(dirname "$0")/tools/setup/common.sh"
app=/Applications/Corvane.app
placement=tools/setup/placement.sh
root=()
[ "$(id -u)" = 0 ] || [ -n "${DESTDIR:-}" ] || root=(sudo)

# Whose login item and running program this is about; under sudo not root's.
user=$(id -un)
[ "$(id -u)" != 0 ] || user=${SUDO_USER:-$user}

# as_user COMMAND...: with the rights of $user.
as_user() {
    if [ "$(id -un)" = "$user" ]; then
        "$@"
    else
        setpriv --reuid "$user" --regid "$(id -g "$user")" --init-groups "$@"
    fi
}

# is_running: whether $user runs the installed program, also one that has been replaced since. Told by
# its command line, because the program hides from its own user which file it is.
is_running() {
    [ -z "${DESTDIR:-}" ] || return
    local process name program
    for process in /proc/[0-9]*; do
        read -r name <"$process/comm" && [ "$name" = corvane ] &&
            grep -q "^Uid:[[:space:]]$(id -u "$user")[[:space:]]" "$process/status" &&
            read -r -d '' program <"$process/cmdline" || continue
        case $program in
            corvane | "$app"/* | /usr/local/bin/corvane) return ;;
        esac
    done 2>/dev/null
    return 1
}

# require_root WHAT: says what sudo will be asked for, and fails where there is none.
require_root() {
    if [ -z "${root:-}" ]; then
        return
    fi
    command -v sudo >/dev/null || fail "$1 needs root, and there is no sudo" "As root: $0 $2"
    say "$1 needs root; sudo may ask for your password"
}

# login_item: the file by which $user's desktop starts the installed program, if there is one.
login_item() {
    local home folder
    home=$(getent passwd "$user" | cut -d: -f6)
    folder=$home/.config
    [ "$(id -un)" != "$user" ] || folder=${XDG_CONFIG_HOME:-${HOME:-$home}/.config}
    local entry=${DESTDIR:-}$folder/autostart/org.corvane.Corvane.desktop
    ! grep -qs "^Exec=.*$app/" "$entry" || echo "$entry"
}

if [ -z "${DESTDIR:-}" ] && [ "$(dpkg-query -W -f '${db:Status-Status}' corvane 2>/dev/null)" = installed ]; then
    fail "Corvane is installed as a Debian package" "To take that away: sudo apt-get purge corvane"
fi

if [ "$uninstall" ]; then
    files=$("$placement" list)
    item=$(login_item)
    if [ -z "$files$item" ]; then
        say "Corvane is not installed"
        exit
    fi
    say "taking away:"
    printf '    %s\n' $files "$item" | sed '/^ *$/d'
    if is_running; then
        say "asking the running Corvane to quit"
        as_user timeout 10 "$app/bin/corvane" --quit >/dev/null 2>&1 || true
        for _ in 1 2 3 4 5 6 7 8 9 10; do
            is_running || break
            sleep 0.5
        done
        ! is_running || say "it is still running, and ends with your session at the latest"
    fi
    if [ "$item" ]; then
        as_user rm -f "$item"
        as_user rmdir "${item%/*}" 2>/dev/null || true # others have entries there
    fi
    if [ "$files" ]; then
        require_root "taking it away" --uninstall
        "${root[@]}" "$placement" remove || fail "not everything could be taken away" \
            "Look at the message above, then run this again."
    fi
    say "Corvane is uninstalled; its settings and your key in the keyring are still there"
    exit
fi

if [ -z "$bundle" ]; then
    owner=$(stat -c %U .)
    if [ "$(id -u)" = 0 ] && [ "$owner" != root ]; then
        fail "the build would leave files of root in a checkout of $owner" \
            "As $owner: ./install.sh, which asks for sudo itself. Or, when built: $0 --bundle FOLDER"
    fi
    ensure_packages build
    ensure_modules assets
    build release bundle
    bundle=$PWD/build/release/Corvane.app
fi
version=$(as_user "$bundle/bin/corvane" --version) || fail "$bundle does not run here" \
    "Look at the message above. Nothing was installed."

say "installing $version:"
cat <<END
    ${DESTDIR:-}$app
    links to it in /usr/local/bin, /usr/local/share (applications, icons, man) and /usr/share/metainfo
    the polkit action, in /usr/share/polkit-1/actions
END
require_root "putting these in place" "--bundle '$bundle'"
"${root[@]}" "$placement" put "$bundle" || fail "Corvane could not be installed" "Look at the message above."
if is_running; then
    say "the Corvane that runs is still the one from before: corvane --quit, then corvane"
else
    say "installed; start it from the menu of your desktop or with: corvane"
fi
