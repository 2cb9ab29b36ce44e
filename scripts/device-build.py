"""Writes a build.ninja that builds the libraries and tests of Android.bp with any Clang: with the flags that
Android.bp has and those that Soong adds to them.

    device-build.py FOLDER --cxx COMPILER --flags FLAGS [--link-flags FLAGS] [--check-only]

Run from the tree's root. Builds into FOLDER the two libraries and the tests; with --check-only compiles the
libraries without keeping anything.

The libraries are linked to libplatform.so, which has the host platform in it, in place of the device's.
"""

import argparse
import pathlib

import android_bp

LIBRARIES = ["libcam.zoomoverridemgr", "libcam.zoomoverride_recorder"]
TESTS = "libcam.zoomoverridemgr_tests"
HOST_PLATFORM = "libcam.zoomoverride_host_platform_srcs"
GOOGLETEST = "/usr/src/googletest"

# What a device's libraries export to Soong.
DEVICE_HEADERS = ["-I", "platform/include"]
TEST_HEADERS = ["-I", f"{GOOGLETEST}/googletest/include", "-I", f"{GOOGLETEST}/googlemock/include"]

RULES = """\
rule compile
  command = $cxx $flags -MMD -MF $out.d -c $in -o $out
  depfile = $out.d
  description = $in
rule check
  command = $cxx $flags -fsyntax-only $in && touch $out
  description = $in
rule link
  command = $cxx $flags $in $libraries $link_flags -o $out
  description = $out
"""


class Build:
    def __init__(self, options):
        self.folder = options.folder
        self.modules = android_bp.read_modules(pathlib.Path("Android.bp"))
        self.rule = "check" if options.check_only else "compile"
        self.flags = options.flags
        self.lines = [f"builddir = {options.folder}", RULES, f"cxx = {options.cxx}",
                      f"link_flags = {options.link_flags}"]

    def flags_of(self, module):
        flags = []
        for part in [self.modules[name] for name in module.get("defaults", [])] + [module]:
            flags += [f"-std={part['cpp_std']}"] if "cpp_std" in part else []
            flags += part.get("cflags", []) + part.get("cppflags", [])
        includes = module.get("local_include_dirs", [])
        for header_library in module.get("header_libs", []):
            includes = includes + self.modules[header_library]["export_include_dirs"]
        return flags + [word for folder in includes for word in ("-I", folder)] + DEVICE_HEADERS

    def objects(self, name, sources, flags):
        objects = []
        for source in sources:
            objects.append(f"{self.folder}/{name}.objects/{source.lstrip('/')}.o")
            self.lines += [f"build {objects[-1]}: {self.rule} {source}",
                           f"  flags = {' '.join(flags)} {self.flags}"]
        return objects

    def link(self, output, objects, flags, libraries, more_inputs=()):
        others = " ".join([*libraries, *more_inputs])
        self.lines += [f"build {self.folder}/{output}: link {' '.join(objects)} | {others}",
                       f"  flags = {' '.join(flags)}",
                       f"  libraries = {' '.join(libraries)}"]

    def add_library(self, name):
        module = self.modules[name]
        objects = self.objects(name, android_bp.sources(self.modules, name),
                               ["-O2", "-fPIC", *self.flags_of(module)])
        if self.rule == "compile":
            exports = module["version_script"]
            self.link(f"{name}.so", objects, ["-shared", f"-Wl,-soname,{name}.so", f"-Wl,--version-script={exports}"],
                      [f"{self.folder}/libplatform.so"], [exports])

    def add_tests(self):
        flags = ["-fPIC", *self.flags_of(self.modules[TESTS]), *TEST_HEADERS]
        platform_sources = list(android_bp.sources(self.modules, HOST_PLATFORM))
        platform = self.objects(TESTS, platform_sources, flags)
        own = [source for source in android_bp.sources(self.modules, TESTS) if source not in platform_sources]
        # What Soong gives to each test.
        google = ["googletest/src/gtest-all.cc", "googlemock/src/gmock-all.cc", "googlemock/src/gmock_main.cc"]
        googletest = self.objects("googletest", [f"{GOOGLETEST}/{source}" for source in google],
                                  ["-std=c++20", "-fPIC", "-w", *TEST_HEADERS,
                                   "-I", f"{GOOGLETEST}/googletest", "-I", f"{GOOGLETEST}/googlemock"])
        self.link("libplatform.so", platform, ["-shared", "-Wl,-soname,libplatform.so"], [])
        self.link(TESTS, platform + self.objects(TESTS, own, flags) + googletest, ["-pthread"], [])


def main():
    parser = argparse.ArgumentParser()
    parser.add_argument("folder")
    parser.add_argument("--cxx", required=True)
    parser.add_argument("--flags", required=True)
    parser.add_argument("--link-flags", default="")
    parser.add_argument("--check-only", action="store_true")
    options = parser.parse_args()

    build = Build(options)
    for name in LIBRARIES:
        build.add_library(name)
    if not options.check_only:
        build.add_tests()
    pathlib.Path(options.folder).mkdir(parents=True, exist_ok=True)
    pathlib.Path(options.folder, "build.ninja").write_text("\n".join(build.lines) + "\n")


if __name__ == "__main__":
    main()
