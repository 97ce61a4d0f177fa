#!/bin/sh
# Builds the hublet command and shows what the example preference file will do:
# first the check (every value and where it comes from), then the replay (every call the
# plug-in makes on 3ds Max over the example day of work). Run it from anywhere in the tree.
set -eu
cd "$(dirname "$0")/.."

# What the build needs: CMake 3.25 or later (for the presets), Ninja and a C++ compiler.
missing=""
command -v cmake >/dev/null 2>&1 || missing="$missing cmake"
command -v ninja >/dev/null 2>&1 || missing="$missing ninja-build"
command -v c++ >/dev/null 2>&1 || command -v g++ >/dev/null 2>&1 || missing="$missing g++"
if [ -n "$missing" ]; then
  if [ "$(id -u)" = 0 ] && command -v apt-get >/dev/null 2>&1; then
    echo "Installing the build tools:$missing"
    apt-get update -qq
    DEBIAN_FRONTEND=noninteractive apt-get install -y -qq $missing >/dev/null
  else
    echo "The build needs:$missing" >&2
    echo "Install them first, for example: sudo apt-get install$missing" >&2
    exit 2
  fi
fi
cmake_version=$(cmake --version | sed -n 's/^cmake version \([0-9]*\)\.\([0-9]*\).*/\1 \2/p')
set -- $cmake_version
if [ "$1" -lt 3 ] || { [ "$1" -eq 3 ] && [ "$2" -lt 25 ]; }; then
  echo "CMake $1.$2 is too old: the build presets need 3.25 or later." >&2
  exit 2
fi

log=build/example-build.log
mkdir -p build
printf 'Building hublet (details in %s) ... ' "$log"
# A build folder of its own, so that the test builds keep their settings.
if ! { cmake --preset native -B build/example -DHUBLET_BUILD_TESTS=OFF && cmake --build build/example --target hublet; } >"$log" 2>&1; then
  echo "failed."
  tail -n 30 "$log" >&2
  exit 2
fi
echo "done."
hublet=build/example/tool/hublet

cat <<'TEXT'

==============================================================================
 hublet check examples/Vantor.ini

 What the plug-in reads from the file: every key, its value, and where it
 comes from (a line of the file, or the default); then any problems found.
==============================================================================
TEXT
status=0
"$hublet" check examples/Vantor.ini || status=$?

cat <<'TEXT'

==============================================================================
 hublet replay --session examples/day.session

 The plug-in in a simulated 3ds Max over a working day (the session file says
 what happens when): start-up, a new scene, the projection rules, two artists
 saving, the preference file edited, a companion tool flipping switches, the
 toolbar command. Under each "== event" line are the calls the plug-in made on
 the host, in order, each named after its host codes after "#".
==============================================================================
TEXT
"$hublet" replay --session examples/day.session

cat <<TEXT

------------------------------------------------------------------------------
 More: $hublet --help, $hublet check YOUR.ini, $hublet keys
TEXT
exit "$status"
