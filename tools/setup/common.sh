# Shared by ./run, ./test and ./install.sh, which source it: packages, npm modules and the build.

set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/../.."
export LC_ALL=C.UTF-8

say() { printf '==> %s\n' "$*"; }

# fail WHAT HOW: prints what went wrong and how to continue, then exits with status 1.
fail() {
    printf '\nerror: %s\n       %s\n' "$1" "$2" >&2
    exit 1
}

# ensure_packages GROUP...: installs the missing packages of these groups of packages.txt.
ensure_packages() {
    if ! command -v apt-get >/dev/null; then
        say "no apt-get: using the installed packages (tools/setup/packages.txt lists those needed)"
        return
    fi
    local wanted missing
    wanted=$(awk -v groups=" $* " '
        { sub(/#.*/, "") } !NF { next }
        /^\[/ { on = index(groups, " " substr($1, 2, length($1) - 2) " "); next }
        on { print $1 }' tools/setup/packages.txt | sort -u)
    if command -v node >/dev/null && command -v npm >/dev/null; then
        wanted=$(grep -vxE 'nodejs|npm' <<<"$wanted")
    fi
    missing=$(comm -23 <(echo "$wanted") \
        <(dpkg-query -W -f '${db:Status-Status} ${Package}\n' 2>/dev/null | sed -n 's/^installed //p' | sort -u))
    [ -z "$missing" ] && return
    local root=()
    if [ "$(id -u)" != 0 ]; then
        command -v sudo >/dev/null || fail "packages are missing and there is no sudo" \
            "As root: apt-get install --no-install-recommends $(echo $missing)"
        root=(sudo)
    fi
    say "installing Debian packages ($*)${root:+; sudo may ask for your password}:" $missing
    local apt=("${root[@]}" env DEBIAN_FRONTEND=noninteractive apt-get -q -y -o Dpkg::Use-Pty=0)
    local install=("${apt[@]}" install --no-install-recommends $missing)
    local lists=(/var/lib/apt/lists/*_Packages*)
    [ -e "${lists[0]}" ] || "${apt[@]}" update
    # Outdated package lists name versions that the mirror no longer has.
    "${install[@]}" || { "${apt[@]}" update && "${install[@]}"; } ||
        fail "the packages could not be installed" "See apt's messages above, then run this again."
}

# ensure_modules FOLDER: installs the pinned npm modules; fetches them again only if the lock file has
# changed.
ensure_modules() {
    local stamp="$1/node_modules/.corvane-lock"
    cmp -s "$1/package-lock.json" "$stamp" && return
    say "fetching the npm modules of $1"
    npm ci --no-audit --no-fund --loglevel=error --prefix "$1" || fail "npm could not fetch the modules of $1" \
        "It needs the npm registry once. Run this again when the registry is reachable."
    cp "$1/package-lock.json" "$stamp"
}

# ensure_node: sets $node to a Node.js that can run tools/localnet. Debian 12's is too old.
ensure_node() {
    if ! node -e 'process.exit(parseInt(process.versions.node) < 20 ? 1 : 0)'; then
        ensure_modules tools/setup/node
        PATH="$(echo "$PWD"/tools/setup/node/node_modules/node-linux-*/bin):$PATH"
        export PATH
    fi
    ensure_modules tools/localnet
    node=$(command -v node)
}

# build PRESET TARGET...: configures and builds. Requires the tests' dependencies only if "all" is built or
# was built before.
build() {
    local preset=$1 settings=()
    shift
    [ "$*" = all ] || grep -qs '^BUILD_TESTING:[A-Z]*=ON' "build/$preset/CMakeCache.txt" ||
        settings+=(-DBUILD_TESTING=OFF)
    # The tests use the node found by ensure_node, in this run or an earlier one.
    [ -z "${node:-}" ] || settings+=("-DNODE=$node")
    command -v ccache >/dev/null && settings+=(-DCMAKE_CXX_COMPILER_LAUNCHER=ccache)
    # Without these, objects that use a precompiled header are not cached.
    export CCACHE_SLOPPINESS=${CCACHE_SLOPPINESS:-pch_defines,time_macros}
    say "building ($preset)"
    cmake --preset "$preset" "${settings[@]}" >"build/$preset.configure.log" 2>&1 || {
        cat "build/$preset.configure.log" >&2
        fail "cmake could not configure the build" "See its messages above. Nothing was built."
    }
    sed -n 's/^-- Missing: /    missing: /p' "build/$preset.configure.log"
    cmake --build --preset "$preset" "${@/#/--target=}" || fail "the build failed" \
        "Fix the errors above, or remove build/$preset to build from scratch."
}
mkdir -p build
