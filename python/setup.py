"""Builds the wheel with the component's library and the type stubs inside, and the source
distribution with the sources of the library.

VQMATH63_LIBRARY names a library that is built already; else CMake builds it."""

import os
import pathlib
import re
import shutil
import subprocess
import sys

from setuptools import Distribution, setup
from setuptools.command.build_py import build_py
from setuptools.command.sdist import sdist
from wheel.bdist_wheel import bdist_wheel

HERE = pathlib.Path(__file__).resolve().parent
# The sources of the library: beside the package in the repository, below it when distributed.
NATIVE = HERE / "native" if (HERE / "native").exists() else HERE.parent
LIBRARY = "vqmath63.dll" if os.name == "nt" else "libvqmath63.so"
SOURCES = ["CMakeLists.txt", "cmake/PublicHeaders.cmake", "cmake/copy_public_headers.cmake",
           "packaging/linux/exports.map", "src"]


def version():
    text = (NATIVE / "CMakeLists.txt").read_text(encoding="utf-8")
    return re.search(r"VERSION (\d+\.\d+\.\d+)", text[text.index("project("):]).group(1)


def built_library(folder):
    """The library's path; built below `folder` unless there is one."""
    given = os.environ.get("VQMATH63_LIBRARY")
    if given:
        return pathlib.Path(given)
    # With the C++ runtime inside, of which only what is used, a wheel needs the C library and the
    # compiler's, which every Linux has; that one inside would need a newer C library.
    linker = "-static-libstdc++ -Wl,--gc-sections -s" if sys.platform == "linux" else (
        "-static-libstdc++ -static-libgcc -s")
    subprocess.run(["cmake", "-S", NATIVE, "-B", folder, "-DCMAKE_BUILD_TYPE=Release",
                    f"-DCMAKE_SHARED_LINKER_FLAGS={linker}",
                    "-DVQ_BUILD_TESTS=OFF", "-DVQ_BUILD_HOST=OFF", "-DVQ_INSTALL=OFF"], check=True)
    subprocess.run(["cmake", "--build", folder, "--target", "vqmath63", "-j",
                    os.environ.get("VQMATH63_JOBS", str(os.cpu_count()))], check=True)
    return pathlib.Path(folder) / "src" / LIBRARY


class BuildWithLibrary(build_py):
    def run(self):
        super().run()
        package = pathlib.Path(self.build_lib) / "vqmath63"
        library = package / LIBRARY
        shutil.copyfile(built_library(pathlib.Path(self.build_lib).parent / "native"), library)
        stubs = subprocess.run(
            [sys.executable, "-m", "vqmath63._stubs"], check=True, stdout=subprocess.PIPE,
            env={**os.environ, "PYTHONPATH": self.build_lib, "VQMATH63_LIBRARY": str(library)})
        (package / "__init__.pyi").write_bytes(stubs.stdout)


def newest(library, text):
    """The newest version of a library's functions that is asked for."""
    versions = re.findall(rf" {library}_(\d+\.\d+)", text)
    return max((tuple(map(int, version.split("."))) for version in versions), default=(0, 0))


def manylinux_tag(library):
    """The tag of the oldest C library that has what the library needs; plain linux where it needs
    more than what every Linux has."""
    text = subprocess.run(["objdump", "-p", library], check=True, stdout=subprocess.PIPE,
                          text=True).stdout
    machine = os.uname().machine
    needed = set(re.findall(r"NEEDED +(\S+)", text))
    if not all(re.match(r"(lib(c|m|dl|pthread|gcc_s)|ld-linux.*)\.so", name) for name in needed):
        return f"linux_{machine}"
    if newest("GCC", text) > (4, 8):  # of the oldest systems that the tags know
        return f"linux_{machine}"
    major, minor = newest("GLIBC", text)
    return f"manylinux_{major}_{minor}_{machine}"


class WithLibrary(Distribution):
    def has_ext_modules(self):
        return True  # for one platform, if for any Python


class WheelForOnePlatform(bdist_wheel):
    def get_tag(self):
        _, _, platform = super().get_tag()
        if sys.platform == "linux":
            platform = manylinux_tag(next(pathlib.Path(self.bdist_dir).rglob(LIBRARY)))
        return "py3", "none", platform


class SourcesWithLibrary(sdist):
    def make_release_tree(self, base_dir, files):
        super().make_release_tree(base_dir, files)
        native = pathlib.Path(base_dir) / "native"
        for name in SOURCES:
            source, target = NATIVE / name, native / name
            target.parent.mkdir(parents=True, exist_ok=True)
            if source.is_dir():
                shutil.copytree(source, target, ignore=shutil.ignore_patterns("host"))
            else:
                shutil.copyfile(source, target)


setup(version=version(), distclass=WithLibrary,
      cmdclass={"build_py": BuildWithLibrary, "sdist": SourcesWithLibrary,
                "bdist_wheel": WheelForOnePlatform})
