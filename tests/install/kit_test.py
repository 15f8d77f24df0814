"""Installs into an empty prefix, moves that away, and builds the samples from there and
from nowhere else: by CMake and by pkg-config. What they receive is what `conduit run` does.

    kit_test.py BUILD SOURCES COMPILER CMAKE PKG-CONFIG
"""

import json

import shutil
import subprocess
import sys
import tempfile
from pathlib import Path

build, sources, compiler, cmake, pkg_config = sys.argv[1:]
scratch = Path(tempfile.mkdtemp())
kit = scratch / "kit"
ENVIRONMENT = {"PATH": "/usr/bin:/bin", "HOME": str(scratch), "LC_ALL": "C.UTF-8"}

def run(*command, **more):
    done = subprocess.run([str(word) for word in command], cwd=scratch, capture_output=True,
                          env=ENVIRONMENT | more, timeout=300)
    if done.returncode != 0:
        sys.exit(f"{command}\nended with {done.returncode}\n{done.stdout.decode(errors='replace')}"
                 f"\n{done.stderr.decode(errors='replace')}")
    return done.stdout

def by_cmake(folder):
    """Builds a project and returns the folder of what was built."""
    target = scratch / "cmake" / folder.name
    run(cmake, "-S", folder, "-B", target, "-G", "Ninja", f"-DCMAKE_PREFIX_PATH={kit}",
        f"-DCMAKE_CXX_COMPILER={compiler}", "-DCMAKE_BUILD_TYPE=Release", f"-DKIT={kit}")
    run(cmake, "--build", target)
    assert str(build) not in (target / "CMakeCache.txt").read_text(), "the build tree was found"
    return target

def flags_of(library):
    """Returns the compiler and linker flags of a library from its .pc file."""
    return run(pkg_config, "--cflags", "--libs", library,
               PKG_CONFIG_LIBDIR=str(kit / "lib/pkgconfig")).decode().split()


def by_pkg_config(library, source, program, *options):
    """Builds one source file."""
    run(compiler, "-std=c++20", *options, source, "-o", scratch / program, *flags_of(library))
    return scratch / program

def items_of_conduit(session):
    """Returns the item lines expected from the sample host, made from the console host's."""
    lines = run(kit / "bin/conduit", "run", session, "--json", "--set", "DateOfBirthFormat=%d.%m.%Y")
    items = [item for item in map(json.loads, lines.splitlines()) if item["kind"] == "item"]
    # The sample prints values of texts only.
    return "".join(f"  {item['name']} ({item['length']} bytes) "
                   f"{item.get('value', '') if item['itemType'] == 4 else ''}\n" for item in items)

def items_of_host(program, session):
    printed = run(program, kit / "lib/conduit/FullPageInputModule.so",
                  HALDEN_READER_SESSION=str(session)).decode()
    # A text may have several lines; every other line begins with the name of its call.
    items, taken = "", False
    for line in printed.splitlines(keepends=True):
        other = line.startswith(("event ", "state ", "error ", "document\n", "end\n"))
        taken = line.startswith("  ") or (taken and not other)
        items += line if taken else ""
    return items

try:
    run(cmake, "--install", build, "--prefix", scratch / "installed")
    (scratch / "installed").rename(kit)
    for file in kit.rglob("*"):
        if file.is_file():
            contents = file.read_bytes()
            # Third-party licence texts have paths of their own: "core/src" is no build path.
            assert sources.encode() not in contents or file.parent.name == "third-party", (
                f"a path of the build is in {file}")
            if contents.startswith(b"\x7fELF"):
                run(cmake, "-DREADER=readelf", f"-DFILE={file}", "-P",
                    Path(__file__).parent.parent / "hardening/CheckElf.cmake")
    shutil.copytree(kit / "share/conduit/samples", scratch / "samples")
    session = scratch / "samples/session.json"

    by_cmake(Path(__file__).parent / "consumer")
    expected = items_of_conduit(session)
    assert expected.count("\n") > 50, expected
    for host in (by_cmake(scratch / "samples/host") / "sample_host",
                 by_pkg_config("conduit-hosting", scratch / "samples/host/host.cpp", "host")):
        received = items_of_host(host, session)
        assert received == expected, f"{host} received\n{received}\nin place of\n{expected}"

    module, in_c = kit / "lib/conduit/FullPageInputModule.so", scratch / "samples/host-in-c"
    run(compiler, "-x", "c", "-std=c99", in_c / "host.c", "-o", scratch / "host-in-c",
        *flags_of("conduit-host"), f"-Wl,-rpath,{kit}/lib")
    for host in (by_cmake(in_c) / "host_in_c", scratch / "host-in-c"):
        run(sys.executable, Path(__file__).parent.parent / "c_host/sample_host_test.py",
            kit / "bin/conduit", host, module, session)

    serial = scratch / "samples/module"
    for module in (by_cmake(serial) / "SerialLineModule.so",
                   by_pkg_config("conduit-framework", serial / "SerialLineModule.cpp", "Serial.so",
                                 "-shared", "-fPIC", "-fvisibility=hidden")):
        assert b"BaudRate" in run(kit / "bin/conduit", "describe", module)
finally:
    shutil.rmtree(scratch)
