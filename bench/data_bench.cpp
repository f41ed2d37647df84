// Conversions: beside the plain loop, and beside a memcpy that moves as many bytes, which is what the memory
// allows. Sources are what the shared vectors hold, read as the type: any bits for integers and singles.
#include <cstring>

#include "bench/bench.h"
#include "bench/plain_data.h"

namespace zpp::bench {
namespace {

// `ours` and `theirs` take (source, destination, len); an element has sourceBytes and resultBytes.
template <class S, class D, class Ours, class Theirs>
void compare(const std::string& what, size_t sourceBytes, size_t resultBytes, Ours ours, Theirs theirs) {
    const auto* src = reinterpret_cast<const S*>(source(0));
    auto* dst = reinterpret_cast<D*>(destination());
    for (const int len : kSizes) {
        const size_t bytes = (sourceBytes + resultBytes) * static_cast<size_t>(len);
        add("Convert_" + what, "zpp", len, bytes, [=] { ours(src, dst, len); });
        add("Convert_" + what, "plain", len, bytes, [=] { theirs(src, dst, len); });
        add("Convert_" + what, "memcpy", len, bytes, [=] { memcpy(dst, src, bytes / 2); });
    }
}

// Functions without further arguments, and with those that both take at their end.
template <class S, class D>
void compare(const std::string& what, ZppStatus (*ours)(const S*, D*, int)) {
    using Plain = void (*)(const S*, D*, int);
    compare<S, D>(what, sizeof(S), sizeof(D), ours, Plain{plain::convert});
}
template <class S, class D>
void compareScaled(const std::string& what, ZppStatus (*ours)(const S*, D*, int, int)) {
    const auto scaled = [=](const S* src, D* dst, int len) { ours(src, dst, len, 3); };
    const auto loop = [](const S* src, D* dst, int len) {
        if constexpr (std::is_same_v<D, Zpp16s>)
            plain::scale(src, dst, len, 3);
        else
            plain::scale(src, dst, len, D{0.125});
    };
    compare<S, D>(what, sizeof(S), sizeof(D), scaled, loop);
}
template <class S, class D>
void compareRounded(const std::string& what, ZppStatus (*ours)(const S*, D*, int, ZppRoundMode, int)) {
    compare<S, D>(
        what, sizeof(S), sizeof(D),
        [=](const S* src, D* dst, int len) { ours(src, dst, len, zppRoundNear, 3); },
        [](const S* src, D* dst, int len) { plain::scale(src, dst, len, S{0.125}); });
}

[[maybe_unused]] const bool registered = [] {
    compare("8s16s", zppsConvert_8s16s);
    compare("16s32s", zppsConvert_16s32s);
    compare("32s16s", zppsConvert_32s16s);
    compare("8u32f", zppsConvert_8u32f);
    compare("16s32f", zppsConvert_16s32f);
    compare("32s32f", zppsConvert_32s32f);
    compare("32s64f", zppsConvert_32s64f);
    compare("32f64f", zppsConvert_32f64f);
    compare("64f32f", zppsConvert_64f32f);
    compareScaled("16s32f_Sfs", zppsConvert_16s32f_Sfs);
    compareScaled("16s64f_Sfs", zppsConvert_16s64f_Sfs);
    compareScaled("32s16s_Sfs", zppsConvert_32s16s_Sfs);
    compareRounded("32f8s_Sfs", zppsConvert_32f8s_Sfs);
    compareRounded("32f16s_Sfs", zppsConvert_32f16s_Sfs);
    compareRounded("32f32s_Sfs", zppsConvert_32f32s_Sfs);
    compareRounded("64f32s_Sfs", zppsConvert_64f32s_Sfs);

    const auto unpackInts = [](auto* src, Zpp32s* dst, int len) { plain::unpack24(src, dst, len); };
    const auto unpackFloats = [](auto* src, Zpp32f* dst, int len) { plain::unpack24(src, dst, len); };
    compare<Zpp8u, Zpp32s>("24s32s", 3, 4, zppsConvert_24s32s, unpackInts);
    compare<Zpp8u, Zpp32f>("24s32f", 3, 4, zppsConvert_24s32f, unpackFloats);
    compare<Zpp32s, Zpp8u>(
        "32s24s_Sfs", 4, 3, [](auto* src, auto* dst, int len) { zppsConvert_32s24s_Sfs(src, dst, len, 3); },
        [](auto* src, auto* dst, int len) { plain::pack24(src, dst, len, 3); });
    compare<Zpp32f, Zpp8u>(
        "32f24s_Sfs", 4, 3, [](auto* src, auto* dst, int len) { zppsConvert_32f24s_Sfs(src, dst, len, 3); },
        [](auto* src, auto* dst, int len) { plain::pack24(src, dst, len, 0.125F); });
    compare<Zpp8u, Zpp8u>("SwapBytes_24u", 3, 3, zppsSwapBytes_24u, plain::swapBytes24);
    compare<Zpp16f, Zpp32f>("16f32f", 2, 4, zppsConvert_16f32f, plain::fromHalf);
    compare<Zpp32f, Zpp16f>(
        "32f16f", 4, 2,
        [](auto* src, auto* dst, int len) { zppsConvert_32f16f(src, dst, len, zppRoundNear); },
        plain::toHalf);
    return true;
}();

}  // namespace
}  // namespace zpp::bench
