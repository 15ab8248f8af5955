#!/usr/bin/python3
"""Checks the script ./tarn at the root: when it builds, and that it passes everything on.

    launcher_test.py SOURCE-FOLDER [unittest options]

A copy runs in a folder of its own, with stand-ins for cmake and for the package check that note
how they were called. The program that the stand-in builds prints its arguments.
"""

import os
import shutil
import subprocess
import sys
import tempfile
import time
import unittest

SOURCE = sys.argv.pop(1)

CMAKE = """#!/bin/sh
echo "cmake $*" >>"$CALLS"
case "$1" in
  --preset) touch build/release/build.ninja ;;
  --build)
    if [ -e "$BROKEN" ]; then echo "main.cpp:1: broken"; exit 1; fi
    mkdir -p "$2/bin"
    printf '#!/bin/sh\\nfor a; do echo "[$a]"; done\\nexit 7\\n' >"$2/bin/tarn"
    chmod +x "$2/bin/tarn" ;;
esac
"""


class LauncherTest(unittest.TestCase):
    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.root = folder.name + "/a project"
        self.calls = folder.name + "/calls"
        self.broken = folder.name + "/broken"
        for name in ("app", "cmake", "bin"):
            os.makedirs(f"{self.root}/{name}")
        shutil.copy(f"{SOURCE}/tarn", self.root)
        self.write("app/main.cpp", "")
        self.write("cmake/ensure-packages", '#!/bin/sh\necho "packages $*" >>"$CALLS"\n')
        self.write("bin/cmake", CMAKE)

    def write(self, name, text):
        path = f"{self.root}/{name}"
        with open(path, "w", encoding="utf-8") as file:
            file.write(text)
        os.chmod(path, 0o755)

    def run_tarn(self, *arguments, program=None, folder="/"):
        environment = dict(os.environ, CALLS=self.calls, BROKEN=self.broken,
                           PATH=f"{self.root}/bin:{os.environ['PATH']}")
        return subprocess.run([program or f"{self.root}/tarn", *arguments], cwd=folder,
                              env=environment, capture_output=True, text=True, check=False)

    def taken_calls(self):
        """What was called since the last time."""
        if not os.path.exists(self.calls):
            return []
        with open(self.calls, encoding="utf-8") as file:
            calls = file.read().splitlines()
        os.remove(self.calls)
        return calls

    def test_builds_on_first_use_and_passes_everything_on(self):
        result = self.run_tarn("two words", "", "--list")
        self.assertEqual(result.stdout, "[two words]\n[]\n[--list]\n")
        self.assertEqual(result.returncode, 7)
        self.assertIn("building", result.stderr)
        calls = self.taken_calls()
        self.assertEqual(calls[0], "packages build")
        self.assertTrue(calls[1].startswith("cmake --preset release"))
        self.assertIn("--target tarn Tarn_base_math", calls[2])

    def test_builds_no_second_time(self):
        self.run_tarn()
        self.taken_calls()
        result = self.run_tarn("x")
        self.assertEqual((result.stdout, result.stderr), ("[x]\n", ""))
        self.assertEqual(self.taken_calls(), [])

    def test_builds_again_when_a_source_has_changed(self):
        self.run_tarn()
        self.taken_calls()
        time.sleep(0.02)
        self.write("app/main.cpp", "changed")
        self.run_tarn()
        calls = self.taken_calls()
        self.assertTrue(any(call.startswith("cmake --build") for call in calls), calls)
        self.assertFalse(any(call.startswith("cmake --preset") for call in calls), calls)
        self.run_tarn()
        self.assertEqual(self.taken_calls(), [])

    def test_a_failed_build_shows_why_and_is_tried_again(self):
        with open(self.broken, "w", encoding="utf-8"):
            pass
        result = self.run_tarn()
        self.assertEqual(result.returncode, 1)
        self.assertEqual(result.stdout, "")
        self.assertIn("main.cpp:1: broken", result.stderr)
        os.remove(self.broken)
        self.assertEqual(self.run_tarn().returncode, 7)

    def test_missing_packages_end_it(self):
        self.write("cmake/ensure-packages", "#!/bin/sh\necho no packages >&2\nexit 1\n")
        result = self.run_tarn()
        self.assertNotEqual(result.returncode, 0)
        self.assertIn("no packages", result.stderr)
        self.assertEqual(self.taken_calls(), [])

    def test_may_be_reached_through_a_link(self):
        link = f"{self.root}/bin/linked"
        os.symlink(f"{self.root}/tarn", link)
        self.assertEqual(self.run_tarn("x", program=link).stdout, "[x]\n")


if __name__ == "__main__":
    unittest.main()
