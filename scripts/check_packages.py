#!/usr/bin/python3
# SPDX-License-Identifier: GPL-3.0-or-later
"""Fails if a command needs a package that it does not install. A command's calls of scripts/setup.sh and
scripts/build.sh determine what it installs and configures. Everything that its configuration finds (find_package,
pkg_check_modules, find_library ...) and every program that its scripts call must belong to a package of its lists or to
a dependency of one. Debian's build dependencies are checked in the same way.

Queries dpkg on this machine, on which all of these packages must be installed. Does not need root.
"""

import ast
import functools
import re
import shutil
import subprocess
import sys
import tempfile
from concurrent.futures import ThreadPoolExecutor
from pathlib import Path

ROOT = Path(__file__).resolve().parent.parent
FINDS = re.compile(r"^(?:find_package|pkg_check_modules|find_library|find_path)$")
# Present on every system: dpkg's essential packages (added below), and git, which fetched the sources.
GIVEN = {"git", "apt", "passwd"}
# A word in command position: at the start of a line or after the end of the previous command.
SHELL_COMMAND = re.compile(r"(?:^|[|;&(!{]|\b(?:then|do|else|if|exec|while|xargs|time)\b)\s*([a-z][\w.+-]*)(?=\s|$)", re.MULTILINE)
PYTHON_CALLS = {"run", "Popen", "check_output", "output_of", "_run", "_run_and_read_line"}


def output(*command):
    return subprocess.run(command, check=True, capture_output=True, text=True, cwd=ROOT).stdout


@functools.cache
def dependencies():
    """Maps all installed packages to their dependencies, and virtual packages to their providers."""
    form = "${db:Status-Abbrev}\t${Package}\t${Essential}\t${Provides}\t${Depends}, ${Pre-Depends}\n"
    needs = {}
    for line in output("dpkg-query", "--show", f"--showformat={form}").splitlines():
        status, package, essential, provides, depends = line.split("\t")
        if not status.startswith("ii"):
            continue
        needs.setdefault(package, set()).update(re.findall(r"(?:^|[,|])\s*([a-z0-9][a-z0-9.+-]+)", depends))
        for virtual in re.findall(r"(?:^|,)\s*([a-z0-9][a-z0-9.+-]+)", provides):
            needs.setdefault(virtual, set()).add(package)
        if essential == "yes":
            GIVEN.add(package)
    return needs


@functools.cache
def with_dependencies(packages):
    """The transitive closure of the packages' dependencies, as a frozen set."""
    needs, reached, to_do = dependencies(), set(), list(packages)
    while to_do:
        package = to_do.pop()
        if package not in reached:
            reached.add(package)
            to_do += needs.get(package, ())
    return frozenset(reached)


@functools.cache
def package_of(path):
    """The package that a file belongs to, resolving links of Debian's alternatives; None if there is none."""
    for candidate in dict.fromkeys((str(path), str(Path(path).resolve()))):
        # If /bin and /lib are links into /usr, packages may list either path.
        for name in (candidate, candidate.removeprefix("/usr"), "/usr" + candidate):
            found = subprocess.run(["dpkg-query", "--search", name], capture_output=True, text=True).stdout
            if found and not found.startswith("diversion"):
                return found.split(":")[0].split(",")[0]
    return None


def listed(purpose):
    """The packages of a list in setup.sh, including all alternatives."""
    body = re.search(rf"^{purpose}=\((.*?)\)", (ROOT / "scripts/setup.sh").read_text(), re.MULTILINE | re.DOTALL)[1]
    words = re.sub(r"#.*", "", body).replace("'", "").replace("|", " ").split()
    return {word.split("<")[0] for word in words}


@functools.cache
def found_files(options):
    """Maps everything that configuring with these options finds outside of the project to one of its files."""
    with tempfile.TemporaryDirectory() as folder:
        trace = Path(folder, "trace")
        output("cmake", "--preset", "release", "-B", f"{folder}/build", "--trace-expand", f"--trace-redirect={trace}",
               "--trace-format=json-v1", *options)
        cache = dict(re.findall(r"^(\w+):\w+=(.+)$", Path(folder, "build/CMakeCache.txt").read_text(), re.MULTILINE))
        calls = re.findall(rf'"args":\[([^]]*)\],"cmd":"(\w+)","file":"{re.escape(str(ROOT))}/[^"]*"', trace.read_text())
    files = {"cmake": shutil.which("cmake"), "the compiler": cache["CMAKE_CXX_COMPILER"], "ninja": cache["CMAKE_MAKE_PROGRAM"]}
    for arguments, command in calls:
        if not FINDS.match(command):
            continue
        name, *rest = re.findall(r'"([^"]*)"', arguments)
        if command == "pkg_check_modules":
            module = rest[-1]
            files[module] = f"{output('pkg-config', '--variable=pcfiledir', module).strip()}/{module}.pc"
        elif command == "find_package":
            components = rest[rest.index("COMPONENTS") + 1:] if "COMPONENTS" in rest else []
            for part in (name, *(name + component for component in components)):
                files[part] = cache.get(f"{part}_DIR") or cache.get(f"{part.upper()}_EXECUTABLE")
        else:
            files[name] = cache.get(name)
    return {what: file for what, file in files.items() if file and not file.endswith("-NOTFOUND")}


@functools.cache
def options_for(purpose):
    return tuple(output("scripts/build.sh", "--options", purpose).split())


def called_by_shell(text):
    text = re.sub(r"(^|\s)#.*", r"\1", text)
    text = re.sub(r"'[^']*'", "''", text)
    functions = set(re.findall(r"^(\w+)\(\)", text, re.MULTILINE))
    return {word for word in SHELL_COMMAND.findall(text) if word not in functions}


def called_by_python(text):
    """The programs started by calls such as subprocess.run(["name", ...]) and output_of("name", ...)."""
    names = set()
    for node in ast.walk(ast.parse(text)):
        if isinstance(node, ast.Call) and getattr(node.func, "attr", getattr(node.func, "id", "")) in PYTHON_CALLS:
            for argument in node.args[:2]:
                first = argument.elts[0] if isinstance(argument, ast.List) and argument.elts else argument
                if isinstance(first, ast.Constant) and isinstance(first.value, str):
                    names.add(first.value)
    return names


def reached(text, folder, seen):
    """The (suffix, text) of all scripts that a script calls or imports, directly or indirectly."""
    for name in re.findall(r"(?:scripts|tests/\w[\w-]*)/\w+\.(?:py|sh)", text):
        yield from script(ROOT / name, seen)
    for name in re.findall(r"^(?:import|from) (\w+)", text, re.MULTILINE):
        for place in (folder, ROOT / "tests/end-to-end"):
            yield from script(place / f"{name}.py", seen)


def script(path, seen):
    if path.exists() and path not in seen and path.name not in ("setup.sh", "check_fresh.py", "check_packages.py"):
        seen.add(path)
        yield path.suffix, path.read_text()
        yield from reached(path.read_text(), path.parent, seen)


def commands():
    """The commands for users, as (name, text of the shell script)."""
    for name in ("run", "test", "bench", "package", "screenshots"):
        yield f"./{name}", (ROOT / name).read_text()
    for part, body in re.findall(r"^check_(\w+)\(\) \{\n(.*?)^\}", (ROOT / "check").read_text(), re.MULTILINE | re.DOTALL):
        helpers = [helper for name, helper in re.findall(r"^(\w+)\(\) \{\n(.*?)^\}", (ROOT / "check").read_text(),
                                                         re.MULTILINE | re.DOTALL)
                   if not name.startswith("check_") and name != "usage" and re.search(rf"\b{name}\b", body)]
        yield f"./check {part.replace('_', '-')}", "\n".join([body, *helpers])


def missing(needed, packages):
    """Describes what is needed (description to file) but belongs to none of the packages or their dependencies."""
    there = with_dependencies(frozenset(packages | GIVEN))
    return [f"{what} is in {package_of(file)}" for what, file in sorted(needed.items())
            if package_of(file) is not None and package_of(file) not in there]


def check_command(name, text):
    needed = {}
    purposes = set(re.findall(r"\w+", " ".join(re.findall(r"setup\.sh\"? ([a-z ]+)", text))))
    for purpose in re.findall(r"build\.sh\"? (?:--for (\w+))?", text):
        needed |= found_files(options_for(purpose or "work"))
    seen = set()
    texts = [(".sh", text), *reached(text, ROOT, seen)]
    if name == "./test":
        for path in sorted((ROOT / "tests").glob("*/*_test.py")):
            texts += script(path, seen)
    for suffix, part in texts:
        for program in (called_by_python if suffix == ".py" else called_by_shell)(part):
            if file := shutil.which(program):
                needed[program] = file
    packages = set().union(*(listed(purpose) for purpose in purposes))
    return [f"{name}: {line}" for line in missing(needed, packages)]


def check_build_dependencies():
    control = (ROOT / "packaging/debian/control").read_text()
    declared = re.search(r"^Build-Depends:(.*?)^\w", control, re.MULTILINE | re.DOTALL)[1]
    # build-essential is implied in every build, and debhelper is requested as debhelper-compat.
    packages = {name.removesuffix("-compat") for name in re.findall(r"^ ([\w.+-]+)", declared, re.MULTILINE)}
    packages.add("build-essential")
    needed = found_files(options_for("program"))
    installed = with_dependencies(frozenset(listed("build") | listed("package")))
    return [*(f"packaging/debian/control: {line}" for line in missing(needed, packages)),
            *(f"./package: {package} is required by packaging/debian/control" for package in sorted(packages - installed))]


def main():
    dependencies()
    with ThreadPoolExecutor() as pool:  # the queries mostly wait for cmake and dpkg
        list(pool.map(found_files, {options_for(purpose) for purpose in ("program", "tests", "bench", "work")}))
        found = pool.map(lambda command: check_command(*command), commands())
        wrong = [line for lines in found for line in lines] + check_build_dependencies()
    if wrong:
        sys.exit("Needed, but not installed by its command:\n  " + "\n  ".join(wrong))


if __name__ == "__main__":
    main()
