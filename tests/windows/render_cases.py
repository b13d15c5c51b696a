#!/usr/bin/env python3
"""Renders the comparison cases with the Linux module and with the Windows
module under Wine, and compares the output byte for byte.

  render_cases.py run --wine WINE --windows-driver EXE --windows-module AEX
                      --linux-driver EXE --linux-module SO --sample PNG --work DIR
  render_cases.py compare LINUX_DIR WINDOWS_DIR
  render_cases.py decode-png PNG OUT

`run` decodes the sample image, runs both drivers (morvane_render_cases) and
compares. Every rendered frame must be identical; differences between the two
C run-times' sin, cos and pow over the kernels' arguments are reported, and
fail the comparison only through the pixels they change. Exit status: 0 equal,
1 different or failed, 77 when Wine is not available (the test is skipped).
"""
import argparse
import math
import os
import shutil
import struct
import subprocess
import sys
import time
import zlib

SKIPPED = 77
SAMPLE_BYTES = {"8": 1, "16": 2, "32f": 4}


# --- Sample image -------------------------------------------------------------

def decode_png(path):
    """(width, height, RGBA bytes) of an 8-bit RGBA, non-interlaced PNG."""
    with open(path, "rb") as f:
        data = f.read()
    if data[:8] != b"\x89PNG\r\n\x1a\n":
        raise ValueError(f"{path}: not a PNG file")
    at, idat, header = 8, [], None
    while at < len(data):
        length, kind = struct.unpack_from(">I4s", data, at)
        body = data[at + 8:at + 8 + length]
        if kind == b"IHDR":
            header = struct.unpack(">IIBBBBB", body)
        elif kind == b"IDAT":
            idat.append(body)
        at += 12 + length
    width, height, depth, colour, _, _, interlace = header
    if depth != 8 or colour != 6 or interlace != 0:
        raise ValueError(f"{path}: only 8-bit RGBA without interlacing is read")
    raw = zlib.decompress(b"".join(idat))
    stride, out, previous = width * 4, bytearray(), bytearray(width * 4)
    for y in range(height):
        kind = raw[y * (stride + 1)]
        line = bytearray(raw[y * (stride + 1) + 1:(y + 1) * (stride + 1)])
        for i in range(stride):
            a = line[i - 4] if i >= 4 else 0
            b = previous[i]
            c = previous[i - 4] if i >= 4 else 0
            if kind == 1:
                line[i] = (line[i] + a) & 0xFF
            elif kind == 2:
                line[i] = (line[i] + b) & 0xFF
            elif kind == 3:
                line[i] = (line[i] + (a + b) // 2) & 0xFF
            elif kind == 4:
                p = a + b - c
                pa, pb, pc = abs(p - a), abs(p - b), abs(p - c)
                line[i] = (line[i] + (a if pa <= pb and pa <= pc else b if pb <= pc else c)) & 0xFF
        out += line
        previous = line
    return width, height, bytes(out)


def write_argb_raw(png, out):
    """The driver's raw input: "ARGB8RAW", width, height, then ARGB pixels."""
    width, height, rgba = decode_png(png)
    argb = bytearray(len(rgba))
    argb[0::4], argb[1::4], argb[2::4], argb[3::4] = rgba[3::4], rgba[0::4], rgba[1::4], rgba[2::4]
    with open(out, "wb") as f:
        f.write(b"ARGB8RAW" + struct.pack("<II", width, height) + argb)


# --- Comparison ---------------------------------------------------------------

def read_manifest(folder):
    entries = {}
    with open(os.path.join(folder, "manifest.txt")) as f:
        for line in f:
            fields = line.split()
            if fields:
                entries[fields[0]] = fields
    return entries


def ulp_distance(a, b):
    """Distance in units in the last place between two doubles of the same sign."""
    ia = struct.unpack("<q", struct.pack("<d", a))[0]
    ib = struct.unpack("<q", struct.pack("<d", b))[0]
    if (ia < 0) != (ib < 0):
        return abs(ia) + abs(ib) if a != b else 0
    return abs(ia - ib)


def compare_frame(name, depth, width, linux, windows):
    """A line describing how two renders of one frame differ, or None."""
    if linux == windows:
        return None
    if len(linux) != len(windows):
        return f"{name}: {len(linux)} bytes vs {len(windows)}"
    size = SAMPLE_BYTES[depth]
    fmt = {1: "B", 2: "H", 4: "f"}[size]
    count = len(linux) // size
    a = struct.unpack(f"<{count}{fmt}", linux)
    b = struct.unpack(f"<{count}{fmt}", windows)
    diffs = [(i, x, y) for i, (x, y) in enumerate(zip(a, b)) if x != y]
    pixels = sorted({i // 4 for i, _, _ in diffs})
    largest = max(abs(x - y) for _, x, y in diffs)
    i, x, y = diffs[0]
    where = f"first at x={(i // 4) % width}, y={(i // 4) // width}, channel {'ARGB'[i % 4]}"
    return (f"{name}: {len(diffs)} samples in {len(pixels)} pixels differ, largest by "
            f"{largest:g} ({where}: Linux {x!r}, Windows {y!r})")


def probe_arguments(function):
    """(label maker, kernel use) for the arguments of MathProbes.cpp, in its order.

    The kernel use is True for the arguments the kernels themselves take (the
    curve table's n = 1024, shading tables up to 256); for pow it is the line
    length, from which the distribution's pixel count follows.
    """
    if function == "sin":
        for n in range(2, 1025):
            for i in range(n):
                yield (lambda i=i, n=n: f"sin(2*(u*pi)), u={i}/{n}"), n == 1024
        for n in range(2, 1025):
            for i in range(n):
                yield (lambda i=i, n=n: f"sin(2*(x*pi)), x=float({i}/{n - 1})"), False
    elif function == "cos":
        for size in range(2, 1025):
            for i in range(size):
                yield (lambda i=i, size=size: f"cos((t+t)*pi), t={i}/{size}"), size <= 256
    elif function == "pow":
        for k in range(1001, 2001):
            for length in range(1, 2049):
                yield (lambda k=k, length=length: f"pow({length}^2, {k / 1000.0!r}-1)"), length


def probe_count(function):
    """How many results MathProbes.cpp writes for `function`."""
    tables = sum(range(2, 1025))
    return {"sin": 2 * tables, "cos": tables, "pow": 1000 * 2048}[function]


NEAR_ZERO = 1e-3


def compare_math(linux_dir, windows_dir):
    """Lines describing where the run-times' sin, cos and pow differ."""
    lines = []
    for function in ("sin", "cos", "pow"):
        path = f"math-{function}.bin"
        with open(os.path.join(linux_dir, path), "rb") as f:
            linux = f.read()
        with open(os.path.join(windows_dir, path), "rb") as f:
            windows = f.read()
        count = len(linux) // 8
        if linux == windows:
            lines.append(f"{function}: all {count} probed results identical")
            continue
        a = struct.unpack(f"<{count}d", linux)
        b = struct.unpack(f"<{count}d", windows)
        last_bit, largest_ulps, near_zero, largest_absolute = 0, 0, 0, 0.0
        kernel_args, changed_counts, examples = 0, 0, []
        if count != probe_count(function):
            raise ValueError(f"{path}: {count} results, expected {probe_count(function)}")
        differing = {i for i, (x, y) in enumerate(zip(a, b)) if x != y}
        for index, (label, use) in enumerate(probe_arguments(function)):
            if index not in differing:
                continue
            x, y = a[index], b[index]
            if abs(x) < NEAR_ZERO:
                near_zero += 1
                largest_absolute = max(largest_absolute, abs(x - y))
            else:
                last_bit += 1
                largest_ulps = max(largest_ulps, ulp_distance(x, y))
            if len(examples) < 3 or (abs(x) >= NEAR_ZERO and len(examples) < 5):
                examples.append(f"{label()}: Linux {x!r}, Windows {y!r}")
            if function == "pow":
                length = use
                # DistributionPixels truncates pow(...) + length to a whole number.
                if math.trunc(x + length) != math.trunc(y + length):
                    changed_counts += 1
            elif use:
                kernel_args += 1
                # The shading table keeps cos(...) * 0.5 + 0.5.
                if function == "cos" and x * 0.5 + 0.5 != y * 0.5 + 0.5:
                    changed_counts += 1
        summary = f"{function}: {last_bit + near_zero} of {count} probed results differ"
        if last_bit:
            summary += f"; {last_bit} by {largest_ulps} ulp at most"
        if near_zero:
            summary += (f"; {near_zero} results near zero (|result| < {NEAR_ZERO:g}) by at most "
                        f"{largest_absolute:.3g} absolutely")
        if function == "pow":
            summary += f"; the distribution's truncated pixel count changes for {changed_counts}"
        else:
            summary += f"; {kernel_args} of them at arguments the kernels take"
        if function == "cos":
            summary += f", of which {changed_counts} change the shading value cos*0.5+0.5"
        lines.append(summary)
        lines.extend(f"  e.g. {e}" for e in examples)
    return lines


def compare(linux_dir, windows_dir):
    """(report lines, number of differing or failed frames)."""
    lines, faults = [], 0
    linux, windows = read_manifest(linux_dir), read_manifest(windows_dir)
    if set(linux) != set(windows):
        lines.append(f"different frames: only Linux {sorted(set(linux) - set(windows))}, "
                     f"only Windows {sorted(set(windows) - set(linux))}")
        faults += 1
    with open(os.path.join(linux_dir, "Morvane.pipl"), "rb") as f:
        linux_pipl = f.read()
    with open(os.path.join(windows_dir, "Morvane.pipl"), "rb") as f:
        windows_pipl = f.read()
    if linux_pipl != windows_pipl:
        lines.append("the property list read from the Windows module's resource differs from "
                     "the one next to the Linux module")
        faults += 1
    else:
        lines.append(f"property list: the Windows resource and the Linux file are identical "
                     f"({len(linux_pipl)} bytes)")
    identical = 0
    for name in sorted(set(linux) & set(windows)):
        if linux[name][1:] != windows[name][1:]:
            lines.append(f"{name}: Linux {' '.join(linux[name][1:])} vs Windows "
                         f"{' '.join(windows[name][1:])}")
            faults += 1
            continue
        with open(os.path.join(linux_dir, name), "rb") as f:
            a = f.read()
        with open(os.path.join(windows_dir, name), "rb") as f:
            b = f.read()
        depth, width = linux[name][4], int(linux[name][5])
        difference = compare_frame(name, depth, width, a, b)
        if difference:
            lines.append(difference)
            faults += 1
        else:
            identical += 1
    lines.append(f"frames: {identical} of {len(linux)} identical "
                 f"(every case at 8, 16 and 32-bit float, smart and single-call render)")
    lines.append("C run-time functions over the kernels' arguments:")
    lines.extend("  " + line for line in compare_math(linux_dir, windows_dir))
    return lines, faults


# --- Running both drivers -----------------------------------------------------

def windows_path(path):
    """Wine's name for a host path (drive Z: is the host's root)."""
    return "Z:" + os.path.abspath(path).replace("/", "\\")


def run_driver(command, env=None, timeout=900):
    start = time.monotonic()
    result = subprocess.run(command, env=env, timeout=timeout, stdout=subprocess.PIPE,
                            stderr=subprocess.PIPE, text=True)
    elapsed = time.monotonic() - start
    if result.returncode != 0:
        sys.stderr.write(result.stdout + result.stderr)
        raise RuntimeError(f"{command[0]} exited with {result.returncode}")
    return elapsed


def run(args):
    wine = args.wine or shutil.which("wine64") or shutil.which("wine")
    if not wine and os.path.exists("/usr/lib/wine/wine64"):
        wine = "/usr/lib/wine/wine64"
    if not wine:
        print("Wine is not installed: the Windows render cannot run here (skipped)")
        return SKIPPED
    work = os.path.abspath(args.work)
    linux_dir, windows_dir = os.path.join(work, "linux"), os.path.join(work, "windows")
    for folder in (linux_dir, windows_dir):
        shutil.rmtree(folder, ignore_errors=True)
        os.makedirs(folder)
    sample = os.path.join(work, "sample.argb8raw")
    write_argb_raw(args.sample, sample)

    seconds = run_driver([args.linux_driver, args.linux_module, linux_dir, sample])
    print(f"Linux render: {seconds:.1f} s")

    env = dict(os.environ)
    env.update({
        "WINEPREFIX": os.path.join(work, "wineprefix"),
        "WINEDEBUG": "-all",
        "WINEDLLOVERRIDES": "mscoree,mshtml=",
        "DISPLAY": "",
    })
    module = os.path.join(work, "windows-module", os.path.basename(args.windows_module))
    os.makedirs(os.path.dirname(module), exist_ok=True)
    shutil.copyfile(args.windows_module, module)  # alone: no .pipl file beside it
    seconds = run_driver([wine, args.windows_driver, windows_path(module), windows_path(windows_dir),
                          windows_path(sample)], env=env)
    print(f"Windows render under Wine: {seconds:.1f} s (including Wine's start-up)")

    lines, faults = compare(linux_dir, windows_dir)
    report = os.path.join(work, "report.txt")
    with open(report, "w") as f:
        f.write("\n".join(lines) + "\n")
    print("\n".join(lines))
    print(f"report: {report}")
    return 0 if faults == 0 else 1


def main():
    parser = argparse.ArgumentParser(description=__doc__.splitlines()[0])
    sub = parser.add_subparsers(dest="command", required=True)
    r = sub.add_parser("run")
    r.add_argument("--wine")
    for option in ("windows-driver", "windows-module", "linux-driver", "linux-module", "sample",
                   "work"):
        r.add_argument(f"--{option}", required=True)
    c = sub.add_parser("compare")
    c.add_argument("linux_dir")
    c.add_argument("windows_dir")
    d = sub.add_parser("decode-png")
    d.add_argument("png")
    d.add_argument("out")
    args = parser.parse_args()
    if args.command == "run":
        return run(args)
    if args.command == "compare":
        lines, faults = compare(args.linux_dir, args.windows_dir)
        print("\n".join(lines))
        return 0 if faults == 0 else 1
    write_argb_raw(args.png, args.out)
    return 0


if __name__ == "__main__":
    sys.exit(main())
