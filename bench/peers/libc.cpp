// The C library.
#include <cstring>

#include "bench/jobs.h"

namespace zpp::bench {
namespace {

template <class T>
void copyBlock(const T* src, T* dst, int len) {
    memcpy(dst, src, sizeof(T) * static_cast<size_t>(len));
}
template <class T>
void moveBlock(const T* src, T* dst, int len) {
    memmove(dst, src, sizeof(T) * static_cast<size_t>(len));
}
void clear(double* dst, int len) { memset(dst, 0, sizeof(double) * static_cast<size_t>(len)); }

[[maybe_unused]] const Peers blocks("libc", {
                                                {"Copy_8u", timed<copyBlock<Zpp8u>>},
                                                {"Copy_64f", timed<copyBlock<double>>},
                                                {"Move_64f", timed<moveBlock<double>>},
                                                {"Zero_64f", timed<clear>},
                                            });

}  // namespace
}  // namespace zpp::bench
