#include <hwy/contrib/sort/vqsort.h>
#include <hwy/targets.h>

#include "bench/sorting.h"

namespace zpp::bench {
namespace {

// On the best instruction set, or on AVX2.
template <class T, class Order, bool kBest>
void sort(T* p, int len) {
    static const hwy::Sorter sorter;
    static const int64_t targets = kBest ? hwy::SupportedTargets() : int64_t{HWY_AVX2};  // to ask takes long
    hwy::GetChosenTarget().Update(targets);
    sorter(p, static_cast<size_t>(len), Order());
}

template <bool kBest>
Peers sorts(const char* who) {
    using Up = hwy::SortAscending;
    using Down = hwy::SortDescending;
    return Peers(who, {
                          {"SortAscend_32s_I", timedSort<Zpp32s, sort<Zpp32s, Up, kBest>>},
                          {"SortDescend_32s_I", timedSort<Zpp32s, sort<Zpp32s, Down, kBest>>},
                          {"SortAscend_64f_I", timedSort<Zpp64f, sort<Zpp64f, Up, kBest>>},
                          {"SortDescend_64f_I", timedSort<Zpp64f, sort<Zpp64f, Down, kBest>>},
                      });
}
[[maybe_unused]] const Peers best = sorts<true>("highway");
[[maybe_unused]] const Peers avx2 = sorts<false>("highway-avx2");

}  // namespace
}  // namespace zpp::bench
