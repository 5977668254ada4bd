"""Tests of the built library as a file: what it exports, how it links, and that every export is a stub on its own
table. BUILT is the header columns_built.h of the build.
usage: binary_test.py LIBRARY SOURCE BUILT [unittest arguments]"""

import itertools
import re
import struct
import sys
import unittest
from pathlib import Path

import elf

LIBRARY, SOURCE, BUILT = None, None, None


def dispatched_exports():
    """Name of each dispatched export, to whether the n8 variant has code of its own."""
    text = (SOURCE / "src/core/exports.def").read_text()
    return {name: bool(own) for own, name in re.findall(r"^ZEP_EXPORT(_N8)?\((\w+)\)", text, re.M)}


def columns():
    """By ascending slot: slot, column of its code, column of the code of exports that have none of their own for it."""
    text = (SOURCE / "src/core/columns.def").read_text()
    code = dict(re.findall(r"^namespace (\w+) = zep::(\w+);", BUILT.read_text(), re.M))
    return [(int(slot), code[column], code[shared]) for slot, column, shared in
            re.findall(r"^ *X\(arg, (\d), (\w+), \w+, (\w+), ", text, re.M)]


def core_exports():
    lines = (SOURCE / "src/core/core_exports.txt").read_text().splitlines()
    return {line for line in lines if line and not line.startswith("#")}


class Exports(unittest.TestCase):
    def setUp(self):
        # The linker adds a symbol of no place for each version of the interface.
        self.exported = [s for s in LIBRARY.symbols() if s.section not in (elf.UNDEFINED, elf.ABSOLUTE) and s.name != ""]

    def test_are_exactly_the_lists(self):
        names = {s.name for s in self.exported}
        wanted = set(dispatched_exports()) | core_exports()
        self.assertEqual(sorted(wanted - names), [], "listed and not exported")
        self.assertEqual(sorted(names - wanted), [], "exported and not listed")

    def test_are_in_one_list_only(self):
        text = (SOURCE / "src/core/exports.def").read_text()
        names = re.findall(r"^ZEP_EXPORT(?:_N8)?\((\w+)\)", text, re.M) + sorted(core_exports())
        self.assertEqual(sorted({n for n in names if names.count(n) > 1}), [])

    def test_are_strong_and_visible(self):
        # Type information is weak in every C++ program: the loader may unite it with the one of the host.
        weak = [s.name for s in self.exported if s.binding != "global" and not s.name.startswith("_ZT")]
        self.assertEqual(weak, [])
        self.assertEqual([s.name for s in self.exported if s.visibility != 0], [])

    def test_carry_the_version_of_the_interface(self):
        versions = LIBRARY.symbol_versions()
        self.assertEqual({versions[s.name] for s in self.exported}, {"MOZEP_7.0"})


class Linkage(unittest.TestCase):
    def setUp(self):
        self.dynamic = LIBRARY.dynamic()

    def values(self, tag):
        return [value for t, value in self.dynamic if t == tag]

    def test_soname(self):
        self.assertEqual(self.values(elf.DT_SONAME), ["libmozep.so.7"])

    def test_needs_the_language_run_time_alone(self):
        allowed = {"libc.so.6", "libm.so.6", "libstdc++.so.6", "libgcc_s.so.1", "ld-linux-x86-64.so.2"}
        self.assertEqual(set(self.values(elf.DT_NEEDED)) - allowed, set())

    def test_searches_no_path_of_its_own(self):
        self.assertEqual(self.values(elf.DT_RPATH) + self.values(elf.DT_RUNPATH), [])

    def test_takes_few_things_from_others(self):
        undefined = {s.name for s in LIBRARY.symbols() if s.section == elf.UNDEFINED}
        allowed = {"malloc", "calloc", "realloc", "free", "memcpy", "memmove", "memset", "memcmp", "bcmp", "abort",
                   "sin", "cos", "sincos", "exp", "log", "floor", "fabs", "sqrt", "sqrtf",
                   "time", "clock_gettime", "_ZNSt6chrono3_V212steady_clock3nowEv", "__stack_chk_fail",
                   # Of the distributions' hardening flags:
                   "__memcpy_chk", "__memmove_chk", "__memset_chk",
                   # Of every shared object:
                   "__cxa_finalize", "__gmon_start__", "_ITM_deregisterTMCloneTable", "_ITM_registerTMCloneTable",
                   # Of the allocator classes:
                   "_ZTVN10__cxxabiv117__class_type_infoE", "_ZTVN10__cxxabiv120__si_class_type_infoE",
                   "__cxa_pure_virtual", "_ZdlPv", "_ZdlPvm"}
        self.assertEqual(sorted(undefined - allowed), [])

    def test_is_bound_at_load_and_then_read_only(self):
        flags = sum(self.values(elf.DT_FLAGS)) & elf.DF_BIND_NOW or sum(self.values(elf.DT_FLAGS_1)) & elf.DF_1_NOW
        self.assertTrue(flags, "not bound at load")
        relro = [s for s in LIBRARY.segments if s.type == elf.PT_GNU_RELRO]
        self.assertEqual(len(relro), 1)
        got = LIBRARY.section(".got.plt") or LIBRARY.section(".got")
        end = relro[0].vaddr + relro[0].memsz
        self.assertTrue(relro[0].vaddr <= got.addr and got.addr + got.size <= end, "offset table outside RELRO")

    def test_has_no_text_relocations(self):
        self.assertEqual(self.values(elf.DT_TEXTREL), [])
        self.assertEqual(sum(self.values(elf.DT_FLAGS)) & elf.DF_TEXTREL, 0)

    def test_has_no_writable_code(self):
        stack = [s for s in LIBRARY.segments if s.type == elf.PT_GNU_STACK]
        self.assertEqual(len(stack), 1)
        self.assertEqual(stack[0].flags & elf.PF_X, 0, "executable stack")
        both = elf.PF_W | elf.PF_X
        self.assertEqual([s for s in LIBRARY.segments if s.type == elf.PT_LOAD and s.flags & both == both], [])

    def test_has_one_initialiser(self):
        # The selection, and frame_dummy of the compiler's start-up files.
        self.assertLessEqual(LIBRARY.section(".init_array").size, 16)


class Stubs(unittest.TestCase):
    ENDBR64 = b"\xf3\x0f\x1e\xfa"
    MOVSLQ_RIP_R10 = b"\x4c\x63\x15"
    LEAQ_RIP_R11 = b"\x4c\x8d\x1d"
    JMP_R11_R10_8 = b"\x43\xff\x24\xd3"

    def setUp(self):
        self.exports = dispatched_exports()
        self.local = {s.name: s for s in LIBRARY.symbols(".symtab") if s.section != elf.UNDEFINED}
        self.names_at = {}
        for s in self.local.values():
            self.names_at.setdefault(s.value, []).append(s.name)
        self.words = LIBRARY.relative_relocations()

    def table_slots(self, name):
        table = self.local["zep_table_" + name]
        self.assertEqual(table.size, 64, name)
        return [self.words[table.value + 8 * i] for i in range(8)]

    def test_are_load_of_the_index_address_of_the_table_and_jump(self):
        for name in self.exports:
            stub = self.local[name]
            code = LIBRARY.bytes_at(stub.value, stub.size)
            start = stub.value
            if code.startswith(self.ENDBR64):
                code = code[4:]
                start += 4
            self.assertEqual(len(code), 18, name)
            self.assertEqual((code[:3], code[7:10], code[14:]),
                             (self.MOVSLQ_RIP_R10, self.LEAQ_RIP_R11, self.JMP_R11_R10_8), name)
            index = start + 7 + struct.unpack_from("<i", code, 3)[0]
            table = start + 14 + struct.unpack_from("<i", code, 10)[0]
            self.assertEqual(index, self.local["zep_variantIndex"].value, name)
            self.assertEqual(table, self.local["zep_table_" + name].value, name)

    def test_reach_the_code_of_each_column_by_its_slot(self):
        self.assertEqual([slot for slot, *_ in columns()], [1, 2, 3, 4, 5, 6, 7])
        for name, own_n8 in self.exports.items():
            slots = self.table_slots(name)
            self.assertEqual(slots[0], slots[1], name)
            for slot, column, shared in columns():
                code = column if own_n8 else shared
                prefix = f"_ZN3zep{len(code)}{code}{len(name)}{name}E"
                found = self.names_at.get(slots[slot], [])
                self.assertTrue(any(n.startswith(prefix) for n in found), f"{name}, slot {slot}: {found}")

    def test_share_code_between_slots_where_they_should_and_nowhere_else(self):
        for name, own_n8 in self.exports.items():
            slots = self.table_slots(name)
            codes = [own if own_n8 else shared for _, own, shared in columns()]
            for (a, code_a), (b, code_b) in itertools.combinations(zip(slots[1:], codes), 2):
                self.assertEqual(a == b, code_a == code_b, f"{name}, {code_a} and {code_b}")


if __name__ == "__main__":
    if len(sys.argv) < 4:
        sys.exit(__doc__)
    LIBRARY, SOURCE, BUILT = elf.Elf(sys.argv[1]), Path(sys.argv[2]), Path(sys.argv[3])
    unittest.main(argv=[sys.argv[0]] + sys.argv[4:], verbosity=2)
