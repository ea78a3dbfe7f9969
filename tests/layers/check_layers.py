#!/usr/bin/env python3
"""Checks that Telvane's layers stay apart.

The one table of layers lives in docs/architecture.md: each target, the folders (or
files) it is built from, and what it may use. A target may use what its row names and,
through them, what their rows name. Two things are checked against that:

- headers: the headers each object file of a target really included, as the compiler
  recorded them (`ninja -t deps`), must belong to the target itself or to what it may use;
- links: every target and library reachable from a target in the link graph
  (`cmake --graphviz` of a scratch configure) must be one it may use.

Usage: check_layers.py SOURCE_DIR BUILD_DIR [--plant include|link]
--plant adds one known violation to a scratch copy of the recorded data, so a test can show
that the check fails on it: the status is then 1 only when that violation was reported.
Exit status: 0 clean, 1 violations, 2 the check could not run, 77 skipped.
"""

import argparse
import os
import re
import shutil
import subprocess
import sys
import tempfile

# External libraries by the names the table uses; a name's own dependencies are its own
# business and are not walked.
EXTERNAL_LINKS = [
    (re.compile(r"^Qt6::(Core|Gui|Widgets|Network|Test|Concurrent|Svg|WebEngine(Core|Widgets))$"),
     None),
    (re.compile(r"^Qt6::DBus$"), None),
    (re.compile(r"^OpenSSL::"), "OpenSSL"),
    (re.compile(r"^PkgConfig::TURBOJPEG$|libturbojpeg"), "TurboJPEG"),
    (re.compile(r"^PkgConfig::AVAHI_CLIENT$|libavahi-"), "Avahi"),
    (re.compile(r"^PkgConfig::(CONSOLE_)?XCB$|libxcb"), "XCB"),
    (re.compile(r"libpam\.so"), "PAM"),
    (re.compile(r"^nlohmann_json::"), "nlohmann_json"),
]
# Build machinery every Qt target reaches; never a layer question.
ALWAYS_ALLOWED_LINKS = {"Qt6::moc", "Qt6::rcc", "Qt6::Platform", "Threads::Threads",
                        "WrapAtomic::WrapAtomic"}

EXTERNAL_HEADERS = [
    (re.compile(r"/qt6/QtCore/"), "Qt6::Core"),
    (re.compile(r"/qt6/QtGui/"), "Qt6::Gui"),
    (re.compile(r"/qt6/QtWidgets/"), "Qt6::Widgets"),
    (re.compile(r"/qt6/QtNetwork/"), "Qt6::Network"),
    (re.compile(r"/qt6/QtTest/"), "Qt6::Test"),
    (re.compile(r"/qt6/QtConcurrent/"), "Qt6::Concurrent"),
    (re.compile(r"/qt6/QtSvg/"), "Qt6::Svg"),
    (re.compile(r"/qt6/QtWebEngineCore/"), "Qt6::WebEngineCore"),
    (re.compile(r"/qt6/QtWebEngineWidgets/"), "Qt6::WebEngineWidgets"),
    (re.compile(r"/qt6/QtDBus/"), "Qt6::DBus"),
    (re.compile(r"/turbojpeg\.h$"), "TurboJPEG"),
    (re.compile(r"/include/openssl/"), "OpenSSL"),
    (re.compile(r"/include/avahi-"), "Avahi"),
    (re.compile(r"/include/xcb/"), "XCB"),
    (re.compile(r"/include/security/pam"), "PAM"),
    (re.compile(r"/include/nlohmann/"), "nlohmann_json"),
]
# What a Qt module brings with it.
IMPLIED = {
    "Qt6::Gui": {"Qt6::Core"},
    "Qt6::Network": {"Qt6::Core"},
    "Qt6::Widgets": {"Qt6::Gui", "Qt6::Core"},
    "Qt6::Test": {"Qt6::Core"},
    "Qt6::Concurrent": {"Qt6::Core"},
    "Qt6::Svg": {"Qt6::Gui", "Qt6::Core"},
    "Qt6::DBus": {"Qt6::Core"},
    "Qt6::WebEngineCore": {"Qt6::Network", "Qt6::Gui", "Qt6::Core"},
    "Qt6::WebEngineWidgets": {"Qt6::WebEngineCore", "Qt6::Widgets", "Qt6::Network", "Qt6::Gui",
                              "Qt6::Core"},
}


def read_table(source_dir):
    """The rows between the layer-table markers of docs/architecture.md."""
    path = os.path.join(source_dir, "docs", "architecture.md")
    rows, inside = {}, False
    with open(path, encoding="utf-8") as f:
        for line in f:
            if "layer-table:begin" in line:
                inside = True
                continue
            if "layer-table:end" in line:
                break
            if not inside or not line.startswith("| `"):
                continue
            cells = [c.strip() for c in line.strip().strip("|").split("|")]
            target = cells[0].strip("`")
            places = [p.strip().strip("`").rstrip("/") for p in cells[1].split(",") if p.strip()]
            uses = [u.strip().strip("`") for u in cells[2].split(",") if u.strip() and u.strip() != "—"]
            rows[target] = {"places": places, "uses": uses}
    if not rows:
        sys.exit(f"no layer table found in {path}")
    return rows


def closure(rows, target):
    """Everything `target` may use, directly or through what it may use."""
    seen, todo = set(), list(rows[target]["uses"])
    while todo:
        name = todo.pop()
        if name in seen:
            continue
        seen.add(name)
        todo.extend(rows.get(name, {}).get("uses", []))
        todo.extend(IMPLIED.get(name, ()))
    return seen


def owner_of(path, source_dir, rows):
    """The table target that a source path belongs to (longest match), else None."""
    rel = os.path.relpath(path, source_dir)
    best, length = None, -1
    for target, row in rows.items():
        for place in row["places"]:
            if (rel == place or rel.startswith(place + "/")) and len(place) > length:
                best, length = target, len(place)
    return best


def external_header(path):
    for pattern, name in EXTERNAL_HEADERS:
        if pattern.search(path):
            return name
    return None


def external_link(label):
    for pattern, name in EXTERNAL_LINKS:
        if pattern.search(label):
            return name or label
    return None


def read_deps(text, build_dir):
    """Object file -> included paths, from `ninja -t deps`."""
    deps, current = {}, None
    for line in text.splitlines():
        if not line.strip():
            continue
        if not line.startswith(" "):
            current = line.split(":", 1)[0]
            deps[current] = []
        elif current is not None:
            deps[current].append(os.path.normpath(os.path.join(build_dir, line.strip())))
    return deps


def check_headers(deps, rows, source_dir, build_dir):
    problems = []
    object_target = re.compile(r"CMakeFiles/([^/]+)\.dir/")
    for obj, headers in sorted(deps.items()):
        match = object_target.search(obj)
        if not match or match.group(1) not in rows:
            continue  # tests, benchmarks and fuzz targets may use anything
        target = match.group(1)
        allowed = closure(rows, target) | {target}
        for header in headers:
            if header.startswith(build_dir + os.sep):
                continue  # generated (moc) files follow their own headers
            if header.startswith(source_dir + os.sep):
                owner = owner_of(header, source_dir, rows)
                if owner is None:
                    owner = os.path.relpath(header, source_dir)
            else:
                owner = external_header(header)
                if owner is None:
                    continue  # the C and C++ libraries
            if owner not in allowed:
                problems.append(f"{obj} ({target}) includes {header}, which belongs to {owner}")
    return problems


def read_graph(text):
    labels, edges = {}, {}
    for line in text.splitlines():
        node = re.match(r'\s*"(node\d+)" \[ label = "([^"]+)"', line)
        if node:
            labels[node.group(1)] = node.group(2)
            continue
        edge = re.match(r'\s*"(node\d+)" -> "(node\d+)"', line)
        if edge:
            edges.setdefault(edge.group(1), []).append(edge.group(2))
    graph = {}
    for source, targets in edges.items():
        graph.setdefault(labels[source], set()).update(labels[t] for t in targets)
    return graph


def check_links(graph, rows):
    problems = []
    for target in sorted(rows):
        if target not in graph and not any(target in v for v in graph.values()):
            problems.append(f"{target} is in the layer table but not in the build")
            continue
        allowed = closure(rows, target)
        seen, todo = set(), [(target, [target])]
        while todo:
            name, road = todo.pop()
            for dep in sorted(graph.get(name, ())):
                if dep in seen:
                    continue
                seen.add(dep)
                if dep in ALWAYS_ALLOWED_LINKS:
                    continue
                external = external_link(dep)
                if external is not None:
                    if external not in allowed:
                        problems.append(f"{target} links {external} (through {' -> '.join(road + [dep])})")
                    continue  # an external library's own dependencies are its own
                if dep not in allowed:
                    problems.append(f"{target} links {dep} (through {' -> '.join(road + [dep])})")
                todo.append((dep, road + [dep]))
    return problems


def configure_graph(source_dir, build_dir, scratch):
    """The link graph of a fresh configure with the build's own options."""
    cache = {}
    with open(os.path.join(build_dir, "CMakeCache.txt"), encoding="utf-8") as f:
        for line in f:
            m = re.match(r"(TELVANE_BUILD_CONSOLE|CMAKE_CXX_COMPILER|CMAKE_C_COMPILER):[A-Z]+=(.*)", line)
            if m:
                cache[m.group(1)] = m.group(2).strip()
    args = ["cmake", "-S", source_dir, "-B", os.path.join(scratch, "graph"), "-G", "Ninja",
            f"--graphviz={os.path.join(scratch, 'graph.dot')}"]
    args += [f"-D{k}={v}" for k, v in cache.items()]
    subprocess.run(args, check=True, stdout=subprocess.DEVNULL)
    with open(os.path.join(scratch, "graph.dot"), encoding="utf-8") as f:
        return f.read()


def main():
    parser = argparse.ArgumentParser()
    parser.add_argument("source_dir")
    parser.add_argument("build_dir")
    parser.add_argument("--plant", choices=["include", "link"])
    args = parser.parse_args()
    source_dir = os.path.realpath(args.source_dir)
    build_dir = os.path.realpath(args.build_dir)
    if not os.path.exists(os.path.join(build_dir, "build.ninja")):
        print("layer check: skipped, the build does not use Ninja")
        return 77

    rows = read_table(source_dir)
    scratch = tempfile.mkdtemp(prefix="telvane-layers.")
    try:
        deps_text = subprocess.run(["ninja", "-C", build_dir, "-t", "deps"], check=True,
                                   capture_output=True, text=True).stdout
        graph_text = configure_graph(source_dir, build_dir, scratch)
        if args.plant:
            # A scratch copy of the recorded data with one violation added.
            planted = os.path.join(scratch, "planted")
            with open(planted, "w", encoding="utf-8") as f:
                if args.plant == "include":
                    f.write(deps_text)
                    f.write("src/session/CMakeFiles/telvane_session.dir/Planted.cpp.o: #deps 1\n")
                    f.write(f"    {os.path.join(source_dir, 'src/state/AppState.h')}\n")
                else:
                    f.write(graph_text)
                    f.write('"node900001" [ label = "telvanectl" ];\n"node900002" [ label = "Qt6::Gui" ];\n'
                            '"node900001" -> "node900002"\n')
            with open(planted, encoding="utf-8") as f:
                if args.plant == "include":
                    deps_text = f.read()
                else:
                    graph_text = f.read()

        problems = check_headers(read_deps(deps_text, build_dir), rows, source_dir, build_dir)
        problems += check_links(read_graph(graph_text), rows)
    finally:
        shutil.rmtree(scratch, ignore_errors=True)

    for problem in problems:
        print("layer violation:", problem)
    if args.plant:
        planted = {"include": "includes " + os.path.join(source_dir, "src/state/AppState.h"),
                   "link": "telvanectl links Qt6::Gui"}[args.plant]
        if any(planted in problem for problem in problems):
            return 1
        print("the planted violation was not reported")
        return 0
    if problems:
        print(f"{len(problems)} layer violation(s); the rules are the table in docs/architecture.md")
        return 1
    print(f"layers: {len(rows)} targets checked, headers and links clean")
    return 0


if __name__ == "__main__":
    try:
        sys.exit(main())
    except (OSError, subprocess.CalledProcessError) as error:
        print(f"layer check could not run: {error}")
        # A planted run that cannot run must not count as a caught violation.
        sys.exit(0 if "--plant" in sys.argv else 2)
