#!/usr/bin/env python3
"""Breaks the code on purpose and looks whether the tests notice.

usage: tools/mutants/mutants.py COPY SOURCES... -- TEST_PROGRAMS...
  tools/mutants/mutants.py /tmp/mutants 'settings/system/*.cpp' -- test_settings_system

Makes COPY, a copy of the source tree in which every condition, call and assignment of SOURCES can be turned
off by a number in the environment, builds it once, and then runs for each such mutant the tests that reach
it. Prints the mutants that no test notices and the tests that no mutant made fail, with the totals.
"""
import concurrent.futures
import glob
import os
import re
import shutil
import subprocess
import sys

HEADER = os.path.join(os.path.dirname(os.path.abspath(__file__)), "hxMutant.h")
CALL = re.compile(r"^\s+(?!return\b|if\b|for\b|while\b|else\b|switch\b|case\b|delete\b|throw\b|do\b|using\b|static_assert\b)"
                  r"[A-Za-z_][\w:.>\-\[\]*()]*\(.*\);\s*$")
ASSIGN = re.compile(r"^\s+[A-Za-z_][\w.>\-\[\]]* [-+|&]?= [^;{}]*;\s*$")
ANSWER = re.compile(r"^(\s+)return (0|1|true|false);\s*$")
DECLARES = re.compile(r"^\s*(?:const\s+)?[A-Za-z_][\w:<>]*(?:\s*[*&]+\s*|\s+)[A-Za-z_]\w*\s*=[^=]")
TIMEOUT = 60


def balanced(text):
    return text.count("(") == text.count(")") and text.count("{") == text.count("}")


class Mutator:
    def __init__(self):
        self.places = []

    def number(self, place):
        self.places.append(place)
        return len(self.places)

    def statement(self, name, index, lines):
        line = lines[index]
        before = next((x.strip() for x in reversed(lines[:index]) if x.strip()), "")
        starts = before.endswith((";", "{", "}", ")", "else", ":")) or before.startswith(("//", "#"))
        if not starts or not balanced(line):
            return line
        answer = ANSWER.match(line)
        if answer:
            n = self.number(f"{name}:{index + 1}: {line.strip()}")
            return f"{answer[1]}return hxMutant({n}) ? !({answer[2]}) : {answer[2]};"
        if CALL.match(line) or ASSIGN.match(line):
            n = self.number(f"{name}:{index + 1}: {line.strip()}")
            return f"    do {{ if (!hxMutant({n})) {{ {line.strip()} }} }} while (0);"
        return line

    def condition(self, name, text):
        out, pos = [], 0
        for found in re.finditer(r"\b(if|while) \(", text):
            if found.start() < pos:
                continue
            depth, end = 1, found.end()
            while depth and end < len(text):
                depth += {"(": 1, ")": -1}.get(text[end], 0)
                end += 1
            inner = text[found.end():end - 1]
            line = text.count("\n", 0, found.start()) + 1
            if DECLARES.match(inner) or ";" in inner or "constexpr" in inner or found[1] == "while":
                continue
            n = self.number(f"{name}:{line}: if ({' '.join(inner.split())})")
            out.append(text[pos:found.end()] + f"hxMutant({n}) != static_cast<bool>({inner})")
            pos = end - 1
        return "".join(out) + text[pos:]

    def mutate(self, path, name):
        text = self.condition(name, open(path).read())
        lines = text.split("\n")
        inside = False
        for i, line in enumerate(lines):
            if re.match(r"^[{}]", line):
                inside = line.startswith("{")
            if inside and "namespace" not in line and not line.rstrip().endswith("\\"):
                lines[i] = self.statement(name, i, lines)
        open(path, "w").write("\n".join(lines))


def make_copy(copy, patterns):
    source = subprocess.run(["git", "rev-parse", "--show-toplevel"], capture_output=True, text=True,
                            check=True).stdout.strip()
    top = {os.path.join(source, "build"), os.path.join(source, ".git")}
    shutil.copytree(source, copy, dirs_exist_ok=True, symlinks=True,
                    ignore=lambda folder, names: [n for n in names if os.path.join(folder, n) in top])
    mutator = Mutator()
    for pattern in patterns:
        for path in sorted(glob.glob(os.path.join(copy, pattern))):
            mutator.mutate(path, os.path.relpath(path, copy))
    return mutator.places


def build(copy, programs):
    flags = f"-w -Wno-error -include {HEADER}"
    subprocess.run(["cmake", "-S", copy, "-B", copy + "/build", "-G", "Ninja", "-DCMAKE_BUILD_TYPE=Debug",
                    f"-DCMAKE_CXX_FLAGS={flags}"], check=True, stdout=subprocess.DEVNULL)
    subprocess.run(["ninja", "-C", copy + "/build", "hxRootfs"] + programs, check=True, stdout=subprocess.DEVNULL)


def tests_of(program):
    listing = subprocess.run([program, "--gtest_list_tests"], capture_output=True, text=True, timeout=TIMEOUT).stdout
    suite, tests = "", []
    for line in listing.splitlines():
        if line.startswith("  "):
            tests.append((program, suite + line.split("#")[0].strip()))
        elif line.split("#")[0].strip().endswith("."):
            suite = line.split("#")[0].strip()
    return tests


def run(test, **environment):
    program, name = test
    try:
        return subprocess.run([program, "--gtest_filter=" + name], timeout=TIMEOUT, stdout=subprocess.DEVNULL,
                              stderr=subprocess.DEVNULL, env={**os.environ, **environment}).returncode == 0
    except subprocess.TimeoutExpired:
        return False


def reached(job):
    test, trace = job
    if os.path.exists(trace):
        os.remove(trace)
    good = run(test, HX_MUTANT_TRACE=trace)
    numbers = set(open(trace).read().split()) if os.path.exists(trace) else set()
    return test, good, {int(n) for n in numbers}


def main():
    if "--" not in sys.argv or len(sys.argv) < 5:
        sys.exit(__doc__)
    copy, split = os.path.abspath(sys.argv[1]), sys.argv.index("--")
    places = make_copy(copy, sys.argv[2:split])
    programs = sys.argv[split + 1:]
    build(copy, programs)
    tests = [test for p in programs for test in tests_of(f"{copy}/build/bin/{p}")]
    os.environ.setdefault("QT_QPA_PLATFORM", "offscreen")
    os.makedirs(copy + "/trace", exist_ok=True)
    pool = concurrent.futures.ThreadPoolExecutor(os.cpu_count())
    covers = list(pool.map(reached, [(t, f"{copy}/trace/{i}") for i, t in enumerate(tests)]))
    for test, good, _ in covers:
        if not good:
            print("fails without any mutant:", test[1])
    by_mutant = {n: [t for t, good, hit in covers if good and n in hit] for n in range(1, len(places) + 1)}
    failed, survivors, unreached = set(), [], []

    # A test that was never seen to fail goes first, the rarest reached ones ahead.
    width = {t: len(hit) for t, good, hit in covers}

    def try_mutant(n):
        noticed = False
        for test in sorted(by_mutant[n], key=lambda t: (t in failed, width[t])):
            if noticed and test in failed:
                break
            if not run(test, HX_MUTANT=str(n)):
                failed.add(test)
                noticed = True
        return n, noticed

    order = sorted((n for n in by_mutant if by_mutant[n]), key=lambda n: len(by_mutant[n]))
    for n, noticed in pool.map(try_mutant, order):
        if not noticed:
            survivors.append(n)
    unreached = [n for n in by_mutant if not by_mutant[n]]
    for n in survivors:
        print("survived:", places[n - 1], f"({len(by_mutant[n])} tests)")
    for n in unreached:
        print("not reached:", places[n - 1])
    covering = [t for t, good, hit in covers if good and hit]
    for test in covering:
        if test not in failed:
            print("never failed:", test[1])
    print(f"{len(places)} mutants, {len(places) - len(survivors) - len(unreached)} noticed, "
          f"{len(survivors)} survived, {len(unreached)} not reached; "
          f"{len(failed)} of {len(covering)} tests that reach one were seen to fail")


if __name__ == "__main__":
    main()
