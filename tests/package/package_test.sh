#!/usr/bin/env bash
# The Debian package as a user gets it: made by CPack from the build tree, unpacked with dpkg -x
# into a temporary root, tpcli run from there on the bundled lab state, and a small program built
# against the unpacked headers and platform library with pkg-config and with find_package.
#
# usage: package_test.sh BUILD_DIR SOURCE_DIR      (exit code 77: skipped, dpkg is missing)
set -euo pipefail

build=$(realpath "$1")
source=$(realpath "$2")
for tool in dpkg dpkg-deb dpkg-shlibdeps pkg-config; do
   if ! command -v "$tool" >/dev/null; then
      echo "skipped: $tool is not installed, so no Debian package can be made and unpacked"
      exit 77
   fi
done

work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
fail() {
   echo "FAILED: $*" >&2
   exit 1
}

cpack --config "$build/CPackConfig.cmake" -B "$work/out" >"$work/cpack.log" 2>&1 ||
   { cat "$work/cpack.log"; fail "cpack"; }
package=$(echo "$work"/out/*.deb)
dpkg -x "$package" "$work/root"
usr="$work/root/usr"

for file in bin/tpcli lib/libTrafficPolicyShowCliHelper.so lib/libTrafficPolicyPlatform.so \
   lib/tpcli/tpcli-http.so lib/tpcli/tpcli-line-editor.so \
   include/TrafficPolicyShow/Kel/Ptr.h include/TrafficPolicyShow/TrafficPolicyCli/Factories.h \
   lib/cmake/platform/platformConfig.cmake lib/pkgconfig/trafficpolicyshow-platform.pc \
   share/tpcli/lab.json share/man/man1/tpcli.1 share/bash-completion/completions/tpcli; do
   [ -e "$usr/$file" ] || fail "the package has no usr/$file"
done
dpkg-deb -f "$package" Depends | grep -q libsimdjson || fail "Depends does not name simdjson"
# tpcli links neither the HTTP library nor libedit; its modules do, and the package must still
# depend on them.
for library in libcpp-httplib libedit; do
   dpkg-deb -f "$package" Depends | grep -q "$library" || fail "Depends does not name $library"
done

# Without -s tpcli shows the lab state that the package ships, with the library it ships.
output=$(env -u TPCLI_LIBRARY "$usr/bin/tpcli" --no-pager show traffic-policy interface counters)
[ "$output" == "$(cat "$source/tests/golden/lab/interface-counters.txt")" ] ||
   fail "tpcli from the package shows other counters than the golden file"
env -u TPCLI_LIBRARY "$usr/bin/tpcli" -s "$source/examples/lab.json" metrics | tail -n 1 |
   grep -qx '# EOF' || fail "tpcli metrics from the package"

expected="hello 10.0.0.0/8"
export LD_LIBRARY_PATH="$usr/lib"

export PKG_CONFIG_PATH="$usr/lib/pkgconfig"
# shellcheck disable=SC2046  # pkg-config's flags are meant to split
c++ -std=c++20 "$source/tests/package/hello_platform.cpp" -o "$work/hello-pkg-config" \
   $(pkg-config --cflags --libs trafficpolicyshow-platform) || fail "build with pkg-config"
[ "$("$work/hello-pkg-config")" == "$expected" ] || fail "program built with pkg-config"

mkdir "$work/consumer"
cat >"$work/consumer/CMakeLists.txt" <<CMAKE
cmake_minimum_required(VERSION 3.25)
project(consumer LANGUAGES CXX)
find_package(platform REQUIRED)
add_executable(hello "$source/tests/package/hello_platform.cpp")
target_link_libraries(hello PRIVATE TrafficPolicyShow::platform)
CMAKE
cmake -S "$work/consumer" -B "$work/consumer/build" -G Ninja -DCMAKE_PREFIX_PATH="$usr" \
   -DCMAKE_BUILD_TYPE=Release >"$work/cmake.log" 2>&1 || { cat "$work/cmake.log"; fail "find_package"; }
cmake --build "$work/consumer/build" >"$work/build.log" 2>&1 || { cat "$work/build.log"; fail "build with find_package"; }
[ "$("$work/consumer/build/hello")" == "$expected" ] || fail "program built with find_package"

echo "package $(basename "$package"): unpacked, tpcli ran, built against it with pkg-config and find_package"
