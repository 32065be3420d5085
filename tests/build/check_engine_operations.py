# SPDX-License-Identifier: MIT
"""Every public operation of the engine's headers is called by a test, and the engine has each of them.

    check_engine_operations.py SOURCE_DIR LIBRARY_DIR TEST_DIR

A plain operation counts as called when a test program refers to its symbol, overload by overload. A virtual one is reached by its
table, so its name must stand in a call through an object in the tests' sources.
"""
import os
import pathlib
import re
import subprocess
import sys

CLASS = re.compile(r"^(?:class|struct)\s+(?:ENGINE_API\s+)?(\w+)(?:\s+final)?(?:\s*:[^;{]*)?\s*\{", re.M)
COMMENT = re.compile(r"//[^\n]*|/\*.*?\*/", re.S)
# inline functions and those without a body of their own have no symbol
NO_SYMBOL = re.compile(r"=\s*(?:0|default|delete)\s*$|\{")


def class_body(text, start):
    """The text between the braces that open before start."""
    depth, at = 1, start
    while depth:
        depth += {"{": 1, "}": -1}.get(text[at], 0)
        at += 1
    return text[start:at - 1]


def statements(body):
    """Declarations of a class with its nested blocks cut out, each with its access."""
    access, depth, current = "private", 0, ""
    for part in re.split(r"(\{|\}|;|\bpublic:|\bprotected:|\bprivate:|\bsignals:)", body):
        if depth == 0 and part.endswith(":") and part[:-1] in ("public", "protected", "private", "signals"):
            access, current = part[:-1], ""
        elif part == "{":
            depth += 1
            if depth == 1:
                current += "{"
        elif part == "}":
            depth -= 1
            if depth == 0:
                yield access, current
                current = ""
        elif part == ";" and depth == 0:
            yield access, current
            current = ""
        elif depth == 0:
            current += part


def declared(folder):
    """(plain, virtual): "Class::Name" or "Name" of every public operation of the headers."""
    plain, virtual = set(), set()
    for header in sorted(folder.glob("*.h")):
        text = COMMENT.sub("", header.read_text(encoding="utf-8"))
        free = text
        for match in CLASS.finditer(text):
            name, body = match.group(1), class_body(text, match.end())
            free = free.replace(body, "")
            start = "public" if match.group(0).startswith("struct") else "private"
            for access, line in statements(start + ":" + body):
                operation = re.search(r"([~\w]+)\s*\(", line)
                if access != "public" or not operation or "Q_OBJECT" == operation.group(1) or operation.group(1)[0] == "~":
                    continue
                if re.search(r"\bvirtual\b|\boverride\b", line):
                    virtual.add((name, operation.group(1)))
                elif not NO_SYMBOL.search(line.strip()) and "operator" not in line:
                    plain.add("%s::%s" % (name, operation.group(1)))
        for line in re.findall(r"^ENGINE_API[^;{]*?(\w+)\s*\([^;]*;", free, re.M):
            plain.add(line)
    return plain, virtual


def symbols(file, *options):
    listed = subprocess.run(["nm", "-D", *options, str(file)], capture_output=True, text=True, check=True).stdout
    return {(line.split()[-2], line.split()[-1]) for line in listed.splitlines() if len(line.split()) >= 2}


def demangled(names):
    names = sorted(names)
    said = subprocess.run(["c++filt"], input="\n".join(names), capture_output=True, text=True, check=True).stdout.splitlines()
    return dict(zip(names, said))


def main(source, libraries, tests):
    plain, virtual = declared(pathlib.Path(source) / "src/engine")
    here = {name for kind, name in symbols(pathlib.Path(libraries) / "libmarkengine.so", "--defined-only") if kind in "TWi"}
    wanted = {}  # signature -> its symbols: a constructor has several
    for name, signature in demangled(here).items():
        if re.sub(r"\(.*", "", signature.replace(" [clone .cold]", "")) in plain:
            wanted.setdefault(signature, set()).add(name)
    used = set()
    programs = [file for file in pathlib.Path(tests).iterdir() if file.is_file() and os.access(file, os.X_OK)]
    for program in programs:
        used |= {name for _, name in symbols(program, "--undefined-only")}
    text = "\n".join(file.read_text(encoding="utf-8") for file in sorted((pathlib.Path(source) / "tests").rglob("*.[ch]pp")))
    text += "\n".join(file.read_text(encoding="utf-8") for file in sorted((pathlib.Path(source) / "tests").rglob("*.h")))
    # "::" would count a test function of the same name
    called = set(re.findall(r"(?:->|\.)(\w+)\s*\(", text))

    problems = ["not in the engine: " + name for name in sorted(plain - {re.sub(r"\(.*", "", s) for s in wanted})]
    problems += ["no test calls " + signature for signature in sorted(wanted) if not wanted[signature] & used]
    problems += ["no test calls %s::%s" % each for each in sorted(virtual) if each[1] not in called]
    if len(programs) < 50 or len(wanted) < 300 or len(virtual) < 20:
        problems.append("too little was found: %d programs, %d operations, %d virtual ones" % (len(programs), len(wanted), len(virtual)))
    for problem in problems:
        print(problem)
    print("%d operations, %d virtual ones, %d test programs, %d problems" % (len(wanted), len(virtual), len(programs), len(problems)))
    return 1 if problems else 0


if __name__ == "__main__":
    sys.exit(main(*sys.argv[1:]))
