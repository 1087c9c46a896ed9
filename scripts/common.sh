# SPDX-License-Identifier: GPL-3.0-or-later
# What the scripts beside this file share. Sourced from the root of the repository.

# Build tools and the sound client keep files under HOME: it has to exist and be ours.
if [ ! -d "${HOME:-}" ] || [ ! -w "${HOME:-}" ]; then
    export HOME="$PWD/build/home"
    mkdir -p "$HOME"
fi

# build_preset PRESET [TARGET...]: configures only if that was never done, and builds.
build_preset() {
    local preset=$1
    shift
    [ -f "build/$preset/build.ninja" ] || cmake --preset "$preset"
    cmake --build --preset "$preset" ${1:+--target "$@"}
}
