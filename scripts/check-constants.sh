#!/bin/sh
# Holds sources to the names of what include/ has for pipelines and customers: tags, names, properties and how a
# stream id is built are written there only. Scenarios in tests spell them out, as their users do.
set -eu
cd "$(dirname "$0")/.."

numbers='0x1002F|0x800A0013'
names='[^:]"(qvxcam-ZoomOverrideMgr"|vendor\.debug\.camera\.zoom)'
stream_ids='(sensor|port|key|stream)[^;]*<< *(32|40)'
if git grep -nEi "$numbers|$names|$stream_ids" -- '*.cpp' '*.h' ':!include'; then
    echo "use the names of include/ZoomOverrideContract.h and include/ZoomOverrideTypes.h"
    exit 1
fi
