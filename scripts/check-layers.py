#!/usr/bin/env python3
"""Checks the library's include layering and where system headers may be included.

Each library file belongs to one layer; a file may include files of its own layer and of
the layers listed as below it (the README's "Layering"). System interfaces (POSIX and
Linux headers) are included only by `_unix` files and the platform layer. Prints each
violation and exits 1 when there is one.
"""
import pathlib
import re
import sys

ROOT = pathlib.Path(__file__).resolve().parent.parent
INC = "include/PlumvaleBaseCore/"

# name, the paths it owns (longest match wins), the layers it may include.
LAYERS = [
    ("platform", ["src/platform/"], []),
    ("numerics", [INC + "numerics", "src/numerics/"], []),
    ("math", [INC + "math", "src/math/"], ["numerics"]),
    ("app-base", [INC + "app/BAPP_Identity.h", INC + "app/PL_Mutex.h", INC + "app/PL_AppLock.h",
                  INC + "app/BAPP_SpecialFolders.h", INC + "app/UT_Share.h", INC + "app/UT_Rect.h",
                  "src/app/BAPP_Identity.cpp", "src/app/PL_Mutex.cpp", "src/app/PL_AppLock.cpp",
                  "src/app/BAPP_SpecialFolders.cpp", "src/app/UT_Share.cpp", "src/app/UT_Rect.cpp",
                  "src/app/MainThread.h", "src/app/MainThread.cpp"],
     ["platform", "math", "numerics"]),
    # UT_Id is a frame class read by the lexer and used by the pipes, so it sits in text.
    ("text", [INC + "text", "src/text/", INC + "app/UT_Id.h", "src/app/UT_Id.cpp"],
     ["platform", "app-base", "math", "numerics"]),
    ("files", [INC + "files", "src/files/"], ["platform", "app-base", "text", "math", "numerics"]),
    ("app", [INC + "app", "src/app/"],
     ["platform", "app-base", "text", "files", "math", "numerics"]),
    ("umbrella", [INC], ["app-base", "text", "files", "app", "math", "numerics"]),
]
GENERATED = {INC + "PlumvaleBaseCore_export.h", INC + "version.h"}
SYSTEM = re.compile(r"^(unistd|fcntl|dirent|poll|spawn|signal|dlfcn|pwd|grp|sys/.*)\.h$")
INCLUDE = re.compile(r'^\s*#\s*include\s*([<"])([^>"]+)[>"]')


def layer_of(rel):
    best = None
    for name, prefixes, _ in LAYERS:
        for p in prefixes:
            if rel.startswith(p) and (best is None or len(p) > len(best[1])):
                best = (name, p)
    return best[0] if best else None


def resolve(src, kind, target):
    if target.startswith("PlumvaleBaseCore/"):
        return "include/" + target
    if kind == '"':
        for base in (ROOT / "src", src.parent):
            candidate = base / target
            if candidate.exists():
                return str(candidate.resolve().relative_to(ROOT))
    return None


def main():
    allowed = {name: set(below) | {name} for name, _, below in LAYERS}
    errors = []
    files = sorted(p for d in ("include", "src") for p in (ROOT / d).rglob("*")
                   if p.suffix in (".h", ".cpp"))
    for path in files:
        rel = str(path.relative_to(ROOT))
        mine = layer_of(rel)
        platform_file = mine == "platform" or path.stem.endswith("_unix")
        for number, line in enumerate(path.read_text(encoding="utf-8").splitlines(), 1):
            m = INCLUDE.match(line)
            if not m:
                continue
            kind, target = m.groups()
            if kind == "<" and SYSTEM.match(target) and not platform_file:
                errors.append(f"{rel}:{number}: system header <{target}> outside a _unix "
                              "file or the platform layer")
            dep = resolve(path, kind, target)
            if dep is None or dep in GENERATED:
                continue
            theirs = layer_of(dep)
            if mine is None or theirs is None:
                errors.append(f"{rel}:{number}: {dep} belongs to no layer")
            elif theirs not in allowed[mine]:
                errors.append(f"{rel}:{number}: {mine} may not include {theirs} ({dep})")
    for e in errors:
        print(e)
    print(f"layering: {len(files)} files, {len(errors)} violations")
    return 1 if errors else 0


if __name__ == "__main__":
    sys.exit(main())
