#!/usr/bin/env python3
# Inspects the Windows effect module as a host sees it before running any of its code.
#
# Usage: check-windows-module.py MODULE.aex PIPL_FILE     (the effect module)
#        check-windows-module.py Morvane.ofx              (the OpenFX plug-in)
#
# Faults: not a PE32+ DLL for x86-64; exports other than exactly PluginDataEntryFunction and
# EffectMain (the OpenFX plug-in: OfxGetNumberOfPlugins and OfxGetPlugin) by name; an import
# (ordinary or delay-loaded) from a DLL that is not part of Windows, such as the compiler's
# run-time; a resource "PIPL" other than 16000 in language 1033, or one whose bytes are not
# PIPL_FILE's (the generator's); for the OpenFX plug-in, any "PIPL" resource. Prints what it
# found; exits 1 on any fault.
import re
import struct
import sys

EXPORTS = ["EffectMain", "PluginDataEntryFunction"]
OFX_EXPORTS = ["OfxGetNumberOfPlugins", "OfxGetPlugin"]
SYSTEM_DLL = re.compile(
    r"(kernel32|user32|gdi32|advapi32|shell32|ole32|oleaut32|msvcrt|ucrtbase|ntdll|ws2_32|bcrypt"
    r"|shlwapi|version|winmm|comctl32|crypt32|secur32|dbghelp|api-ms-win-[a-z0-9-]+)\.dll")


def inspect(data, pipl, pipl_path):  # -> (what the module holds, faults); pipl None: OpenFX
    exports = EXPORTS if pipl is not None else OFX_EXPORTS
    u16 = lambda at: struct.unpack_from("<H", data, at)[0]
    u32 = lambda at: struct.unpack_from("<I", data, at)[0]
    pe = u32(0x3C)
    if data[:2] != b"MZ" or data[pe:pe + 4] != b"PE\0\0":
        return [], ["not a PE file"]
    machine, count, _, _, _, optional_size, flags = struct.unpack_from("<HHIIIHH", data, pe + 4)
    optional = pe + 24
    found = [f"machine {machine:#06x}, optional header {u16(optional):#x}, flags {flags:#06x}"]
    faults = [f for bad, f in ((u16(optional) != 0x20B, "not PE32+"),
                               (machine != 0x8664, "not for x86-64"),
                               (not flags & 0x2000, "not a DLL")) if bad]
    if u16(optional) != 0x20B:
        return found, faults
    directories = [struct.unpack_from("<II", data, optional + 112 + 8 * i)
                   for i in range(u32(optional + 108))]
    sections = [struct.unpack_from("<IIII", data, optional + optional_size + 40 * i + 8)
                for i in range(count)]

    def offset(rva):
        for size, address, raw_size, raw in sections:
            if address <= rva < address + max(size, raw_size):
                return raw + rva - address
        raise ValueError(f"RVA {rva:#x} lies in no section")

    def text(rva):
        at = offset(rva)
        return data[at:data.index(b"\0", at)].decode(errors="replace")

    def directory(index):
        rva = directories[index][0] if index < len(directories) else 0
        return offset(rva) if rva else None

    at = directory(0)
    functions, names = (u32(at + 20), sorted(text(u32(offset(u32(at + 32)) + 4 * i))
                                             for i in range(u32(at + 24)))) if at else (0, [])
    found.append(f"exports: {', '.join(names)} ({functions} functions)")
    if names != exports or functions != len(exports):
        faults.append(f"exports: {', '.join(names)} ({functions} functions)")

    for index, stride, name_at in ((1, 20, 12), (13, 32, 4)):  # ordinary, delay-loaded
        at = directory(index)
        while at and u32(at + name_at):
            dll = text(u32(at + name_at))
            found.append(f"imports {dll}")
            if not SYSTEM_DLL.fullmatch(dll.lower()):
                faults.append(f"imports non-system DLL {dll}")
            at += stride

    base = directory(2)

    def entries(level):  # (id or name, offset of the entry's target) of a resource directory
        for i in range(u16(base + level + 12) + u16(base + level + 14)):
            key, target = struct.unpack_from("<II", data, base + level + 16 + 8 * i)
            if key & 0x80000000:
                at = base + (key & 0x7FFFFFFF)
                key = data[at + 2:at + 2 + 2 * u16(at)].decode("utf-16-le")
            yield key, target & 0x7FFFFFFF

    pipls = [(name, language, data[offset(u32(base + leaf)):][:u32(base + leaf + 4)])
             for kind, names in (entries(0) if base else ()) if kind == "PIPL"
             for name, languages in entries(names) for language, leaf in entries(languages)]
    found += [f"PIPL resource {n} (language {lang}): {len(b)} bytes" for n, lang, b in pipls]
    if pipl is None:
        return found, faults + [f"PIPL resource {n}" for n, _, _ in pipls]
    if [(n, lang) for n, lang, _ in pipls] != [(16000, 1033)]:
        faults.append(f"PIPL resources {[(n, lang) for n, lang, _ in pipls]}, "
                      "want exactly 16000 in language 1033")
    faults += [f"PIPL resource {n} (language {lang}) differs from {pipl_path}"
               for n, lang, body in pipls if body != pipl]
    return found, faults


def main(module_path, pipl_path=None):
    with open(module_path, "rb") as module:
        try:
            pipl = open(pipl_path, "rb").read() if pipl_path else None
            found, faults = inspect(module.read(), pipl, pipl_path)
        except (ValueError, struct.error) as e:
            found, faults = [], [f"unreadable: {e}"]
    print(f"{module_path}:\n" + "".join(f"  {line}\n" for line in found) +
          "".join(f"  FAULT: {fault}\n" for fault in faults) +
          ("inspection passed" if not faults else f"inspection failed: {len(faults)} fault(s)"))
    return 1 if faults else 0


if __name__ == "__main__":
    if len(sys.argv) not in (2, 3):
        sys.exit("usage: check-windows-module.py MODULE.aex PIPL_FILE | Morvane.ofx")
    sys.exit(main(*sys.argv[1:]))
