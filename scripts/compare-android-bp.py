"""Compares the lists of sources in Android.bp with those of the CMake targets that they stand for.

    compare-android-bp.py ANDROID_BP BUILD_FOLDER

The build folder holds a codemodel of CMake's file API. Ends with 1 after a line for each difference.
"""

import ast
import fnmatch
import json
import pathlib
import re
import sys

# The module in Android.bp that lists sources, and the CMake targets that compile them (patterns).
STANDS_FOR = {
    "libcam.zoomoverridemgr_srcs": ["zoomoverride_module"],
    "libcam.zoomoverridemgr_tests_srcs": ["module_tests"],
    "libcam.zoomoverride_host_platform_srcs": ["qvxcam_*"],
    "libcam.zoomoverride_recorder": ["zoomoverride_recorder*", "scenario_text"],
}


def sources_in_android_bp(path):
    """Name of a module to the set of its sources."""
    text = re.sub(r"^\s*//.*$", "", path.read_text(), flags=re.MULTILINE)
    modules = {}
    for body in re.findall(r"^\w+ (\{.*?^\})", text, flags=re.MULTILINE | re.DOTALL):
        literal = re.sub(r"^(\s*)(\w+):", r'\1"\2":', body, flags=re.MULTILINE)
        literal = re.sub(r": (true|false),$", lambda match: f": {match[1].title()},", literal, flags=re.MULTILINE)
        properties = ast.literal_eval(literal)
        modules[properties["name"]] = set(properties.get("srcs", []))
    return modules


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
    android_bp, build = map(pathlib.Path, sys.argv[1:])
    modules = sources_in_android_bp(android_bp)
    targets = sources_in_cmake(build)

    failed = False
    for module, patterns in STANDS_FOR.items():
        listed = modules.get(module, set())
        compiled = set().union(*(targets[name] for pattern in patterns for name in fnmatch.filter(targets, pattern)))
        where = f'"{module}" of {android_bp}'
        for path in sorted(compiled - listed):
            print(f"{path}: compiled by CMake, missing in {where}")
            failed = True
        for path in sorted(listed - compiled):
            print(f"{path}: in {where}, missing in the CMake target {' or '.join(patterns)}")
            failed = True
    if failed:
        sys.exit(1)
    print(f"{android_bp}: the sources are those of the CMake build")


if __name__ == "__main__":
    main()
