#!/bin/sh
# Runs the suites of a test program, each in a session of its own: with a Secret Service that is unlocked, locked with nobody to
# ask, started again, or silent, and with a bus that ends. Nothing of the caller's session or home folder is touched.
#
#     with-secret-service.sh PROGRAM
set -eu

for needed in dbus-run-session dbus-send gnome-keyring-daemon secret-tool; do
    command -v "$needed" >/dev/null || { echo "There is no $needed here." >&2; exit 77; }
done

program=$1
folder=$(mktemp -d)
trap 'rm -rf "$folder"' EXIT

# run NAME SUITE COMMANDS: the commands in a session with its own bus and its own folders.
run() {
    mkdir -m 700 "$folder/$1" "$folder/$1/run"
    env -u DISPLAY -u WAYLAND_DISPLAY -u DBUS_SESSION_BUS_ADDRESS -u GNOME_KEYRING_CONTROL \
        HOME="$folder/$1" XDG_RUNTIME_DIR="$folder/$1/run" XDG_CONFIG_HOME="$folder/$1/config" \
        XDG_DATA_HOME="$folder/$1/data" XDG_STATE_HOME="$folder/$1/state" XDG_CACHE_HOME="$folder/$1/cache" \
        PROGRAM="$program" SUITE="$2" dbus-run-session -- sh -euc "$3"
}

unlock='printf secret | gnome-keyring-daemon --unlock --components=secrets >/dev/null 2>&1'

# shellcheck disable=SC2016 # the inner shell expands $PROGRAM and $SUITE
{
    run unlocked 'SecretService.*' "$unlock"'; "$PROGRAM" --gtest_filter="$SUITE"'
    run locked 'LockedSecretService.*' "$unlock"'
        printf kept | secret-tool store --label=Kept service com.quorltest.app account locked
        dbus-send --session --print-reply --dest=org.freedesktop.secrets /org/freedesktop/secrets \
            org.freedesktop.Secret.Service.Lock array:objpath:/org/freedesktop/secrets/collection/login >/dev/null
        "$PROGRAM" --gtest_filter="$SUITE"'
    run restarted 'RestartedSecretService.*' "$unlock"'; "$PROGRAM" --gtest_filter="$SUITE"'
    run lost 'LostSessionBus.*' '"$PROGRAM" --gtest_filter="$SUITE"'
    run silent 'SilentSecretService.*' '"$PROGRAM" --gtest_filter="$SUITE"'
}
