// Every export leaves the registers of its caller's arguments alone.
//
// The processor's trap flag single-steps the stub: the state at its first instruction is compared
// with the state at the first instruction of the variant, which is then abandoned. So the test
// needs no valid arguments, knows no signature, and counts the instructions that a call costs.
#include <dlfcn.h>
#include <gtest/gtest.h>
#include <setjmp.h>
#include <signal.h>
#include <ucontext.h>

#include <cstdint>
#include <cstring>

namespace {

// Fills the argument registers and those that a callee saves with patterns, sets the trap flag and
// jumps to the target.
extern "C" void zepTestEnterTraced(const void* target);
extern "C" const float zepTestPatterns[32];
const float zepTestPatterns[32] = {1,  2,  3,  4,  5,  6,  7,  8,  9,  10, 11, 12, 13, 14, 15, 16,
                                   17, 18, 19, 20, 21, 22, 23, 24, 25, 26, 27, 28, 29, 30, 31, 32};
asm(R"(
    .text
    .type zepTestEnterTraced, @function
    .globl zepTestEnterTraced
zepTestEnterTraced:
    leaq zepTestPatterns(%rip), %rax
    movups (%rax), %xmm0
    movups 16(%rax), %xmm1
    movups 32(%rax), %xmm2
    movups 48(%rax), %xmm3
    movups 64(%rax), %xmm4
    movups 80(%rax), %xmm5
    movups 96(%rax), %xmm6
    movups 112(%rax), %xmm7
    pushq $0x1234
    pushq %rdi
    movq $0x1000001, %rdi
    movq $0x1000002, %rsi
    movq $0x1000003, %rdx
    movq $0x1000004, %rcx
    movq $0x1000005, %r8
    movq $0x1000006, %r9
    movq $0x1000007, %rax
    movq $0x1000008, %rbx
    movq $0x1000009, %rbp
    movq $0x100000a, %r12
    movq $0x100000b, %r13
    movq $0x100000c, %r14
    movq $0x100000d, %r15
    pushfq
    orq $0x100, (%rsp)
    popfq
    ret
    .size zepTestEnterTraced, .-zepTestEnterTraced
)");

struct State {
    gregset_t general;
    _libc_xmmreg vector[16];
    std::uint64_t returnAddress;
};

constexpr std::uintptr_t kStubBytes = 22;
sigjmp_buf reached;
volatile std::uintptr_t stub;
volatile int steps;
State atEntry, atVariant;

void record(const ucontext_t* context, State& state) {
    std::memcpy(state.general, context->uc_mcontext.gregs, sizeof state.general);
    std::memcpy(state.vector, context->uc_mcontext.fpregs->_xmm, sizeof state.vector);
    std::memcpy(&state.returnAddress,
                reinterpret_cast<const void*>(context->uc_mcontext.gregs[REG_RSP]), 8);
}

void onStep(int, siginfo_t*, void* opaque) {
    const auto* context = static_cast<const ucontext_t*>(opaque);
    const auto at = static_cast<std::uintptr_t>(context->uc_mcontext.gregs[REG_RIP]);
    if (at == stub) {
        record(context, atEntry);
        steps = 0;
        return;
    }
    steps = steps + 1;
    if (at > stub && at < stub + kStubBytes) return;
    record(context, atVariant);
    siglongjmp(reached, 1);
}

class StubRegisters : public ::testing::Test {
protected:
    void SetUp() override {
        library_ = dlopen(MOZEP_LIBRARY, RTLD_NOW | RTLD_LOCAL);
        ASSERT_NE(library_, nullptr) << dlerror();
        struct sigaction action {};
        action.sa_sigaction = onStep;
        action.sa_flags = SA_SIGINFO;
        ASSERT_EQ(sigaction(SIGTRAP, &action, &old_), 0);
    }
    void TearDown() override {
        sigaction(SIGTRAP, &old_, nullptr);
        dlclose(library_);
    }

    // Runs the stub up to the first instruction of the variant.
    void trace(const void* entry) {
        stub = reinterpret_cast<std::uintptr_t>(entry);
        steps = -1;
        if (sigsetjmp(reached, 1) == 0) zepTestEnterTraced(entry);
    }

    void* library_ = nullptr;
    struct sigaction old_ {};
};

TEST_F(StubRegisters, AreAsTheCallerLeftThem) {
    static constexpr const char* kNames[] = {
#define ZEP_EXPORT(name) #name,
#include "core/exports.def"
    };
    for (const char* name : kNames) {
        SCOPED_TRACE(name);
        const void* entry = dlsym(library_, name);
        ASSERT_NE(entry, nullptr);
        const bool marked = std::memcmp(entry, "\xf3\x0f\x1e\xfa", 4) == 0;  // endbr64
        trace(entry);
        ASSERT_EQ(steps, marked ? 4 : 3) << "load of the index, address of the table, jump";
        for (int r = 0; r < NGREG; ++r) {
            // Scratch registers of the calling convention that carry no argument, and what must
            // move.
            if (r == REG_R10 || r == REG_R11 || r == REG_RIP) continue;
            // The rest of the set is no register, or belongs to the kernel's account of the trap.
            if (r > REG_EFL) continue;
            EXPECT_EQ(atVariant.general[r], atEntry.general[r]) << "general register " << r;
        }
        EXPECT_EQ(atEntry.general[REG_RDI], 0x1000001);
        EXPECT_EQ(atEntry.general[REG_R9], 0x1000006);
        EXPECT_EQ(std::memcmp(atVariant.vector, atEntry.vector, sizeof atEntry.vector), 0);
        EXPECT_EQ(std::memcmp(atEntry.vector, zepTestPatterns, sizeof zepTestPatterns), 0);
        EXPECT_EQ(atVariant.returnAddress, 0x1234u);
    }
}

// The comparison itself must be able to fail.
asm(R"(
    .text
    .p2align 4
zepTestWrongStub:
    incq %rcx
    movaps %xmm1, %xmm0
    jmp zepTestWrongStubTarget
    .p2align 6
zepTestWrongStubTarget:
    ret
)");
extern "C" const char zepTestWrongStub[];

TEST_F(StubRegisters, AreSeenToChangeInAStubThatChangesThem) {
    trace(zepTestWrongStub);
    EXPECT_EQ(steps, 3);
    EXPECT_NE(atVariant.general[REG_RCX], atEntry.general[REG_RCX]);
    EXPECT_NE(std::memcmp(atVariant.vector, atEntry.vector, sizeof atEntry.vector), 0);
}

}  // namespace
