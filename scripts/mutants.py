#!/usr/bin/python3
# SPDX-License-Identifier: GPL-3.0-or-later
"""Usage: mutants.py [file]...

Mutation testing of the files that implement specified rules. Makes one small change (a mutant) at a time and runs the
file's tests on it; a mutant that passes them is a survivor. Prints killed / all and the survivors of each file. Fails
if fewer than 95 % of all mutants are killed, or if a survivor is not listed in tests/equivalent_mutants.txt with the
reason why it does not change the behaviour.

The files themselves are never modified: a mutant is compiled from a copy, without optimisation, into a shared library
that overrides the one with the rest of the program, which is linked from build/release. Mutants that do not compile,
or for which the compiler generates the same code as for the original, do not count."""

import json
import os
import re
import resource
import shlex
import shutil
import signal
import subprocess
import sys
import tempfile
import time
from concurrent.futures import ThreadPoolExecutor
from pathlib import Path

sys.dont_write_bytecode = True  # leaves no files in the source tree
from mutation_operators import function_bodies, mutants_of, with_all  # noqa: E402

ROOT = Path(__file__).resolve().parent.parent
BUILD = ROOT / "build/release"
WORK = ROOT / "build/mutants"
EQUIVALENT = ROOT / "tests/equivalent_mutants.txt"
GOAL = 95  # per cent
WALL_SECONDS = 45  # for a mutant that hangs
MEMORY = 6 << 30  # bytes of address space
FILE_SIZE = 4 << 30  # bytes, most of them holes
# Inserted after a file's includes: selects one of the mutants that are compiled together.
MUTANT_NUMBER = """
#include <cstdlib>
namespace { const int mutantNumber = std::atoi(std::getenv("MUTANT_NUMBER")); }
"""

# The files that implement specified rules, and the tests of these rules.
TESTS = {
    "imaging/blemish_removal.cpp": ["imaging/repair_bounds_test.cpp", "imaging/repair_lists_test.cpp",
                                    "imaging/blemish_removal_test.cpp", "imaging/repairs_test.cpp"],
    "imaging/healing/repair_disc.cpp": ["imaging/repair_disc_test.cpp"],
    "imaging/grayscale.cpp": ["imaging/grayscale_test.cpp"],
    "imaging/photo_effects.cpp": ["imaging/effect_recipes_test.cpp", "imaging/photo_effects_test.cpp"],
    "imaging/geometry_tools.cpp": ["imaging/image_geometry_test.cpp"],
    "imaging/base/files.cpp": ["imaging/file_faults_test.cpp", "imaging/file_reading_faults_test.cpp",
                               "imaging/files_test.cpp"],
    "imaging/photo_file_steps.cpp": ["imaging/image_files_test.cpp", "imaging/photo_files_test.cpp",
                                     "imaging/image_geometry_test.cpp", "imaging/creation_date_test.cpp",
                                     "imaging/deep_files_test.cpp", "imaging/lacking_memory_test.cpp"],
    "imaging/photo_files.cpp": ["imaging/photo_files_test.cpp", "imaging/lacking_memory_test.cpp",
                                "imaging/gain_map_test.cpp", "imaging/other_formats_test.cpp"],
    "imaging/metadata_tools.cpp": ["imaging/creation_date_test.cpp", "imaging/metadata_change_test.cpp"],
    "editor/history.cpp": ["editor/history_test.cpp", "editor/history_failures_test.cpp",
                           "editor/undo_redo_test.cpp"],
    "editor/edit_session.cpp": ["editor/edit_session_test.cpp", "editor/journaled_session_test.cpp",
                                "editor/undo_redo_test.cpp", "editor/history_test.cpp",
                                "editor/click_test.cpp", "editor/retouch_test.cpp", "editor/opening_test.cpp",
                                "editor/journal_writing_test.cpp", "editor/resumed_work_test.cpp",
                                "editor/saving_test.cpp"],
    "editor/state_history.cpp": ["editor/history_test.cpp", "editor/history_failures_test.cpp",
                                 "editor/undo_redo_test.cpp", "editor/edit_session_test.cpp",
                                 "editor/resumed_work_test.cpp"],
    "editor/zoom_frame.cpp": ["editor/zoom_frame_test.cpp"],
    "editor/zoom.cpp": ["editor/zoom_position_test.cpp", "editor/zoom_test.cpp"],
    "editor/saving.cpp": ["editor/saving_test.cpp", "editor/set_aside_test.cpp", "editor/notices_test.cpp"],
    "editor/settings.cpp": ["editor/settings_mirror_test.cpp", "editor/settings_test.cpp", "editor/retouch_settings_test.cpp",
                            "editor/comparison_test.cpp", "editor/fit_test.cpp", "editor/aim_test.cpp",
                            "editor/resumed_work_test.cpp"],
    "editor/retouch.cpp": ["editor/click_test.cpp", "editor/retouch_test.cpp", "editor/retouch_settings_test.cpp",
                           "editor/resumed_work_test.cpp"],
}


def run(command, **options):
    return subprocess.run(command, capture_output=True, text=True, check=False, **options)


def must(command, **options):
    result = run(command, **options)
    if result.returncode != 0:
        sys.exit(f"mutants: {shlex.join(map(str, command))}\n{result.stdout}{result.stderr}")
    return result.stdout


class TestProgram:
    """The tests of a folder, linked so that a mutant in a separate library overrides the program's own code."""

    def __init__(self, folder):
        target = f"tests/{folder}_tests"
        link = shlex.split(must(["ninja", "-C", BUILD, "-t", "commands", target]).splitlines()[-1])
        self.path = WORK / f"{folder}_tests"
        self.rest = WORK / f"librest_{folder}.so"
        objects = [part for part in link if part.endswith(".o")]
        archives = [part for part in link if part.endswith(".a") and not part.startswith("/")]
        fakes = [part for part in archives if part.startswith("tests/")]
        program = [part for part in archives if part not in fakes]
        system = [part for part in link if part.startswith("/") and part.endswith((".so", ".a"))]
        system += [part for part in link if re.fullmatch(r"-l\S+|/.*\.so[.\d]+", part)]
        shared = [part for part in system if not part.endswith(".a")]
        must(["g++", "-shared", "-o", self.rest, "-Wl,--whole-archive", *program, "-Wl,--no-whole-archive", *shared],
             cwd=BUILD)
        stub = WORK / "stub/libmutant.so"
        stub.parent.mkdir(exist_ok=True)
        must(["g++", "-shared", "-o", stub, "-Wl,-soname,libmutant.so", "-x", "c++", "/dev/null"])
        must(["g++", "-o", self.path, *objects, "-Wl,--no-as-needed", stub, self.rest, "-Wl,--as-needed", *fakes, *system,
              f"-Wl,-rpath,{WORK}", "-Wl,--allow-shlib-undefined"], cwd=BUILD)


def command_of_build(name):
    """The compiler and its options for a file, without file names and precompiled headers."""
    entries = json.loads((BUILD / "compile_commands.json").read_text())
    entry = next(entry for entry in entries if entry["file"] == str(ROOT / name))
    parts = iter(shlex.split(entry["command"]))
    kept = [next(part for part in parts if re.search(r"(g\+\+|c\+\+)[\d.-]*$", part))]
    for part in parts:
        if part in ("-o", "-include", "-MF", "-MT"):
            next(parts)
        elif part not in ("-c", "-Winvalid-pch", "-Werror", entry["file"]) and not part.startswith("-fpch"):
            kept.append(part)
    return [*kept, "-w"]


def filter_of(tests):
    suites = set()
    for test in tests:
        suites |= set(re.findall(r"^TEST(?:_F|_P)?\((\w+),", (ROOT / "tests" / test).read_text(), re.MULTILINE))
    return ":".join(sorted(f"{suite}.*:*/{suite}.*" for suite in suites))


class Subject:
    """A file to mutate, and everything needed to compile and test its mutants."""

    def __init__(self, name, programs, listed):
        self.text = (ROOT / name).read_text()
        self.listed = {entry[1:] for entry in listed if entry[0] == name}
        self.name = name
        self.mutants = dict(enumerate(mutants_of(self.text), 1))
        self.folder = WORK / name.replace("/", "_").removesuffix(".cpp")
        shutil.rmtree(self.folder, ignore_errors=True)
        self.folder.mkdir(parents=True)
        self.as_released = command_of_build(name)
        self.quickly = [part for part in self.as_released if not re.match(r"-O\d|-D_FORTIFY|-DNDEBUG", part)] + ["-O0"]
        self.prefix = self.folder / "prefix.h"
        self.prefix.write_text("".join(re.findall(r"^#include.*\n", self.text, re.MULTILINE)) + MUTANT_NUMBER)
        must([*self.quickly, "-x", "c++-header", self.prefix, "-o", f"{self.prefix}.gch"], cwd=BUILD)
        self.tests = [(programs(folder), filter_of([test for test in TESTS[name] if test.startswith(folder + "/")]))
                      for folder in sorted({test.split("/")[0] for test in TESTS[name]})]
        self.code = self.code_of(self.text)
        self.cpu_seconds = 600
        self.library = self.folder / "whole"
        self.together = self.compile_together()
        before = resource.getrusage(resource.RUSAGE_CHILDREN)
        if not self.passes(self.library, self.folder / "tmp", 0):
            sys.exit((self.folder / "tmp/log").read_text(errors="replace") +
                     f"mutants: the tests of {name} fail without a mutation")
        after = resource.getrusage(resource.RUSAGE_CHILDREN)
        used = after.ru_utime + after.ru_stime - before.ru_utime - before.ru_stime
        self.cpu_seconds = int(3 * used) + 3

    def compile(self, text, folder):
        """Compiles the library into a folder. Returns the compiler's errors, or None on success."""
        folder.mkdir(parents=True, exist_ok=True)
        source = folder / "mutant.cpp"
        source.write_text(text)
        result = run([*self.quickly, "-fmax-errors=0", "-include", self.prefix, "-shared", "-Wl,-soname,libmutant.so",
                      source, "-o", folder / "libmutant.so"], cwd=BUILD)
        return None if result.returncode == 0 else result.stderr

    def compile_together(self):
        """Compiles one library with all mutants inside of functions, as far as they compile. Returns their numbers."""
        bodies = function_bodies(self.text)
        inside = {number: mutant for number, mutant in self.mutants.items()
                  if any(first < mutant.start and mutant.end <= last for first, last in bodies)}
        while True:
            refusal = self.compile(with_all(self.text, inside), self.library)
            if refusal is None:
                return set(inside)
            named = {int(number) for number in re.findall(r"\bmutant_(\d+)\b", refusal)} & inside.keys()
            if not named and not inside:
                sys.exit(f"mutants: {self.name} does not compile\n{refusal}")
            inside = {number: mutant for number, mutant in inside.items() if named and number not in named}

    def passes(self, library, folder, number):
        """Whether all tests pass with this mutant of the library. The folder is the tests' working directory."""
        folder.mkdir(parents=True, exist_ok=True)
        environment = {"PATH": os.environ["PATH"], "LANG": "C.UTF-8", "QT_QPA_PLATFORM": "offscreen",
                       "LD_LIBRARY_PATH": str(library), "HOME": str(folder), "TMPDIR": str(folder),
                       "XDG_RUNTIME_DIR": str(folder), "MUTANT_NUMBER": str(number)}
        return all(self.program_passes(program, tests, folder, environment) for program, tests in self.tests)

    def program_passes(self, program, tests, folder, environment):
        command = ["prlimit", f"--cpu={self.cpu_seconds}", f"--as={MEMORY}", "--core=0", f"--fsize={FILE_SIZE}",
                   program.path, f"--gtest_filter={tests}", "--gtest_brief=1", "--gtest_fail_fast"]
        with open(folder / "log", "w", encoding="utf-8") as log:
            process = subprocess.Popen(command, cwd=folder, env=environment, stdout=log, stderr=log,
                                       stdin=subprocess.DEVNULL, start_new_session=True)
            try:
                return process.wait(timeout=WALL_SECONDS + 4 * self.cpu_seconds) == 0
            except subprocess.TimeoutExpired:
                return False
            finally:
                try:
                    os.killpg(process.pid, signal.SIGKILL)
                except ProcessLookupError:
                    pass
                process.wait()

    def code_of(self, text):
        """The object code of a source text, compiled with the program's own options."""
        with tempfile.TemporaryDirectory(dir=self.folder) as place:
            source = Path(place) / "same_name.cpp"
            source.write_text(text)
            must([*self.as_released, "-c", source, "-o", f"{place}/code.o"], cwd=BUILD)
            must(["objcopy", "--strip-all", f"{place}/code.o", f"{place}/stripped.o"])
            return (Path(place) / "stripped.o").read_bytes()

    def verdict(self, number):
        """'refused', 'killed', 'same' or 'survived'."""
        text = self.mutants[number].applied_to(self.text)
        folder = self.folder / str(number)
        library = self.library if number in self.together else folder
        try:
            if library == folder and self.compile(text, folder) is not None:
                return "refused"
            if not self.passes(library, folder / "tmp", number):
                return "killed"
            mutant = self.mutants[number]
            is_same = (mutant.before, mutant.after) not in self.listed and self.code_of(text) == self.code
            return "same" if is_same else "survived"
        finally:
            shutil.rmtree(folder, ignore_errors=True)


def equivalents():
    """The mutants listed as equivalent: (file, line before, line after)."""
    listed = set()
    file = before = None
    for line in EQUIVALENT.read_text().splitlines() if EQUIVALENT.exists() else ():
        if re.fullmatch(r"\S+\.cpp", line):
            file = line
        elif line.startswith("- "):
            before = line[2:]
        elif line.startswith("+ "):
            listed.add((file, before, line[2:]))
    return listed


def examine(subject):
    """Tests a file's mutants and prints the result. Returns the numbers of killed and of all mutants, and whether the
    survivors are exactly those listed as equivalent."""
    started = time.monotonic()
    with ThreadPoolExecutor(os.cpu_count()) as pool:
        verdicts = list(pool.map(subject.verdict, subject.mutants))
    killed = verdicts.count("killed")
    survivors = [mutant for mutant, verdict in zip(subject.mutants.values(), verdicts) if verdict == "survived"]
    count = killed + len(survivors)
    share = 100 * killed / count if count else 100
    print(f"{subject.name:36}{killed:5} / {count:<5}{share:6.1f} %{time.monotonic() - started:7.0f} s"
          f"   (not counted: {verdicts.count('refused')} do not compile, {verdicts.count('same')} same code)", flush=True)
    unlisted = 0
    for mutant in survivors:
        is_listed = (mutant.before, mutant.after) in subject.listed
        unlisted += not is_listed
        if not is_listed:
            print(f"  {subject.name}:{mutant.line}\n- {mutant.before}\n+ {mutant.after}", flush=True)
    if unlisted < len(survivors):
        print(f"  and {len(survivors) - unlisted} listed as equivalent", flush=True)
    alive = {(mutant.before, mutant.after) for mutant in survivors}
    stale = sorted(subject.listed - alive)
    for before, after in stale:
        print(f"  listed as equivalent, but not a survivor:\n- {before}\n+ {after}", flush=True)
    return killed, count, not unlisted and not stale


def main(names):
    unknown = [name for name in names if name not in TESTS]
    if unknown:
        sys.exit(f"mutants: no tests are listed for {', '.join(unknown)}")
    gone = [name for file, tests in TESTS.items() for name in (file, *(f"tests/{test}" for test in tests))
            if not (ROOT / name).exists()]
    if gone:
        sys.exit(f"mutants: listed files do not exist: {', '.join(sorted(set(gone)))}")
    WORK.mkdir(parents=True, exist_ok=True)
    made = {}

    def programs(folder):
        if folder not in made:
            made[folder] = TestProgram(folder)
        return made[folder]

    listed = equivalents()
    results = [examine(Subject(name, programs, listed)) for name in names or TESTS]
    killed = sum(result[0] for result in results)
    count = sum(result[1] for result in results)
    share = 100 * killed / max(count, 1)
    print(f"{'total':36}{killed:5} / {count:<5}{share:6.1f} %")
    return 0 if all(result[2] for result in results) and (names or share >= GOAL) else 1


if __name__ == "__main__":
    sys.exit(main(sys.argv[1:]))
