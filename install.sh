#!/bin/bash
# Installs Corvane for all users of this machine, or removes it.

usage="Usage: ./install.sh [--bundle FOLDER]
       ./install.sh --uninstall

Builds Corvane, as ./run does, and installs it for all users of this machine: the application
directory /Applications/Corvane.app, links to it where desktops look (the command corvane, the menu
entry, icons, metadata, the manual page) and the polkit action that guards the key. Run it again to
upgrade; a running Corvane is not affected.

  --bundle FOLDER   install this Corvane.app instead of building one
  --uninstall       remove everything, including the login item of the user who runs this,
                    except the settings and the key in the keyring
  --help            show this text

Run it as an ordinary user: it uses sudo only to install and to remove files.
With DESTDIR=FOLDER everything is installed below FOLDER, without sudo."

bundle='' uninstall=''
while [ $# != 0 ]; do
    case "$1" in
        --bundle) [ -d "${2:-}" ] || { echo "--bundle needs a folder" >&2; exit 2; }
            bundle=$(cd "$2" && pwd -P) && shift ;;
        --uninstall) uninstall=yes ;;
        --help | -h) echo "$usage"; exit ;;
        *) echo "$usage" >&2; exit 2 ;;
    esac
    shift
done

# Relative to the caller's folder, which common.sh changes.
[ -z "${DESTDIR:-}" ] || DESTDIR=$(realpath -m "$DESTDIR")
. "$(dirname "$0")/tools/setup/common.sh"
app=/Applications/Corvane.app
# Passed to sudo as text, and not by its name, because the file may be changed while sudo waits for a password.
placement=(bash -c "$(<tools/setup/placement.sh)" placement.sh)
root=()
[ "$(id -u)" = 0 ] || [ -n "${DESTDIR:-}" ] || root=(sudo)

# The user whose login item and running program are meant; under sudo this is not root.
user=$(id -un)
[ "$(id -u)" != 0 ] || user=${SUDO_USER:-$user}

# as_user COMMAND...: runs COMMAND as $user.
as_user() {
    if [ "$(id -un)" = "$user" ]; then
        "$@"
    else
        setpriv --reuid "$user" --regid "$(id -g "$user")" --init-groups "$@"
    fi
}

# is_running: whether $user is running the installed program, including a version that has been replaced
# since. Checks the command line, because the hardened process does not let its user read /proc/PID/exe.
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

# require_root WHAT ARGUMENTS: announces what sudo is needed for; fails if sudo is missing.
require_root() {
    if [ -z "${root:-}" ]; then
        return
    fi
    command -v sudo >/dev/null || fail "$1 needs root, and there is no sudo" "As root: $0 $2"
    say "$1 needs root; sudo may ask for your password"
}

# login_item: prints the autostart file that starts the installed program for $user, if it exists.
login_item() {
    local home folder
    home=$(getent passwd "$user" | cut -d: -f6)
    folder=$home/.config
    [ "$(id -un)" != "$user" ] || folder=${XDG_CONFIG_HOME:-${HOME:-$home}/.config}
    local entry=${DESTDIR:-}$folder/autostart/org.corvane.Corvane.desktop
    ! grep -qs "^Exec=.*$app/" "$entry" || echo "$entry"
}

if [ -z "${DESTDIR:-}" ] && [ "$(dpkg-query -W -f '${db:Status-Status}' corvane 2>/dev/null)" = installed ]; then
    fail "Corvane is installed as a Debian package" "To remove it: sudo apt-get purge corvane"
fi

if [ "$uninstall" ]; then
    files=$("${placement[@]}" list)
    item=$(login_item)
    if [ -z "$files$item" ]; then
        say "Corvane is not installed"
        exit
    fi
    say "removing:"
    printf '    %s\n' $files "$item" | sed '/^ *$/d'
    if is_running; then
        say "asking the running Corvane to quit"
        as_user timeout 10 "$app/bin/corvane" --quit >/dev/null 2>&1 || true
        for _ in 1 2 3 4 5 6 7 8 9 10; do
            is_running || break
            sleep 0.5
        done
        ! is_running || say "it is still running, and stops when you log out at the latest"
    fi
    if [ "$item" ]; then
        as_user rm -f "$item"
        as_user rmdir "${item%/*}" 2>/dev/null || true # other programs may have entries there
    fi
    if [ "$files" ]; then
        require_root "removing it" --uninstall
        "${root[@]}" "${placement[@]}" remove || fail "not everything could be removed" \
            "Look at the message above, then run this again."
    fi
    say "Corvane is uninstalled; its settings and your key in the keyring are kept"
    exit
fi

if [ -z "$bundle" ]; then
    owner=$(stat -c %U .)
    if [ "$(id -u)" = 0 ] && [ "$owner" != root ]; then
        fail "the build would create files owned by root in a checkout owned by $owner" \
            "As $owner: ./install.sh, which runs sudo itself. Or, if already built: $0 --bundle FOLDER"
    fi
    ensure_packages build
    ensure_modules assets
    build release bundle
    bundle=$PWD/build/release/Corvane.app
fi
digest=$("${placement[@]}" digest "$bundle") || fail "$bundle cannot be installed" "Nothing was installed."
policy=$(sha256sum <assets/org.corvane.policy)
version=$(as_user "$bundle/bin/corvane" --version) || fail "$bundle does not run here" \
    "Look at the message above. Nothing was installed."

say "installing $version:"
cat <<END
    ${DESTDIR:-}$app
    links to it in /usr/local/bin, /usr/local/share (applications, icons, man) and /usr/share/metainfo
    the polkit action, in /usr/share/polkit-1/actions
END
require_root "installing these files" "--bundle '$bundle'"
"${root[@]}" "${placement[@]}" put "$bundle" "$digest" "${policy%% *}" || fail "Corvane could not be installed" "Look at the message above."
if is_running; then
    say "the old version is still running; to start the new one: corvane --quit, then corvane"
else
    say "installed; start it from the menu of your desktop or with: corvane"
fi
