// Movement, beside the plain loop and the C library.
#include <cstring>

#include "bench/bench.h"
#include "bench/plain.h"

namespace zpp::bench {
namespace {

[[maybe_unused]] const bool registered = [] {
    const Zpp64f* a = source(0);
    Zpp64f* dst = destination();
    Zpp64fc* dstComplex = complexVector(dst);
    const Zpp64fc val = {1.5, -0.5};
    for (const int len : kSizes) {
        const size_t once = sizeof(Zpp64f) * static_cast<size_t>(len);
        const size_t twice = 2 * once;
        const auto memoryCopy = [=] { memcpy(dst, a, once); };

        add("Copy_64f", "zpp", len, twice, [=] { zppsCopy_64f(a, dst, len); });
        add("Copy_64f", "plain", len, twice, [=] { plain::copy(a, dst, len); });
        add("Copy_64f", "memcpy", len, twice, memoryCopy);

        add("Move_64f+1", "zpp", len, twice, [=] { zppsMove_64f(dst, dst + 1, len); });
        add("Move_64f+1", "memmove", len, twice, [=] { memmove(dst + 1, dst, once); });

        add("Set_64f", "zpp", len, once, [=] { zppsSet_64f(1.5, dst, len); });
        add("Set_64f", "plain", len, once, [=] { plain::set(1.5, dst, len); });
        add("Set_64f", "memset", len, once, [=] { memset(dst, 1, once); });

        add("Set_64fc", "zpp", len, twice, [=] { zppsSet_64fc(val, dstComplex, len); });
        add("Set_64fc", "plain", len, twice, [=] { plain::set(val, dstComplex, len); });
        add("Set_64fc", "memset", len, twice, [=] { memset(dst, 1, twice); });

        add("Zero_64f", "zpp", len, once, [=] { zppsZero_64f(dst, len); });
        add("Zero_64f", "memset", len, once, [=] { memset(dst, 0, once); });

        add("Flip_64f", "zpp", len, twice, [=] { zppsFlip_64f(a, dst, len); });
        add("Flip_64f", "plain", len, twice, [=] { plain::flip(a, dst, len); });
        add("Flip_64f", "memcpy", len, twice, memoryCopy);

        add("Flip_64f_I", "zpp", len, twice, [=] { zppsFlip_64f_I(dst, len); });
        add("Flip_64f_I", "plain", len, twice, [=] { plain::flip(dst, len); });
    }
    return true;
}();

}  // namespace
}  // namespace zpp::bench
