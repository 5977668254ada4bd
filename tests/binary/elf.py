"""Reads what the tests of the built library need from an ELF file: sections, segments, dynamic entries, symbols and
relative relocations of a 64-bit little-endian shared object."""

import struct
from collections import namedtuple

Section = namedtuple("Section", "name type flags addr offset size link entsize")
Segment = namedtuple("Segment", "type flags offset vaddr filesz memsz")
Symbol = namedtuple("Symbol", "name binding type visibility section value size")

PT_LOAD, PT_DYNAMIC, PT_GNU_STACK, PT_GNU_RELRO = 1, 2, 0x6474E551, 0x6474E552
PF_X, PF_W = 1, 2
DT_NEEDED, DT_SONAME, DT_RPATH, DT_TEXTREL, DT_RUNPATH, DT_FLAGS, DT_FLAGS_1 = 1, 14, 15, 22, 29, 30, 0x6FFFFFFB
DF_TEXTREL, DF_BIND_NOW, DF_1_NOW = 4, 8, 1
R_X86_64_RELATIVE = 8
BINDINGS = {0: "local", 1: "global", 2: "weak", 10: "unique"}
UNDEFINED, ABSOLUTE = 0, 0xFFF1


class Elf:
    def __init__(self, path):
        with open(path, "rb") as f:
            self.data = f.read()
        if self.data[:6] != b"\x7fELF\x02\x01":
            raise ValueError(f"{path}: no 64-bit little-endian ELF file")
        head = struct.unpack_from("<HHIQQQIHHHHHH", self.data, 16)
        phoff, shoff, phnum, shnum, shstrndx = head[4], head[5], head[9], head[11], head[12]
        self.segments = []
        for i in range(phnum):
            p_type, flags, offset, vaddr, _, filesz, memsz, _ = struct.unpack_from("<IIQQQQQQ", self.data, phoff + 56 * i)
            self.segments.append(Segment(p_type, flags, offset, vaddr, filesz, memsz))
        raw = [struct.unpack_from("<IIQQQQIIQQ", self.data, shoff + 64 * i) for i in range(shnum)]
        names = raw[shstrndx][4]
        self.sections = [Section(self._string(names + r[0]), r[1], r[2], r[3], r[4], r[5], r[6], r[9]) for r in raw]

    def _string(self, offset):
        return self.data[offset:self.data.index(b"\0", offset)].decode()

    def section(self, name):
        return next((s for s in self.sections if s.name == name), None)

    def bytes_at(self, vaddr, size):
        for s in self.segments:
            if s.type == PT_LOAD and s.vaddr <= vaddr and vaddr + size <= s.vaddr + s.filesz:
                start = s.offset + vaddr - s.vaddr
                return self.data[start:start + size]
        raise ValueError(f"no file bytes at {vaddr:#x}")

    def dynamic(self):
        """(tag, value) pairs; text for the tags whose value is a name."""
        section = self.section(".dynamic")
        strings = self.sections[section.link].offset
        entries = []
        for offset in range(section.offset, section.offset + section.size, 16):
            tag, value = struct.unpack_from("<qQ", self.data, offset)
            if tag == 0:
                break
            named = tag in (DT_NEEDED, DT_SONAME, DT_RPATH, DT_RUNPATH)
            entries.append((tag, self._string(strings + value) if named else value))
        return entries

    def symbols(self, table=".dynsym"):
        section = self.section(table)
        strings = self.sections[section.link].offset
        symbols = []
        for i in range(1, section.size // 24):
            name, info, other, shndx, value, size = struct.unpack_from("<IBBHQQ", self.data, section.offset + 24 * i)
            symbols.append(Symbol(self._string(strings + name), BINDINGS.get(info >> 4, "other"), info & 15, other & 3,
                                  shndx, value, size))
        return symbols

    def symbol_versions(self):
        """Name of each defined dynamic symbol, to the name of the version that it carries; None without one."""
        definitions = self.section(".gnu.version_d")
        nodes, offset = {}, definitions.offset if definitions else None
        while offset is not None:
            _, _, index, _, _, first_name, following = struct.unpack_from("<HHHHIII", self.data, offset)
            name = struct.unpack_from("<I", self.data, offset + first_name)[0]
            nodes[index] = self._string(self.sections[definitions.link].offset + name)
            offset = offset + following if following else None
        table = self.section(".gnu.version")
        versions = {}
        for i, symbol in enumerate(self.symbols(), 1):
            if symbol.section != UNDEFINED:
                index = struct.unpack_from("<H", self.data, table.offset + 2 * i)[0] & 0x7FFF if table else 1
                versions[symbol.name] = nodes[index] if index > 1 else None
        return versions

    def relative_relocations(self):
        """Address of each word that the loader rebases, to the address that it will hold."""
        words = {}
        for section in self.sections:
            if section.type == 4:
                for offset in range(section.offset, section.offset + section.size, 24):
                    where, info, addend = struct.unpack_from("<QQq", self.data, offset)
                    if info & 0xFFFFFFFF == R_X86_64_RELATIVE:
                        words[where] = addend
        return words
