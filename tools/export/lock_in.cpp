#include "tools/export/lock_in.h"

#include "base/large_block.h"
#include "kernels/row_kernels.h"

#include <algorithm>
#include <linux/futex.h>
#include <malloc.h>
#include <seccomp.h>
#include <sys/mman.h>
#include <sys/resource.h>
#include <unistd.h>

namespace {

// What the process may have already, and no more than nMost.
u64 Allowed(__rlimit_resource resource, u64 nMost) {
    rlimit limit = {};
    if (getrlimit(resource, &limit) != 0) return nMost;
    return std::min<u64>({nMost, limit.rlim_cur, limit.rlim_max});
}

bool Limit(__rlimit_resource resource, u64 nMost) {
    const u64 allowed = Allowed(resource, nMost);
    const rlimit limit = {allowed, allowed};
    return setrlimit(resource, &limit) == 0;
}

bool LimitResources() {
    return Limit(RLIMIT_AS, MOST_ADDRESSES) && Limit(RLIMIT_CPU, MOST_SECONDS) &&
           Limit(RLIMIT_FSIZE, MOST_OUTPUT) && Limit(RLIMIT_CORE, 0);
}

// What is looked up when it is needed first, in files or from calls that will be gone by then.
void LookUpWhatWillBeNeeded() {
    LargeBlock::Limit();
    TheRowKernels();
    // Else the heap asks how many processors there are when it has no more.
    mallopt(M_ARENA_MAX, 1);
}

class Filter {
  public:
    Filter() : m_context(seccomp_init(SCMP_ACT_KILL_PROCESS)) {
        if (m_context)
            m_bGood = seccomp_attr_set(m_context, SCMP_FLTATR_ACT_BADARCH, SCMP_ACT_KILL_PROCESS) == 0;
    }
    Filter(const Filter&) = delete;
    Filter& operator=(const Filter&) = delete;
    ~Filter() { seccomp_release(m_context); }

    template <typename... Conditions>
    void Allow(int nCall, Conditions... conditions) {
        m_bGood = m_bGood && seccomp_rule_add(m_context, SCMP_ACT_ALLOW, nCall, sizeof...(conditions),
                                              conditions...) == 0;
    }

    bool Load() { return m_bGood && seccomp_load(m_context) == 0; }

  private:
    scmp_filter_ctx m_context;
    bool m_bGood = false;
};

// Of the lower half of an argument, since numbers of 32 bits leave the upper one to chance.
scmp_arg_cmp HasBits(u32 nArgument, u32 nMask, u32 nBits) {
    return {nArgument, SCMP_CMP_MASKED_EQ, nMask, nBits};
}

scmp_arg_cmp IsDescriptor(int nDescriptor) {
    return HasBits(0, ~u32{0}, static_cast<u32>(nDescriptor));
}

void AllowMemory(Filter& filter) {
    const scmp_arg_cmp isNoCode = HasBits(2, PROT_EXEC, 0);
    filter.Allow(SCMP_SYS(mmap), isNoCode, HasBits(3, MAP_ANONYMOUS, MAP_ANONYMOUS));
    filter.Allow(SCMP_SYS(mprotect), isNoCode);
    for (const int call : {SCMP_SYS(brk), SCMP_SYS(madvise), SCMP_SYS(mremap), SCMP_SYS(munmap)})
        filter.Allow(call);
}

bool ForbidCalls(int nInput, int nOutput) {
    Filter filter;
    filter.Allow(SCMP_SYS(pread64), IsDescriptor(nInput));
    filter.Allow(SCMP_SYS(write), IsDescriptor(nOutput));
    filter.Allow(SCMP_SYS(write), IsDescriptor(STDERR_FILENO));
    AllowMemory(filter);
    // Initialising once, as the first exception does, wakes whoever might wait for it.
    filter.Allow(SCMP_SYS(futex), HasBits(1, FUTEX_CMD_MASK, FUTEX_WAKE));
    for (const int call : {SCMP_SYS(close), SCMP_SYS(exit), SCMP_SYS(exit_group), SCMP_SYS(rt_sigreturn)})
        filter.Allow(call);
    return filter.Load();
}

}  // namespace

u64 SecondsOfLockedIn() {
    return Allowed(RLIMIT_CPU, MOST_SECONDS);
}

bool LockIn(int nInput, int nOutput) {
    if (!LimitResources()) return false;
    LookUpWhatWillBeNeeded();
    return ForbidCalls(nInput, nOutput);
}
