#!/usr/bin/env python3
"""Tests of render_cases.py: the comparison must notice every kind of
difference between the Linux and the Windows output, and the PNG reader must
undo every PNG filter."""
import os
import struct
import sys
import tempfile
import unittest
import zlib

sys.path.insert(0, os.path.dirname(os.path.abspath(__file__)))
import render_cases  # noqa: E402

WIDTH, HEIGHT = 3, 2


def sample_bytes(depth, values):
    fmt = {"8": "B", "16": "H", "32f": "f"}[depth]
    return struct.pack(f"<{len(values)}{fmt}", *values)


def write_output(folder, frames, pipl=b"PIPL", math_bias=0.0):
    """A driver's output folder: manifest, property list, frames, probes."""
    os.makedirs(folder, exist_ok=True)
    with open(os.path.join(folder, "manifest.txt"), "w") as manifest:
        for name, (depth, values, errors) in frames.items():
            manifest.write(f"{name} ae synthetic case {depth} {WIDTH} {HEIGHT} {errors}\n")
            with open(os.path.join(folder, name), "wb") as f:
                f.write(sample_bytes(depth, values))
    with open(os.path.join(folder, "Morvane.pipl"), "wb") as f:
        f.write(pipl)
    for function in ("sin", "cos", "pow"):
        count = render_cases.probe_count(function)
        values = [0.5] * count
        values[-1] += math_bias
        with open(os.path.join(folder, f"math-{function}.bin"), "wb") as f:
            f.write(struct.pack(f"<{count}d", *values))


def frames_at_every_depth():
    return {
        "ae-case-8.raw": ("8", list(range(24)), "0 0"),
        "ae-case-16.raw": ("16", [v * 1000 for v in range(24)], "0 0"),
        "ae-case-32f.raw": ("32f", [v / 7.0 for v in range(24)], "0 0"),
    }


class CompareTest(unittest.TestCase):
    def setUp(self):
        self.folder = tempfile.TemporaryDirectory()
        self.linux = os.path.join(self.folder.name, "linux")
        self.windows = os.path.join(self.folder.name, "windows")
        write_output(self.linux, frames_at_every_depth())

    def tearDown(self):
        self.folder.cleanup()

    def test_identical_output_passes(self):
        write_output(self.windows, frames_at_every_depth())
        lines, faults = render_cases.compare(self.linux, self.windows)
        self.assertEqual(faults, 0, lines)
        self.assertIn("frames: 3 of 3 identical", "\n".join(lines))

    def test_one_changed_sample_is_found_at_every_depth(self):
        for name, changed, expected in (("ae-case-8.raw", 14, "by 1"),
                                        ("ae-case-16.raw", 13001, "by 1"),
                                        ("ae-case-32f.raw", 13 / 7.0 + 2 ** -20, "by 9.5")):
            with self.subTest(name=name):
                frames = frames_at_every_depth()
                depth, values, errors = frames[name]
                values = list(values)
                values[13] = changed  # second row, pixel 0, red
                frames[name] = (depth, values, errors)
                write_output(self.windows, frames)
                lines, faults = render_cases.compare(self.linux, self.windows)
                self.assertEqual(faults, 1, lines)
                report = "\n".join(lines)
                self.assertIn(f"{name}: 1 samples in 1 pixels differ", report)
                self.assertIn("x=0, y=1, channel R", report)
                self.assertIn(expected, report)

    def test_error_codes_and_missing_frames_count_as_differences(self):
        frames = frames_at_every_depth()
        depth, values, _ = frames["ae-case-8.raw"]
        frames["ae-case-8.raw"] = (depth, values, "0 512")
        del frames["ae-case-16.raw"]
        write_output(self.windows, frames)
        lines, faults = render_cases.compare(self.linux, self.windows)
        self.assertEqual(faults, 2, lines)
        self.assertIn("only Linux ['ae-case-16.raw']", "\n".join(lines))

    def test_other_property_list_is_a_difference(self):
        write_output(self.windows, frames_at_every_depth(), pipl=b"PIPX")
        _, faults = render_cases.compare(self.linux, self.windows)
        self.assertEqual(faults, 1)

    def test_math_differences_are_reported_without_failing(self):
        write_output(self.windows, frames_at_every_depth(), math_bias=2 ** -53)
        lines, faults = render_cases.compare(self.linux, self.windows)
        self.assertEqual(faults, 0, lines)
        report = "\n".join(lines)
        self.assertIn("sin: 1 of", report)
        self.assertIn("by 1 ulp at most", report)


def encode_png(width, rows_rgba, filters):
    """A PNG whose rows use the given filter types (0 to 4)."""
    def chunk(kind, body):
        data = kind + body
        return struct.pack(">I", len(body)) + data + struct.pack(">I", zlib.crc32(data))

    def paeth(a, b, c):
        p = a + b - c
        pa, pb, pc = abs(p - a), abs(p - b), abs(p - c)
        return a if pa <= pb and pa <= pc else b if pb <= pc else c

    raw, previous = bytearray(), bytes(width * 4)
    for row, kind in zip(rows_rgba, filters):
        line = bytearray()
        for i, x in enumerate(row):
            a = row[i - 4] if i >= 4 else 0
            b = previous[i]
            c = previous[i - 4] if i >= 4 else 0
            predictor = [0, a, b, (a + b) // 2, paeth(a, b, c)][kind]
            line.append((x - predictor) & 0xFF)
        raw += bytes([kind]) + line
        previous = row
    header = struct.pack(">IIBBBBB", width, len(rows_rgba), 8, 6, 0, 0, 0)
    return (b"\x89PNG\r\n\x1a\n" + chunk(b"IHDR", header) +
            chunk(b"IDAT", zlib.compress(bytes(raw))) + chunk(b"IEND", b""))


class DecodePngTest(unittest.TestCase):
    def test_every_filter_type_is_undone(self):
        width = 4
        rows = [bytes((17 * y + 29 * i + (i * i) % 7) & 0xFF for i in range(width * 4))
                for y in range(5)]
        with tempfile.TemporaryDirectory() as folder:
            path = os.path.join(folder, "filters.png")
            with open(path, "wb") as f:
                f.write(encode_png(width, rows, [0, 1, 2, 3, 4]))
            self.assertEqual(render_cases.decode_png(path), (width, 5, b"".join(rows)))
            raw = os.path.join(folder, "filters.raw")
            render_cases.write_argb_raw(path, raw)
            with open(raw, "rb") as f:
                data = f.read()
            self.assertEqual(data[:16], b"ARGB8RAW" + struct.pack("<II", width, 5))
            r, g, b, a = rows[0][:4]
            self.assertEqual(data[16:20], bytes((a, r, g, b)))


if __name__ == "__main__":
    unittest.main()
