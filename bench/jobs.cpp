#include "bench/jobs.h"

#include <cstring>
#include <random>

#include "bench/peers/limits.h"

namespace zpp::bench {
namespace {

struct AnyJob : Job {
    bool reduction;
};
std::vector<AnyJob>& jobs() {
    static std::vector<AnyJob> all;
    return all;
}
struct PeerOf : Peer {
    const char* who;
};
std::vector<PeerOf>& peers() {
    static std::vector<PeerOf> all;
    return all;
}

// One block for all, in which vectors begin at different places of a page: a processor that compares the
// lower bits of addresses takes loads for loads of what was just stored.
unsigned char* block(int which) {
    constexpr size_t apart = 4096 + 1344;
    constexpr size_t bytes = sizeof(Zpp64f) * kHuge + 2 * apart;
    static unsigned char* const memory = static_cast<unsigned char*>(std::aligned_alloc(4096, 16 * bytes));
    return memory + static_cast<size_t>(which) * (bytes / 4096 * 4096 + apart);
}

// The vectors of one kind of elements, filled when they are first asked for.
template <int kKind, class T, class Draw>
const void* filled(int which, Draw draw) {
    static bool done[kVectors];
    auto* vector = reinterpret_cast<T*>(block(kVectors * kKind + which));
    if (!done[which]) {
        std::mt19937 random(static_cast<unsigned>(which + 1));
        for (int i = 0; i < kHuge; ++i) vector[i] = draw(static_cast<unsigned>(random()));
        done[which] = true;
    }
    return vector;
}

template <class T>
T ofEitherSign(unsigned bits) {
    const T magnitude = 1 + static_cast<T>(bits >> 8) * static_cast<T>(0x1p-24);
    return bits & 1 ? magnitude : -magnitude;
}

void addAll(const AnyJob& job, const char* who, Timed timed) {
    if (!isWanted(job.name, who)) return;
    for (const int size : {64, 1024, 16384, kLargest, kHuge}) {
        if (size == kHuge && !job.huge) continue;
        registerCase(job.name, who, size, [=](benchmark::State& state) {
            timed(state, size);
            state.SetBytesProcessed(state.iterations() * static_cast<int64_t>(job.bytes) * size);
        });
    }
}

// What the memory allows.
void addLimit(const AnyJob& job) {
    const auto once = [&](int len) { return job.bytes * static_cast<size_t>(len); };
    for (const int size : {64, 1024, 16384, kLargest, kHuge}) {
        if (size == kHuge && !job.huge) continue;
        const void* src = doubles(0);
        void* dst = doubles(2);
        const size_t bytes = once(size);
        if (job.reduction)
            add(job.name, "limit", size, bytes, [=] { peers::loadAll(src, bytes); });
        else
            add(job.name, "limit", size, bytes, [=] { memcpy(dst, src, bytes / 2); });
    }
}

}  // namespace

Jobs::Jobs(std::initializer_list<Job> list) {
    for (const Job& job : list) jobs().push_back({job, false});
}
Reductions::Reductions(std::initializer_list<Job> list) {
    for (const Job& job : list) jobs().push_back({job, true});
}
Peers::Peers(const char* who, std::initializer_list<Peer> list) {
    for (const Peer& peer : list) peers().push_back({peer, who});
}

Zpp64f* doubles(int which) {
    return static_cast<Zpp64f*>(const_cast<void*>(filled<0, Zpp64f>(which, ofEitherSign<double>)));
}
const void* vectorOf(const Zpp64f*, int which) { return doubles(which); }
const void* vectorOf(const Zpp32f*, int which) { return filled<1, Zpp32f>(which, ofEitherSign<float>); }
const void* vectorOf(const Zpp16f*, int which) {
    return filled<2, Zpp16f>(which,
                             [](unsigned bits) { return static_cast<Zpp16f>((bits & 0x9FFF) | 0x2000); });
}
const void* vectorOf(const void*, int which) {
    return filled<3, Zpp32u>(which, [](unsigned bits) { return bits; });
}

void registerJobs() {
    for (const AnyJob& job : jobs()) {
        addAll(job, "zpp", job.timed);
        for (const PeerOf& peer : peers())
            if (std::string(peer.job) == job.name) addAll(job, peer.who, peer.timed);
        addLimit(job);
    }
}

}  // namespace zpp::bench
