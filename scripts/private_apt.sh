#!/usr/bin/env bash
# Runs apt-get apart from the machine's own packages: it uses the machine's sources and keys, but keeps its lists, cache
# and state in FOLDER, and assumes that nothing is installed. Nothing else on the machine changes.
#
#   scripts/private_apt.sh FOLDER ARCHITECTURE COMMAND...
#
# Without a COMMAND it fetches the lists, unless FOLDER has them already.
set -euo pipefail

if ! command -v apt-get >/dev/null; then
    echo "scripts/private_apt.sh: this is not Debian: apt-get is missing" >&2
    exit 1
fi
mkdir -p "$1"
folder=$(cd "$1" && pwd)
architecture=$2
shift 2

# A machine's source may be limited to its own architecture and to binary packages.
copy_sources() {
    local file etc=/etc/apt
    for file in "$etc"/sources.list "$etc"/sources.list.d/*.list; do
        if [ -e "$file" ]; then
            sed -n -E 's/^[[:space:]]*deb[[:space:]]+(.*)/\1/; T; s/arch=[^] ]*//; s/.*/deb &\ndeb-src &/; p' "$file" \
                >"$folder/sources.list.d/$(basename "$file")"
        fi
    done
    for file in "$etc"/sources.list.d/*.sources; do
        if [ -e "$file" ]; then
            sed -E 's/^Types:.*/Types: deb deb-src/; /^Architectures:/d' "$file" \
                >"$folder/sources.list.d/$(basename "$file")"
        fi
    done
}

if [ ! -e "$folder/complete" ]; then
    mkdir -p "$folder"/{sources.list.d,state/lists/partial,cache/archives/partial,log}
    touch "$folder/status"
    copy_sources
    # Hooks of the machine's own updates would act on the machine.
    cat >"$folder/apt.conf" <<END_OF_CONF
Dir::Etc::sourcelist "/dev/null";
Dir::Etc::sourceparts "$folder/sources.list.d";
Dir::State "$folder/state";
Dir::State::status "$folder/status";
Dir::Cache "$folder/cache";
Dir::Log "$folder/log";
APT::Architecture "$architecture";
#clear APT::Architectures;
APT::Architectures { "$architecture"; };
APT::Sandbox::User "root";
APT::Install-Recommends "false";
Acquire::Languages "none";
#clear APT::Update::Pre-Invoke;
#clear APT::Update::Post-Invoke;
#clear APT::Update::Post-Invoke-Success;
#clear DPkg::Post-Invoke;
END_OF_CONF
    # A mirror's list for one of the rarer processors is at times out of step with its signature. The others will do.
    if apt-get -c "$folder/apt.conf" -qq update; then
        touch "$folder/complete"
    else
        echo "scripts/private_apt.sh: going on with the lists that could be fetched" >&2
    fi
fi
if [ $# -gt 0 ]; then
    apt-get -c "$folder/apt.conf" -qq "$@"
fi
