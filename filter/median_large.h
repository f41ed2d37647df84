// Medians of so many samples that the lists of the groups leave the cache: the groups of median_groups.h,
// one after the other, their lists merged key by key, down to a size of which a register full is taken at
// once. A level costs one comparison for each key of a list, whatever its length.
#pragma once

#include "filter/median_groups.h"

namespace zpp::ZPP_ISA {

template <class Key>
inline Key takeLower(const Key*& a, const Key*& b) {
    const bool second = *b < *a;
    const Key lower = second ? *b : *a;
    a += !second;
    b += second;
    return lower;
}

template <class Key>
inline void mergeLists(const Key* a, size_t aLen, const Key* b, size_t bLen, Key* out) {
    const Key *aEnd = a + aLen, *bEnd = b + bLen;
    while (a < aEnd && b < bEnd) *out++ = takeLower(a, b);
    memcpy(out, a, static_cast<size_t>(aEnd - a) * sizeof(Key));
    memcpy(out + (aEnd - a), b, static_cast<size_t>(bEnd - b) * sizeof(Key));
}

// Two lists of n, which follow each other: from both ends, so that neither list ends on the way.
template <class Key>
inline void mergePair(const Key* lists, Key* out, size_t n) {
    const Key *a = lists, *b = lists + n, *aLast = b - 1, *bLast = b + n - 1;
    Key* last = out + 2 * n - 1;
    for (size_t i = 0; i < n; ++i) {
        *out++ = takeLower(a, b);
        const bool first = *bLast < *aLast;
        *last-- = first ? *aLast : *bLast;
        aLast -= first;
        bLast -= !first;
    }
}

// middleThird for lists of single keys: what is taken from the candidates follows each other there, and so
// does what is taken from the samples.
template <class Key>
inline void mergeMiddleThird(const Key* candidates, const Key* samples, Key* out, size_t h) {
    // How many of the samples satisfy a condition, which the first ones do.
    const auto count = [=](auto holds) {
        size_t begin = 0;
        for (size_t len = h; len > 0;) {
            const size_t half = len / 2;
            if (holds(begin + half)) {
                begin += half + 1;
                len -= half + 1;
            } else {
                len = half;
            }
        }
        return begin;
    };
    const size_t least = count([=](size_t j) { return samples[j] < candidates[h - 1 - j]; });
    const size_t others = count([=](size_t j) { return !(candidates[2 * h - 1 - j] < samples[j]); });
    const size_t more = least > others ? least : others;
    mergeLists(candidates + (h - least), h + least - more, samples + least, more - least, out);
}

template <class Key>
inline void sortKeys(Key* p, size_t n, [[maybe_unused]] Key* scratch) {
    if constexpr (kVectorBytes == 0 || !std::is_same_v<Key, int64_t>) {
        MedianOfMedians<Key> choose;
        sortAll(p, n, choose);
    } else {  // the vectors sort no such keys
        Key *from = p, *to = scratch;
        for (size_t run = 1; run < n; run *= 2) {
            for (size_t i = 0; i < n; i += 2 * run) {
                const size_t a = n - i < run ? n - i : run, b = n - i - a < run ? n - i - a : run;
                mergeLists(from + i, a, from + i + a, b, to + i);
            }
            Key* t = from;
            from = to;
            to = t;
        }
        if (from != p) memcpy(p, from, n * sizeof(Key));
    }
}

// Groups of 2^order outputs, taken down to groups of 2^lowOrder.
class MedianLarge {
  public:
    MedianLarge(Areas& areas, size_t mask, int order, int lowOrder, size_t batch)
        : mask_(mask), size_(size_t{1} << order), batch_(batch), order_(order), lowOrder_(lowOrder) {
        const size_t levels = static_cast<size_t>(order - lowOrder);
        if (levels == 0) return;  // the groups of registers are all
        window_ = areas.take<uint64_t>(batch + mask);
        candidates_ = areas.take<uint64_t>(batch);
        before_ = areas.take<uint64_t>(levels * size_);
        behind_ = areas.take<uint64_t>(levels * size_);
        for (auto& list : lists_) list = areas.take<uint64_t>(2 * size_);
    }

    // The medians of the windows of x that begin at its elements 0 .. batch - 1.
    template <class V, class T>
    void run(const MedianGroups& groups, const T* x, T* y) const {
        using K = Keys<T, Lane<V>>;
        using Key = Lane<V>;
        Key *window = area<Key>(window_), *candidates = area<Key>(candidates_);
        for (size_t i = 0; i < batch_ + mask_ - 1; ++i) window[i] = K::load(x + i);
        for (size_t i = 0; i < batch_; i += size_) {
            sortRuns(window + i);
            sortShared<K>(window + i);
            split(candidates + i);
        }
        const size_t low = size_t{1} << lowOrder_, step = low * (sizeof(V) / sizeof(Key));
        for (size_t i = 0; i < batch_; i += step) {
            loadColumns(candidates + i, low, low, groups.candidates<V>());
            groups.runFrom<V>(x + i, y + i);
        }
    }

  private:
    template <class Key>
    static Key* area(uint64_t* p) {
        return reinterpret_cast<Key*>(p);
    }
    template <class Key>
    Key* level(uint64_t* runs, int i) const {
        return area<Key>(runs) + size_ * static_cast<size_t>(i - lowOrder_);
    }

    // As in MedianGroups, the runs of 2^lowOrder sorted.
    template <class Key>
    void sortRuns(const Key* x) const {
        const size_t low = size_t{1} << lowOrder_;
        Key *before = area<Key>(before_), *behind = area<Key>(behind_), *scratch = area<Key>(lists_[0]);
        memcpy(before + low, x + low - 1, (size_ - low) * sizeof(Key));
        memcpy(behind, x + mask_, (size_ - low) * sizeof(Key));
        for (size_t i = low; i < size_; i += low) {
            sortKeys(before + i, low, scratch);
            sortKeys(behind + (i - low), low, scratch);
        }
        for (int i = lowOrder_; i + 1 < order_; ++i) {
            const size_t n = size_t{1} << i;
            for (size_t begin = 2 * n; begin < size_; begin += 2 * n) {
                mergePair(level<Key>(before_, i) + begin, level<Key>(before_, i + 1) + begin, n);
                mergePair(level<Key>(behind_, i) + (begin - 2 * n),
                          level<Key>(behind_, i + 1) + (begin - 2 * n), n);
            }
        }
    }

    template <class K, class Key>
    void sortShared(const Key* x) const {
        const size_t shared = mask_ - size_ + 1, lacking = size_ - shared;
        Key* list = area<Key>(lists_[0]);
        memcpy(list + lacking / 2, x + size_ - 1, shared * sizeof(Key));
        sortKeys(list + lacking / 2, shared, area<Key>(lists_[1]));
        for (size_t i = 0; i < lacking / 2; ++i) {
            list[i] = K::kFirst;
            list[size_ - 1 - i] = K::kLast;
        }
    }

    template <class Key>
    void split(Key* candidates) const {
        const Key* from = area<Key>(lists_[0]);
        for (int i = order_; i-- > lowOrder_;) {
            const size_t h = size_t{1} << i;
            Key* to = i == lowOrder_ ? candidates : area<Key>(lists_[(order_ - i) % 2]);
            for (size_t begin = 0; begin < size_; begin += 2 * h) {
                mergeMiddleThird(from + begin, level<Key>(before_, i) + begin + h, to + begin, h);
                mergeMiddleThird(from + begin, level<Key>(behind_, i) + begin, to + begin + h, h);
            }
            from = to;
        }
    }

    size_t mask_, size_, batch_;
    int order_, lowOrder_;
    uint64_t *window_, *candidates_, *before_, *behind_, *lists_[2];
};

}  // namespace zpp::ZPP_ISA
