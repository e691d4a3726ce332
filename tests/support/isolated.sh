#!/bin/bash
# Runs one test program in surroundings of its own: HOME, XDG folders, TMPDIR, a session bus that activates nothing, the
# offscreen platform. Usage: isolated.sh PROGRAM [ARGUMENTS]
# With NY_TEST_DISPLAY=1 the program gets an X server of its own, without a window manager, and the xcb platform.
set -u
here=$(cd "$(dirname "$0")" && pwd)
root=$(mktemp -d "${TMPDIR:-/tmp}/nytest.XXXXXX") || exit 1
xserver=
cleanup()
{
    [ -z "$xserver" ] || kill "$xserver" 2>/dev/null
    chmod -R u+rwX "$root" 2>/dev/null
    rm -rf "$root"
}
trap cleanup EXIT
mkdir -p "$root/home/Pictures" "$root/tmp"
mkdir -m 700 "$root/runtime"
export HOME="$root/home" TMPDIR="$root/tmp"
export XDG_CONFIG_HOME="$HOME/.config" XDG_DATA_HOME="$HOME/.local/share" XDG_CACHE_HOME="$HOME/.cache"
export XDG_STATE_HOME="$HOME/.local/state" XDG_RUNTIME_DIR="$root/runtime"
export XDG_CONFIG_DIRS="$root/etc-xdg" XDG_DATA_DIRS="/usr/local/share:/usr/share"
export QT_QPA_PLATFORM="${NY_TEST_PLATFORM:-offscreen}" QT_LOGGING_TO_CONSOLE=1 LC_ALL=C.UTF-8 LANG=C.UTF-8
export ASAN_OPTIONS="${ASAN_OPTIONS:-detect_leaks=0:verify_asan_link_order=0}" UBSAN_OPTIONS="${UBSAN_OPTIONS:-print_stacktrace=1}"
export TSAN_OPTIONS="${TSAN_OPTIONS:-suppressions=$here/tsan.supp ignore_noninstrumented_modules=1 die_after_fork=0}"
unset DISPLAY WAYLAND_DISPLAY LANGUAGE XDG_CURRENT_DESKTOP DESKTOP_SESSION
if [ -n "${NY_TEST_DISPLAY:-}" ]; then
    mkfifo "$root/display" || exit 1
    # The signal ends the server also when this script is killed.
    setpriv --pdeathsig TERM Xvfb -displayfd 3 -screen 0 1280x800x24 -nolisten tcp -noreset 3>"$root/display" 2>"$root/xvfb.log" &
    xserver=$!
    if ! read -r -t 30 number <"$root/display"; then
        echo "isolated.sh: Xvfb does not start" >&2
        cat "$root/xvfb.log" >&2
        exit 1
    fi
    export DISPLAY=":$number" QT_QPA_PLATFORM="${NY_TEST_PLATFORM:-xcb}"
fi
if [ -n "${NY_TEST_NO_BUS:-}" ]; then
    export DBUS_SESSION_BUS_ADDRESS="unix:path=$root/no-bus"
    "$@"
else
    unset DBUS_SESSION_BUS_ADDRESS
    dbus-run-session --config-file="$here/session-bus.conf" -- "$@"
fi
