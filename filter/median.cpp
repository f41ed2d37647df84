// Median filters.
#include "core/checks.h"
#include "core/move.h"
#include "filter/exports.h"
#include "filter/median_large.h"
#include "filter/median_network.h"

namespace zpp::ZPP_ISA {
namespace {

// Groups of more outputs than this have lists beyond the second-level cache.
constexpr int kMaxGroupOrder = kVectorBytes == 0 ? 4 : 10;

// Registers of keys where these are the elements themselves, and where they are not.
template <class T>
using PlainKeys = Vec<T>;
using OddKeys = Vec<int64_t, kCompares64 ? kLanes<int64_t> : 1>;

// The samples around a block of outputs: a part of the vector in a buffer, with the end samples repeated. It
// only goes forward, and reads a sample of the vector once: so the vector may be overwritten behind it.
template <class T>
class MedianWindow {
  public:
    MedianWindow(const T* src, int64_t len, T* buffer) : src_(src), len_(len), buffer_(buffer) {
        memcpy(ends_, src, sizeof(T));
        memcpy(ends_ + 1, src + (len - 1), sizeof(T));
    }

    // From now on it is the samples from `first` on.
    const T* advance(int64_t first, int64_t count) {
        const int64_t kept = end_ > first ? end_ - first : 0;
        if (kept > 0) moveElements(buffer_ + (first - begin_), buffer_, static_cast<size_t>(kept));
        begin_ = first;
        end_ = first + count;
        append(first + kept, count - kept, buffer_ + kept);
        return buffer_;
    }

    // Whether the elements are no keys.
    bool isOdd() const { return kVectorBytes == 0 || oddEnd_ > begin_; }

  private:
    void append(int64_t first, int64_t count, T* dst) {
        const auto inside = [=, this](int64_t place) { return place < 0 ? 0 : place < len_ ? place : len_; };
        const int64_t begin = inside(first), end = inside(first + count);
        const int64_t before = end > begin || first < 0 ? begin - first : 0;
        const int64_t low = before < count ? before : count;
        fillElements(ends_[0], dst, static_cast<size_t>(low));
        memcpy(static_cast<void*>(dst + low), src_ + begin, static_cast<size_t>(end - begin) * sizeof(T));
        const int64_t filled = low + (end - begin);
        fillElements(ends_[1], dst + filled, static_cast<size_t>(count - filled));
        if constexpr (std::is_same_v<T, Zpp64f> && kVectorBytes > 0)
            if (hasNansOrNegativeZeros(dst, static_cast<size_t>(count))) oddEnd_ = first + count;
    }

    const T* src_;
    int64_t len_;
    T* buffer_;
    T ends_[2];
    int64_t begin_ = 0, end_ = INT64_MIN, oddEnd_ = INT64_MIN;
};

// Calls filter(V{}) for the registers that the keys in the window take.
template <class T, class Filter>
ZPP_INLINE void withKeys(const MedianWindow<T>& window, Filter filter) {
    if constexpr (std::is_same_v<T, Zpp64f>) {
        if (window.isOdd()) return filter(OddKeys{});
        if constexpr (kVectorBytes == 0) return;
    }
    filter(PlainKeys<T>{});
}

template <int kRadius, class T>
void filterSmall(const T* src, T* dst, int64_t len) {
    constexpr size_t room = kNetworkBlock + 2 * kRadius + 3 * static_cast<size_t>(kLanes<T>);
    T buffer[room], result[room];
    MedianWindow<T> window(src, len, buffer);
    for (int64_t done = 0, n; done < len; done += n) {
        n = len - done < static_cast<int64_t>(kNetworkBlock) ? len - done : kNetworkBlock;
        window.advance(done - kRadius, static_cast<int64_t>(room));
        withKeys(window, [&]<class V>(V) {
            using K = Keys<T, V>;
            using Key = typename K::Key;
            MedianNetwork<V, kRadius> network;
            if constexpr (K::kAreElements) {
                network.run(buffer, result, static_cast<size_t>(n));
            } else {
                Key keys[room], medians[room];
                for (size_t i = 0; i + K::kCount <= room; i += K::kCount)
                    store(keys + i, K::load(buffer + i));
                network.run(keys, medians, static_cast<size_t>(n));
                for (size_t i = 0; i < static_cast<size_t>(n); i += K::kCount)
                    K::store(result + i, load<V>(medians + i));
            }
        });
        memcpy(static_cast<void*>(dst + done), result, static_cast<size_t>(n) * sizeof(T));
    }
}

// The order of the groups that lanes take side by side, of those of an order. All lanes together should not
// make many more outputs than there are; where the groups are small, they are quick nevertheless.
template <class T>
int groupOrder(int order, int64_t len) {
    constexpr int64_t lanes = kLanes<T>;
    int low = order < kMaxGroupOrder ? order : kMaxGroupOrder;
    if (order > 6 || lanes << order >= 8 * len)
        while (low > kListOrder && len <= lanes << (low - 1)) --low;
    return low;
}

template <class T>
ZppStatus filterGroups(const T* src, T* dst, int64_t len, int64_t radius) {
    int order = 3;
    while (int64_t{1} << order <= radius) ++order;
    const int lowOrder = groupOrder<T>(order, len);
    const size_t mask = 2 * static_cast<size_t>(radius) + 1, size = size_t{1} << order;
    const size_t together = static_cast<size_t>(kLanes<T>) << lowOrder;
    const size_t batch = size > together ? size : together;
    const size_t room = batch + mask + 64;
    struct Parts {
        T *buffer, *result;
        MedianGroups groups;
        MedianLarge large;
    };
    const auto layOut = [=](Areas areas, uint64_t& bytes) {
        T *buffer = areas.take<T>(room), *result = areas.take<T>(room);
        const MedianGroups groups(areas, mask, lowOrder);
        const MedianLarge large(areas, mask, order, lowOrder, batch);
        bytes = areas.bytes();
        return Parts{buffer, result, groups, large};
    };
    uint64_t bytes;
    layOut(Areas(kBlockAlignment), bytes);
    void* block = allocateAligned(bytes);
    if (block == nullptr) return zppStatusAllocationFailed;
    const Parts parts = layOut(Areas(kBlockAlignment, block), bytes);
    MedianWindow<T> window(src, len, parts.buffer);
    for (int64_t done = 0, n; done < len; done += n) {
        n = len - done < static_cast<int64_t>(batch) ? len - done : static_cast<int64_t>(batch);
        window.advance(done - radius, static_cast<int64_t>(room));
        withKeys(window, [&]<class V>(V) {
            constexpr size_t lanes = sizeof(V) / sizeof(Lane<V>);
            if (order > lowOrder)
                parts.large.template run<V>(parts.groups, parts.buffer, parts.result);
            else
                for (size_t i = 0; i < batch; i += lanes * size)
                    parts.groups.template run<V>(parts.buffer + i, parts.result + i);
        });
        memcpy(static_cast<void*>(dst + done), parts.result, static_cast<size_t>(n) * sizeof(T));
    }
    freeAligned(block);
    return zppStatusOk;
}

template <class T>
ZppStatus filterRadius(const T* src, T* dst, int64_t len, int64_t radius) {
    switch (radius) {
        case 0:
            copyElements(src, dst, static_cast<size_t>(len));
            return zppStatusOk;
        case 1:
            filterSmall<1>(src, dst, len);
            return zppStatusOk;
        case 2:
            filterSmall<2>(src, dst, len);
            return zppStatusOk;
        case 3:
            filterSmall<3>(src, dst, len);
            return zppStatusOk;
        case 4:
            filterSmall<4>(src, dst, len);
            return zppStatusOk;
        default:
            return filterGroups(src, dst, len, radius);
    }
}

// From a radius on with which every window holds the whole vector, medians stay: as many more of the first
// and of the last sample are on either side of them.
template <class T>
ZppStatus filterMedian(const T* pSrc, T* pDst, int len, int maskSize) {
    if (const ZppStatus error =
            firstError(checkVectors(len, pSrc, pDst), require(maskSize > 0, zppStatusMaskSize)))
        return error;
    const SubnormalsKept subnormals;
    const int radius = (maskSize - 1) / 2;
    const ZppStatus error = filterRadius<T>(pSrc, pDst, len, radius < len ? radius : len);
    return error == zppStatusOk && maskSize % 2 == 0 ? zppStatusEvenMedianMask : error;
}

}  // namespace

ZppStatus zppsFilterMedian_64f(const Zpp64f* pSrc, Zpp64f* pDst, int len, int maskSize) {
    return filterMedian(pSrc, pDst, len, maskSize);
}
ZppStatus zppsFilterMedian_64f_I(Zpp64f* pSrcDst, int len, int maskSize) {
    return filterMedian<Zpp64f>(pSrcDst, pSrcDst, len, maskSize);
}
ZppStatus zppsFilterMedian_32s(const Zpp32s* pSrc, Zpp32s* pDst, int len, int maskSize) {
    return filterMedian(pSrc, pDst, len, maskSize);
}
ZppStatus zppsFilterMedian_32s_I(Zpp32s* pSrcDst, int len, int maskSize) {
    return filterMedian<Zpp32s>(pSrcDst, pSrcDst, len, maskSize);
}

}  // namespace zpp::ZPP_ISA
