"""Runs the library on processors that this machine is not, by emulation in user mode, and compares what it makes of each
with two independent accounts: the variant that is known to be right for the model, and everything else computed here from
the raw answers of the processor's identification instruction.
usage: processors_test.py QEMU PROBE CPUID_DUMP [unittest arguments]"""

import subprocess
import sys
import unittest

QEMU, PROBE, DUMP = None, None, None

# Model and features, slot in the dispatch tables, library name of the signal domain, start-up status, and why. The emulator
# knows no AVX-512, so none of them gives slot 7.
MODELS = [
    ("Conroe", 2, "zepsu8_l.lib", 0, "SSSE3 is its highest"),
    ("n270,+lm,+syscall", 3, "zepsn8_l.lib", 0, "SSSE3 and MOVBE"),
    ("Penryn", 4, "zepsy8_l.lib", 0, "SSE4.1 without SSE4.2"),
    ("Nehalem", 4, "zepsy8_l.lib+", 0, "SSE4.2"),
    ("SandyBridge", 5, "zepse9_l.lib", 0, "AVX, saved by the system"),
    ("Haswell", 6, "zepse9_l.lib", 0, "x86-64-v3, which is e9 to a caller"),
    ("Haswell,-fma", 5, "zepse9_l.lib", 0, "x86-64-v3 but for FMA"),
    ("Haswell,-movbe", 5, "zepse9_l.lib", 0, "x86-64-v3 but for MOVBE"),
    ("Haswell,-bmi2", 5, "zepse9_l.lib", 0, "x86-64-v3 but for BMI2"),
    ("Haswell,-abm", 5, "zepse9_l.lib", 0, "x86-64-v3 but for LZCNT"),
    ("Haswell,level=6", 5, "zepse9_l.lib", 0, "a processor that does not tell of x86-64-v3"),
    ("Haswell,-avx", 4, "zepsy8_l.lib+", 0, "AVX2 where AVX is switched off"),
    ("Haswell,-xsave", 4, "zepsy8_l.lib+", 0, "x86-64-v3 whose state the system does not save"),
    ("SandyBridge,-avx", 4, "zepsy8_l.lib+", 0, "SSE4.2 where AVX is switched off"),
    ("SandyBridge,-xsave", 4, "zepsy8_l.lib+", 0, "AVX whose state the system does not save"),
    ("n270,+lm,+syscall,-ssse3", 1, "zepsm7_l.lib", 0, "MOVBE alone is no Atom; SSE3 is left"),
    ("Conroe,-ssse3", 1, "zepsm7_l.lib", 0, "SSE3"),
    ("Conroe,-ssse3,-pni", 0, "zepsm7_l.lib", 36, "SSE2 alone: works, and says so"),
    ("Conroe,level=2", 2, "zepsu8_l.lib", 0, "cache size from descriptors"),
    ("Conroe,level=1", 2, "zepsu8_l.lib", 0, "no cache information at all"),
    ("Opteron_G3", 1, "zepsm7_l.lib", 20, "another vendor: SSE3 earns the variant, the status tells"),
    ("EPYC", 6, "zepse9_l.lib", 20, "another vendor with x86-64-v3"),
]

DESCRIPTORS = [  # size in KiB, keys that stand for it; larger caches first
    (24576, [0xEC]), (18432, [0xEB]), (16384, [0x4D]), (12288, [0xEA, 0x4C]), (8192, [0xE4, 0xDE, 0x4B, 0x47]),
    (6144, [0x4E, 0x4A]), (4096, [0xE3, 0xDD, 0xD8, 0x49, 0x29, 0x46]), (3072, [0x48]),
    (2048, [0xE2, 0xDC, 0xD7, 0xD2, 0x25, 0x7D, 0x85, 0x45]),
    (1024, [0xD6, 0xD1, 0x23, 0x87, 0x7C, 0x78, 0x84, 0x44]),
    (512, [0xD0, 0x22, 0x7B, 0x80, 0x86, 0x3E, 0x7F, 0x83, 0x43]), (384, [0x3D]),
    (256, [0x21, 0x7A, 0x82, 0x3C, 0x3F, 0x42]), (192, [0x3A]), (128, [0x79, 0x39, 0x3B, 0x41]),
]


def run(model, program):
    done = subprocess.run([QEMU, "-cpu", model, program], capture_output=True, text=True, timeout=300)
    if done.returncode != 0:
        raise AssertionError(f"{model}: {program} ended with {done.returncode}\n{done.stdout}{done.stderr}")
    return done.stdout


class Processor:
    """The raw answers, and the rules by which the library is documented to read them."""

    def __init__(self, dump):
        self.leaves, self.xcr0 = {}, 0
        for line in dump.splitlines():
            words = line.split()
            if words[0] == "xgetbv":
                self.xcr0 = int(words[1], 16)
            else:
                leaf, subleaf, *registers = (int(w, 16) for w in words)
                self.leaves[leaf, subleaf] = registers
        eax, ebx, ecx, edx = self.leaves[0, 0]
        self.max_leaf = eax
        self.vendor = b"".join(r.to_bytes(4, "little") for r in (ebx, edx, ecx))
        self.intel = self.vendor == b"GenuineIntel"

    def ecx(self, bit):
        return self.leaves[1, 0][2] >> bit & 1

    def edx(self, bit):
        return self.leaves[1, 0][3] >> bit & 1

    def slot(self):
        """The slot behind the tag."""
        if self.tag() != "e9":
            return {"m7": self.ecx(0), "u8": 2, "n8": 3, "y8": 4}[self.tag()]
        leaf7 = self.leaves[7, 0][1] if self.max_leaf >= 7 else 0
        lzcnt = self.leaves[0x80000001, 0][2] >> 5 & 1
        rest = all(self.ecx(bit) for bit in (12, 22, 29))  # FMA, MOVBE, F16C
        return 6 if rest and lzcnt and all(leaf7 >> bit & 1 for bit in (3, 5, 8)) else 5  # BMI1, AVX2, BMI2

    def tag(self):
        if self.ecx(27) and self.ecx(28) and self.xcr0 & 6 == 6:
            return "e9"
        if self.ecx(19):
            return "y8"
        if self.ecx(9):
            return "n8" if self.ecx(22) else "u8"
        return "m7"

    def library(self):
        return f"zeps{self.tag()}_l.lib" + ("+" if self.tag() == "y8" and self.ecx(20) else "")

    def status(self):
        if not self.intel:
            return 20
        return 0 if self.ecx(0) or self.tag() != "m7" else 36

    def cores_per_package(self):
        return (self.leaves[4, 0][0] >> 26) + 1 if self.max_leaf >= 4 else 1

    def type(self):
        signature = self.leaves[1, 0][0]
        family, model = signature >> 8 & 15, signature >> 4 & 15
        if family in (6, 15):
            model += (signature >> 16 & 15) << 4
        if family == 15:
            family += signature >> 20 & 255
        if self.intel and family == 6:
            if model == 15 and self.ecx(9):
                return 34 if self.cores_per_package() > 2 else 33
            if model == 23 and self.ecx(19):
                return 35
            if model == 26 and (self.ecx(28) or self.ecx(20)):
                return 70 if self.ecx(28) else 37
            if model == 28 and self.ecx(9) and self.ecx(22):
                return 36
        if self.intel and family == 15:
            return 66
        for bit, value in ((28, 70), (20, 69), (19, 68), (9, 67), (0, 66)):
            if self.ecx(bit):
                return value
        return 65

    def cache(self):
        """Status and bytes."""
        if not self.intel or self.max_leaf < 2:
            return 36, 0
        if self.max_leaf >= 4:
            sizes = []
            for subleaf in range(32):
                eax, ebx, ecx, _ = self.leaves[4, subleaf]
                if eax & 31 == 0:
                    break
                if eax & 31 != 2:
                    sizes.append(((ebx >> 22) + 1) * ((ebx >> 12 & 1023) + 1) * ((ebx & 4095) + 1) * (ecx + 1))
            return (0, max(sizes)) if sizes else (37, 0)
        registers = self.leaves[2, 0]
        if registers[0] & 255 != 1:
            return 37, 0
        found = set()
        for i, register in enumerate(registers):
            if register >> 31 == 0:
                found |= set(register.to_bytes(4, "little")[1 if i == 0 else 0:])
        for kib, keys in DESCRIPTORS:
            if found & set(keys):
                return 0, kib * 1024
        return 37, 0

    def cores(self):
        if self.intel:
            if self.max_leaf < 4:
                return 1
            if self.max_leaf >= 11 and self.leaves[11, 0][1] != 0:
                return (self.leaves[11, 1][1] & 0xFFFF) >> (self.leaves[11, 0][1] >> 1 & 1)
            return self.cores_per_package()
        if self.vendor.endswith(b"cAMD") and self.leaves[0x80000000, 0][0] & 15 >= 8:
            return (self.leaves[0x80000008, 0][2] & 255) + 1
        return 1


class Processors(unittest.TestCase):
    maxDiff = None
    exact = None

    def check(self, model, slot, library, status):
        expected = Processor(run(model, DUMP))
        got = dict(line.split(" ", 1) for line in run(model, PROBE).splitlines())
        self.assertEqual((got["slot"], got["library"], got["status"]), (str(slot), library, str(status)))
        cache_status, cache_bytes = expected.cache()
        for name, value in (("version", "7.0 build 205.58"), ("tag", expected.tag()), ("slot", expected.slot()), ("library", expected.library()),
                            ("status", expected.status()), ("type", expected.type()), ("cache_status", cache_status),
                            ("cache_bytes", cache_bytes), ("cores", expected.cores())):
            self.assertEqual(got[name], str(value), name)
        # At most log2(N) * 6.6 unit round-offs in the 2-norm (Higham, Accuracy and Stability of Numerical Algorithms,
        # theorem 24.2), N = 512; the error of one bin is not above that norm.
        self.assertLess(float(got["transform_error"]), 9 * 6.6 * 2.0 ** -24)
        self.assertNotEqual(got["exact"], "00000000")
        if Processors.exact is None:
            Processors.exact = subprocess.run([PROBE], capture_output=True, text=True, check=True).stdout
        self.assertIn(f"exact {got['exact']}\n", Processors.exact, "other bits than on this machine")


def add_test(model, slot, library, status, why):
    name = "test_" + "".join(c if c.isalnum() else "_" for c in model)
    setattr(Processors, name, lambda self: self.check(model, slot, library, status))
    getattr(Processors, name).__doc__ = f"{model}: slot {slot}, {library}, {why}"


for row in MODELS:
    add_test(*row)

if __name__ == "__main__":
    if len(sys.argv) < 4:
        sys.exit(__doc__)
    QEMU, PROBE, DUMP = sys.argv[1:4]
    unittest.main(argv=[sys.argv[0]] + sys.argv[4:], verbosity=2)
