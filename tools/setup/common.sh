# What ./run and ./test share: packages, npm modules and the build. Sourced by them.

set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/../.."
export LC_ALL=C.UTF-8

say() { printf '==> %s\n' "$*"; }

# fail WHAT HOW: ends with what went wrong and how to go on.
fail() {
    printf '\nerror: %s\n       %s\n' "$1" "$2" >&2
    exit 1
}

# ensure_packages GROUP...: installs what is missing of these groups of packages.txt.
ensure_packages() {
    if ! command -v apt-get >/dev/null; then
        say "no apt-get here: going on with what is installed (tools/setup/packages.txt lists what is needed)"
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
    say "installing from Debian what Corvane needs ($*)${root:+; sudo may ask for your password}:" $missing
    local apt=("${root[@]}" env DEBIAN_FRONTEND=noninteractive apt-get -q -y -o Dpkg::Use-Pty=0)
    local install=("${apt[@]}" install --no-install-recommends $missing)
    local lists=(/var/lib/apt/lists/*_Packages*)
    [ -e "${lists[0]}" ] || "${apt[@]}" update
    # Old lists name packages that are no longer there.
    "${install[@]}" || { "${apt[@]}" update && "${install[@]}"; } ||
        fail "the packages could not be installed" "Look at apt's messages above, then run this again."
}

# ensure_modules FOLDER: npm modules as pinned, fetched again only when the lock has changed.
ensure_modules() {
    local stamp="$1/node_modules/.corvane-lock"
    cmp -s "$1/package-lock.json" "$stamp" && return
    say "fetching the npm modules of $1"
    npm ci --no-audit --no-fund --loglevel=error --prefix "$1" || fail "npm could not fetch the modules of $1" \
        "It needs the npm registry once. When that can be reached, run this again."
    cp "$1/package-lock.json" "$stamp"
}

# ensure_node: a node that tools/localnet can run on. That of Debian 12 is too old.
ensure_node() {
    if ! node -e 'process.exit(parseInt(process.versions.node) < 20 ? 1 : 0)'; then
        ensure_modules tools/setup/node
        PATH="$(echo "$PWD"/tools/setup/node/node_modules/node-linux-*/bin):$PATH"
        export PATH
    fi
    ensure_modules tools/localnet
    node=$(command -v node)
}

# build PRESET TARGET...: configures and builds. What tests need is asked for only where "all" is built
# or has been.
build() {
    local preset=$1 settings=()
    shift
    [ "$*" = all ] || grep -qs '^BUILD_TESTING:[A-Z]*=ON' "build/$preset/CMakeCache.txt" ||
        settings+=(-DBUILD_TESTING=OFF)
    # The tests use the node that was made sure of, now or by an earlier run.
    [ -z "${node:-}" ] || settings+=("-DNODE=$node")
    command -v ccache >/dev/null && settings+=(-DCMAKE_CXX_COMPILER_LAUNCHER=ccache)
    # Without these, objects that use a precompiled header are not cached.
    export CCACHE_SLOPPINESS=${CCACHE_SLOPPINESS:-pch_defines,time_macros}
    say "building ($preset)"
    cmake --preset "$preset" "${settings[@]}" >"build/$preset.configure.log" 2>&1 || {
        cat "build/$preset.configure.log" >&2
        fail "cmake does not take this system" "Look at its messages above. Nothing was built."
    }
    sed -n 's/^-- Missing: /    missing: /p' "build/$preset.configure.log"
    cmake --build --preset "$preset" "${@/#/--target=}" || fail "the build failed" \
        "Mend what the compiler says above, or remove build/$preset to start afresh."
}
mkdir -p build
