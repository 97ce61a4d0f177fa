#!/bin/sh
# Runs a Windows test program under Wine without ever waiting for a person: a prefix of
# its own inside the build folder, no debug chatter, and no offer to install Wine's .NET
# or HTML add-ons.
: "${HUBLET_WINEPREFIX:=${PWD}/wineprefix}"
case "$HUBLET_WINEPREFIX" in /*) ;; *) HUBLET_WINEPREFIX="$PWD/$HUBLET_WINEPREFIX" ;; esac
export WINEPREFIX="$HUBLET_WINEPREFIX"
export WINEDEBUG=-all
export WINEDLLOVERRIDES="mscoree,mshtml="
export DISPLAY=
wine=$(command -v wine64 || command -v wine)
exec "$wine" "$@"
