// Prints what the processor answers to CPUID and XGETBV, for processors_test.py to reason from.
#include <cpuid.h>
#include <stdio.h>

static void dump(unsigned leaf, unsigned subleaf) {
    unsigned a, b, c, d;
    __cpuid_count(leaf, subleaf, a, b, c, d);
    printf("%x %x %x %x %x %x\n", leaf, subleaf, a, b, c, d);
}

int main(void) {
    const unsigned plain[] = {0, 1, 2, 0x20000001, 0x80000000, 0x80000001, 0x80000008};
    for (unsigned i = 0; i < sizeof plain / sizeof plain[0]; ++i) dump(plain[i], 0);
    for (unsigned subleaf = 0; subleaf < 32; ++subleaf) dump(4, subleaf);
    dump(7, 0);
    dump(11, 0);
    dump(11, 1);

    unsigned a, b, c, d, low = 0, high = 0;
    __cpuid(1, a, b, c, d);
    if (c >> 27 & 1) __asm__ volatile("xgetbv" : "=a"(low), "=d"(high) : "c"(0));
    printf("xgetbv %x\n", low);
    return 0;
}
