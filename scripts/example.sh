#!/bin/sh
# Builds the hublet command and runs it on the examples: the replay of the example day of
# work (every call the plug-in makes on 3ds Max), the stamps of the example scene files and
# the check of the example preference file. Each report is written to a file under
# build/example/; the replay, hundreds of lines, is only summed up here, and the check comes
# last, so that it is what stays on the screen. Run it from anywhere in the tree; it asks
# nothing, so it runs the same without a terminal.
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
reports=build/example

# A section's heading: the command, then what its report shows.
heading() {
  printf '\n==============================================================================\n'
  printf ' %s\n\n' "$1"
  printf '%s\n' "$2" | sed 's/^/ /'
  printf '==============================================================================\n'
}

"$hublet" replay --session examples/day.session >"$reports/replay.txt"
heading "hublet replay --session examples/day.session" \
"The plug-in in a simulated 3ds Max over a working day (the session file says
what happens when): start-up, a new scene, the projection rules, two artists
saving, the preference file edited, a companion tool flipping switches, the
toolbar command. Each \"== event\" line is followed by the calls the plug-in
made on the host. The first save, where the plug-in stamps the scene:"
awk '/^== pre-save/ { shown = 1 } shown { print } /^== post-save/ && shown { exit }' "$reports/replay.txt"
printf '\n%s events, %s lines in all: %s\n' "$(grep -c '^== ' "$reports/replay.txt")" \
  "$(wc -l <"$reports/replay.txt" | tr -d ' ')" "$reports/replay.txt"

# Status 1 only says that some file is not stamped, as some examples are not.
stamps_status=0
"$hublet" stamps examples/scenes >"$reports/stamps.txt" || stamps_status=$?
heading "hublet stamps examples/scenes" \
"Who last saved each example scene file, and when, from the stamps the plug-in
writes into the file and from what 3ds Max records on every save: two stamped,
one stamped and then saved by someone else without the plug-in (stale), one
never stamped, one whose title was typed by hand, and a copy cut short."
cat "$reports/stamps.txt"
if [ "$stamps_status" -gt 1 ]; then
  exit "$stamps_status"
fi

status=0
"$hublet" check examples/Vantor.ini >"$reports/check.txt" || status=$?
heading "hublet check examples/Vantor.ini" \
"What the plug-in reads from the file: every key, its value, and where it
comes from (a line of the file, or the default); then any problems found."
cat "$reports/check.txt"

cat <<TEXT

------------------------------------------------------------------------------
 The reports: $reports/check.txt, $reports/stamps.txt, $reports/replay.txt
 More: $hublet --help, $hublet check YOUR.ini, $hublet stamps YOUR_SCENES
TEXT
exit "$status"
