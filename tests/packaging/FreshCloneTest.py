"""A clone on a Debian 12 made from nothing: the packages that ./run installs before it builds are all
that the build files ask for.

usage: FreshCloneTest.py BUILD_FOLDER

The bare system and its downloads are those of FreshRootTest, which says more about them.
"""

import pathlib
import shutil
import sys
import tempfile

import FreshRootTest as fresh

SOURCES = pathlib.Path(__file__).resolve().parents[2]


def main():
    build = pathlib.Path(sys.argv[1]).resolve()
    fresh.makeBareSystem(build / "bare-debian")
    with tempfile.TemporaryDirectory(prefix="fresh-clone-") as name:
        fresh.enterBareSystem(build / "bare-debian", build / "debian-packages", pathlib.Path(name))
        clone = fresh.ROOT / "root/a clone"
        shutil.copytree(SOURCES, clone, symlinks=True, ignore=lambda folder, names:
                        {"build", ".git"} if folder == str(SOURCES) else ())
        fresh.inside("sh", "-c", "cd '/root/a clone' && scripts/install-packages build &&"
                                 " cmake --preset release >/dev/null")
        fresh.check((clone / "build/release/build.ninja").is_file(),
                    "what is installed for building is enough to configure it")


if __name__ == "__main__":
    fresh.enter()
    main()
