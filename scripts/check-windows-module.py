#!/usr/bin/env python3
"""Inspects the Windows effect module as a host would see it.

Usage: check-windows-module.py MODULE.aex PIPL_FILE

Reads the PE file itself (standard library only) and checks that it is a
PE32+ DLL for x86-64; that it exports exactly PluginDataEntryFunction and
EffectMain, by name; that it imports from system DLLs only (no run-time DLLs of
the compiler); and that its resource of type "PIPL", id 16000, language 1033 is
the only one of its type and holds exactly the bytes of PIPL_FILE, which the
native generator wrote. Prints what it found; exits 1 on any fault.
"""
import re
import struct
import sys

EXPECTED_EXPORTS = {"PluginDataEntryFunction", "EffectMain"}
PIPL_ID = 16000
PIPL_LANGUAGE = 1033

IMAGE_FILE_MACHINE_AMD64 = 0x8664
IMAGE_FILE_DLL = 0x2000
PE32_PLUS_MAGIC = 0x20B
DIR_EXPORT, DIR_IMPORT, DIR_RESOURCE, DIR_DELAY_IMPORT = 0, 1, 2, 13

# DLLs every Windows installation has. Anything else (libstdc++-6.dll,
# libgcc_s_seh-1.dll, libwinpthread-1.dll, a Visual C++ redistributable) would
# have to be installed next to the host.
SYSTEM_DLLS = {
    "kernel32.dll", "user32.dll", "gdi32.dll", "advapi32.dll", "shell32.dll",
    "ole32.dll", "oleaut32.dll", "msvcrt.dll", "ucrtbase.dll", "ntdll.dll",
    "ws2_32.dll", "bcrypt.dll", "shlwapi.dll", "comdlg32.dll", "version.dll",
    "winmm.dll", "comctl32.dll", "crypt32.dll", "secur32.dll", "dbghelp.dll",
}
SYSTEM_DLL_PATTERNS = (re.compile(r"api-ms-win-[a-z0-9-]+\.dll"),)


class PeError(Exception):
    pass


class PeFile:
    def __init__(self, data):
        self.data = data
        if data[:2] != b"MZ":
            raise PeError("not a PE file (no MZ header)")
        pe = self.u32(0x3C)
        if data[pe:pe + 4] != b"PE\0\0":
            raise PeError("not a PE file (no PE signature)")
        (self.machine, sections, _, _, _, optional_size,
         self.characteristics) = struct.unpack_from("<HHIIIHH", data, pe + 4)
        optional = pe + 24
        self.magic = self.u16(optional)
        if self.magic == PE32_PLUS_MAGIC:
            count_at, dirs_at = optional + 108, optional + 112
        else:
            count_at, dirs_at = optional + 92, optional + 96
        count = self.u32(count_at)
        self.directories = [struct.unpack_from("<II", data, dirs_at + 8 * i) for i in range(count)]
        table = optional + optional_size
        self.sections = []
        for i in range(sections):
            name, vsize, vaddr, rsize, raddr = struct.unpack_from("<8sIIII", data, table + 40 * i)
            self.sections.append((name.rstrip(b"\0").decode(errors="replace"), vaddr,
                                  max(vsize, rsize), raddr, rsize))

    def u16(self, offset):
        return struct.unpack_from("<H", self.data, offset)[0]

    def u32(self, offset):
        return struct.unpack_from("<I", self.data, offset)[0]

    def offset(self, rva):
        for _, vaddr, size, raddr, rsize in self.sections:
            if vaddr <= rva < vaddr + size:
                if rva - vaddr >= rsize:
                    raise PeError(f"RVA {rva:#x} lies in uninitialised data")
                return raddr + rva - vaddr
        raise PeError(f"RVA {rva:#x} is in no section")

    def cstring(self, rva):
        start = self.offset(rva)
        end = self.data.index(b"\0", start)
        return self.data[start:end].decode("ascii", errors="replace")

    def directory(self, index):
        if index >= len(self.directories):
            return 0, 0
        return self.directories[index]

    def exports(self):
        """(number of exported functions, names)."""
        rva, size = self.directory(DIR_EXPORT)
        if rva == 0 or size == 0:
            return 0, []
        at = self.offset(rva)
        functions, names, _, names_rva = struct.unpack_from("<IIII", self.data, at + 20)
        names_at = self.offset(names_rva) if names else 0
        return functions, [self.cstring(self.u32(names_at + 4 * i)) for i in range(names)]

    def imports(self):
        """{dll name: [imported names]} of the ordinary and the delay-load imports."""
        result = {}
        rva, size = self.directory(DIR_IMPORT)
        if rva and size:
            at = self.offset(rva)
            while True:
                lookup, _, _, name_rva, thunk = struct.unpack_from("<IIIII", self.data, at)
                if name_rva == 0:
                    break
                result[self.cstring(name_rva)] = self._thunk_names(lookup or thunk)
                at += 20
        rva, size = self.directory(DIR_DELAY_IMPORT)
        if rva and size:
            at = self.offset(rva)
            while True:
                fields = struct.unpack_from("<8I", self.data, at)
                if fields[1] == 0:
                    break
                result[self.cstring(fields[1])] = self._thunk_names(fields[4])
                at += 32
        return result

    def _thunk_names(self, rva):
        names = []
        at = self.offset(rva)
        while True:
            entry = struct.unpack_from("<Q", self.data, at)[0]
            if entry == 0:
                return names
            if entry & (1 << 63):
                names.append(f"#{entry & 0xFFFF}")
            else:
                names.append(self.cstring((entry & 0x7FFFFFFF) + 2))
            at += 8

    def resources(self):
        """[(type, name, language, bytes)]; types and names are ints or strings."""
        rva, size = self.directory(DIR_RESOURCE)
        if rva == 0 or size == 0:
            return []
        base = self.offset(rva)

        def entries(directory):
            named, ids = struct.unpack_from("<HH", self.data, base + directory + 12)
            for i in range(named + ids):
                key, target = struct.unpack_from("<II", self.data, base + directory + 16 + 8 * i)
                if key & 0x80000000:
                    at = base + (key & 0x7FFFFFFF)
                    length = self.u16(at)
                    key = self.data[at + 2:at + 2 + 2 * length].decode("utf-16-le")
                yield key, target

        found = []
        for type_key, type_target in entries(0):
            for name_key, name_target in entries(type_target & 0x7FFFFFFF):
                for lang_key, lang_target in entries(name_target & 0x7FFFFFFF):
                    data_rva, data_size = struct.unpack_from("<II", self.data, base + lang_target)
                    at = self.offset(data_rva)
                    found.append((type_key, name_key, lang_key, self.data[at:at + data_size]))
        return found


def is_system_dll(name):
    lower = name.lower()
    return lower in SYSTEM_DLLS or any(p.fullmatch(lower) for p in SYSTEM_DLL_PATTERNS)


def inspect(module_path, pipl_path):
    """Returns (report lines, faults)."""
    with open(module_path, "rb") as f:
        data = f.read()
    with open(pipl_path, "rb") as f:
        pipl = f.read()
    lines, faults = [], []
    try:
        pe = PeFile(data)
    except (PeError, struct.error, ValueError) as e:
        return lines, [f"{module_path}: {e}"]

    kind = "PE32+" if pe.magic == PE32_PLUS_MAGIC else f"optional-header magic {pe.magic:#x}"
    lines.append(f"format: {kind}, machine {pe.machine:#06x}, "
                 f"characteristics {pe.characteristics:#06x}")
    if pe.magic != PE32_PLUS_MAGIC:
        faults.append(f"not PE32+ ({kind})")
    if pe.machine != IMAGE_FILE_MACHINE_AMD64:
        faults.append(f"machine {pe.machine:#06x} is not x86-64 (0x8664)")
    if not pe.characteristics & IMAGE_FILE_DLL:
        faults.append("not a DLL (IMAGE_FILE_DLL not set)")

    functions, names = pe.exports()
    lines.append(f"exports: {', '.join(sorted(names)) or '(none)'} ({functions} functions)")
    if set(names) != EXPECTED_EXPORTS or len(names) != len(EXPECTED_EXPORTS):
        faults.append(f"exports: {', '.join(sorted(names)) or '(none)'}; "
                      f"expected exactly {', '.join(sorted(EXPECTED_EXPORTS))}")
    elif functions != len(EXPECTED_EXPORTS):
        faults.append(f"{functions} exported functions, of which {functions - len(names)} "
                      "by ordinal only")

    imports = pe.imports()
    for dll, symbols in sorted(imports.items(), key=lambda item: item[0].lower()):
        lines.append(f"imports {dll}: {len(symbols)} functions")
        if not is_system_dll(dll):
            faults.append(f"imports non-system DLL {dll}")
    crt = {dll: syms for dll, syms in imports.items()
           if dll.lower() in ("msvcrt.dll", "ucrtbase.dll") or dll.lower().startswith(
               "api-ms-win-crt-math")}
    maths = sorted({s for syms in crt.values() for s in syms
                    if s in ("sin", "cos", "pow", "floor", "ceil", "round", "roundf", "ceilf",
                             "sinf", "cosf", "powf")})
    lines.append("mathematical functions from the C run-time DLL: "
                 f"{', '.join(maths) if maths else '(none: linked into the module)'}")

    resources = pe.resources()
    pipls = [r for r in resources if isinstance(r[0], str) and r[0].upper() == "PIPL"]
    lines.append("resources: " + ", ".join(
        f"{t}/{n}/{lang} ({len(b)} bytes)" for t, n, lang, b in resources) or "resources: (none)")
    if not pipls:
        faults.append("no PIPL resource")
    names_found = sorted({str(n) for _, n, _, _ in pipls})
    if pipls and names_found != [str(PIPL_ID)]:
        faults.append(f"PIPL resource names: {names_found} (want only {PIPL_ID})")
    languages = sorted({lang for _, n, lang, _ in pipls if n == PIPL_ID})
    if pipls and languages != [PIPL_LANGUAGE]:
        faults.append(f"PIPL resource {PIPL_ID} languages: {languages} (want only {PIPL_LANGUAGE})")
    for _, name, lang, body in pipls:
        if name != PIPL_ID:
            continue
        if body != pipl:
            first = next((i for i, (a, b) in enumerate(zip(body, pipl)) if a != b),
                         min(len(body), len(pipl)))
            faults.append(f"PIPL resource {PIPL_ID} (language {lang}) differs from {pipl_path}: "
                          f"{len(body)} bytes vs {len(pipl)}, first difference at offset {first}")
        else:
            lines.append(f"PIPL resource {PIPL_ID} (language {lang}): {len(body)} bytes, "
                         f"identical to {pipl_path}")
    return lines, faults


def main(argv):
    if len(argv) != 3:
        print(__doc__.strip().splitlines()[2], file=sys.stderr)
        return 2
    lines, faults = inspect(argv[1], argv[2])
    print(f"{argv[1]}:")
    for line in lines:
        print(f"  {line}")
    for fault in faults:
        print(f"  FAULT: {fault}")
    print("inspection passed" if not faults else f"inspection failed: {len(faults)} fault(s)")
    return 0 if not faults else 1


if __name__ == "__main__":
    sys.exit(main(sys.argv))
