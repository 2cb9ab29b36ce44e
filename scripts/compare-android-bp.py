"""Compares the lists of sources in Android.bp with those of the CMake targets that they stand for.

    compare-android-bp.py ANDROID_BP BUILD_FOLDER

The build folder holds a codemodel of CMake's file API. Ends with 1 after a line for each difference.
"""

import fnmatch
import json
import pathlib
import sys

import android_bp

# The module in Android.bp that lists sources, and the CMake targets that compile them (patterns).
STANDS_FOR = {
    "libcam.zoomoverridemgr_srcs": ["zoomoverride_module"],
    "libcam.zoomoverridemgr_tests_srcs": ["module_tests"],
    "libcam.zoomoverride_host_platform_srcs": ["qvxcam_*"],
    "libcam.zoomoverride_recorder": ["zoomoverride_recorder*", "scenario_text"],
}


def sources_in_cmake(build):
    """Name of a target to the set of the sources that it compiles."""
    reply = build / ".cmake/api/v1/reply"
    codemodel = json.loads(max(reply.glob("codemodel-v2-*.json")).read_text())
    targets = {}
    for entry in codemodel["configurations"][0]["targets"]:
        target = json.loads((reply / entry["jsonFile"]).read_text())
        targets[target["name"]] = {source["path"] for source in target.get("sources", [])
                                   if "compileGroupIndex" in source}
    return targets


def main():
    listing, build = map(pathlib.Path, sys.argv[1:])
    modules = android_bp.read_modules(listing)
    targets = sources_in_cmake(build)

    failed = False
    for module, patterns in STANDS_FOR.items():
        listed = set(modules.get(module, {}).get("srcs", []))
        compiled = set().union(*(targets[name] for pattern in patterns for name in fnmatch.filter(targets, pattern)))
        where = f'"{module}" of {listing}'
        for path in sorted(compiled - listed):
            print(f"{path}: compiled by CMake, missing in {where}")
            failed = True
        for path in sorted(listed - compiled):
            print(f"{path}: in {where}, missing in the CMake target {' or '.join(patterns)}")
            failed = True
    if failed:
        sys.exit(1)
    print(f"{listing}: the sources are those of the CMake build")


if __name__ == "__main__":
    main()
