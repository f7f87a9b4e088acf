#!/usr/bin/env bash
# SPDX-License-Identifier: Apache-2.0
# install.sh CMAKE BUILD SOURCE
# Installs a build, moves it, builds the skeleton plug-in against it in two ways, and runs both programs and plug-ins.
set -euo pipefail
cmake=$1 build=$2 source=$3
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
fail() { echo "$*" >&2; exit 1; }

"$cmake" --install "$build" --prefix "$work/first" >"$work/log" || { cat "$work/log"; fail "it cannot be installed"; }
mv "$work/first" "$work/moved"
cd "$work/moved"

# Nothing leads back to where it was built or installed first.
for file in bin/lkbench lib/lkbench/*.so; do
  paths=$(readelf -d "$file" | sed -n 's/.*R\(UN\)\?PATH.*\[\(.*\)\]/\2/p')
  [[ $paths =~ ^\$ORIGIN(/[^:]*)?$ ]] || fail "$file looks for libraries in '$paths'"
done
! grep -rlE "$build|$source|$work/first" lib/cmake lib/*/pkgconfig || fail "these files name the build's folders"

for file in man/man1/lkbench.1.gz man/man5/lkbench-job.5.gz man/man5/lkbench-results.5.gz \
  bash-completion/completions/lkbench zsh/vendor-completions/_lkbench doc/lkbench/examples/job-example.toml; do
  [ -s "share/$file" ] || fail "share/$file is not installed"
done

bin/lkbench list | grep CXact_Insert >/dev/null || fail "lkbench does not find its plug-in"
bin/lkbench create --tables 1 --target "local:$work/db" || fail "lkbench does not work where it is installed"
bin/lkbench load --target "local:$work/db" >/dev/null

# A plug-in by CMake, and by pkg-config.
"$cmake" -S share/doc/lkbench-dev/examples/plugin -B "$work/plugin" -DCMAKE_PREFIX_PATH="$work/moved" >"$work/log" &&
  "$cmake" --build "$work/plugin" >>"$work/log" || { cat "$work/log"; fail "the skeleton cannot be built by CMake"; }
export PKG_CONFIG_PATH
PKG_CONFIG_PATH=$(dirname lib/*/pkgconfig/lkbench.pc)
read -ra flags < <(pkg-config --cflags --libs lkbench)
"${CXX:-c++}" -shared -fPIC share/doc/lkbench-dev/examples/plugin/Example.cpp -o "$work/libBYHAND.so" "${flags[@]}"

for plugin in "$work/plugin/libEXAMPLE.so" "$work/libBYHAND.so"; do
  bin/lkbench list --plugin "$plugin" | grep 'CExampleTouch  *Example Touch  *141' >/dev/null || fail "$plugin is not listed"
  bin/lkbench workload --plugin "$plugin" --mix insert=70,update=30 --duration 300ms --target "local:$work/db" --json "$work/results.json" \
    >/dev/null || fail "$plugin cannot be run"
  grep -q '"class": "CExampleRead"' "$work/results.json" || fail "$plugin was not what ran"
done
