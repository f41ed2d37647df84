#include "bench/peers/limits.h"

#include <cstring>

namespace zpp::peers {
namespace {

#ifdef __AVX512F__
constexpr int lanes = 8;
#elif defined(__AVX__)
constexpr int lanes = 4;
#else
constexpr int lanes = 2;
#endif
typedef double Vector __attribute__((vector_size(sizeof(double) * lanes)));

}  // namespace

void loadAll(const void* src, size_t bytes) {
    const auto* p = static_cast<const unsigned char*>(src);
#pragma GCC unroll 8
    for (size_t i = 0; i + sizeof(Vector) <= bytes; i += sizeof(Vector)) {
        Vector v;
        memcpy(&v, p + i, sizeof v);
        __asm__ volatile("" : : "v"(v));
    }
}

// Independent chains, more than the latency of a multiply-add needs.
double multiplyAdds(long long count) {
    constexpr int chains = 10;
    Vector sums[chains], factor = Vector{} + 0.5;
    for (int i = 0; i < chains; ++i) sums[i] = Vector{} + i;  // or the compiler would make them one
    for (long long done = 0; done < count; done += lanes * chains) {
        __asm__("" : "+x"(factor));
#pragma GCC unroll 10
        for (Vector& sum : sums) sum = sum * factor + factor;
    }
    double total = 0;
    for (const Vector& sum : sums)
        for (int i = 0; i < lanes; ++i) total += sum[i];
    return total;
}

}  // namespace zpp::peers
