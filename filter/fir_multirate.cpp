// Multi-rate FIR filtering of blocks, with a state and without.
#include "filter/fir_multirate.h"

#include "filter/fir_multirate_kernel.h"

namespace zpp::ZPP_ISA {
namespace {

// The signal of a call. In place, the inputs that are still to be read must not be written over. Where there
// are more outputs than inputs, these are first moved to the end of the array; then, as where there are
// fewer, an output stands before every input that is more than one behind the newest that it needs.
template <class T>
struct Signal {
    const T* src;
    T* dst;
    size_t inputs, outputs;

    Signal(const T* pSrc, T* pDst, size_t blocks, const Rates& rates)
        : src(pSrc),
          dst(pDst),
          inputs(blocks * static_cast<size_t>(rates.down)),
          outputs(blocks * static_cast<size_t>(rates.up)) {
        if (src != dst || outputs <= inputs) return;
        T* moved = dst + (outputs - inputs);
        moveElements(src, moved, inputs);
        src = moved;
    }
};

// Takes the inputs of a signal in chunks of at most `room`, put(chunk, count), and after each the outputs
// that it allows: all that need no later input, but for those that need the newest (see Signal), unless it is
// the last. filter(place, dst, count) makes them; place.taken counts from the chunk's start.
template <class T, class Put, class Filter>
void filterChunks(const Signal<T>& signal, const Phases& phases, size_t room, Put put, Filter filter) {
    Place place = phases.start;
    T* dst = signal.dst;
    for (size_t done = 0; done < signal.inputs;) {
        const size_t rest = signal.inputs - done, count = rest < room ? rest : room;
        put(signal.src + done, count);
        done += count;
        const size_t outputs = phases.outputsUpTo(place, done < signal.inputs ? count - 1 : count);
        const size_t left = static_cast<size_t>(signal.dst + signal.outputs - dst);
        place = filter(place, dst, outputs < left ? outputs : left, count);
        dst += outputs < left ? outputs : left;
        place.taken -= count;
    }
}

// `count` outputs from a place on. window + place.taken begins the samples of the first.
template <class T>
Place filterRows(const Phases& phases, const T* rows, const T* window, Place place, T* dst, size_t count) {
    const size_t len = phases.rowLen<T>();
    const Mask longMask = Mask::behind<T>(len - phases.window);
    const Mask shortMask = Mask::behind<T>(len - phases.window + 1);
    window -= len - phases.window;
    for (size_t i = 0; i < count; ++i) {
        Row<T> row;
        const size_t phase = place.phase < phases.rows ? place.phase : phases.rows;
        addProducts(row, rows + phase * len, window + place.taken, len,
                    phase < phases.longRows ? longMask : shortMask);
        row.put(dst + i);
        phases.advance(place);
    }
    return place;
}

}  // namespace

template <class F>
void filterMultiRate(ZppsFIRState* state, const typename F::Data* src, typename F::Data* dst, size_t n) {
    using Sample = typename F::Sample;
    const Rates rates = ratesOf(state);
    const Phases phases(rates);
    Sample* line = delayBufferOf<F>(state);
    const Sample* rows = rowsOf<F>(state);
    const auto put = [=](const auto* chunk, size_t count) {
        convertElements(chunk, line + phases.window, count);
    };
    const auto filter = [=](Place place, typename F::Data* to, size_t outputs, size_t count) {
        if constexpr (std::is_same_v<Sample, typename F::Data>) {
            place = filterRows(phases, rows, line, place, to, outputs);
        } else {
            auto* work = static_cast<Sample*>(state->work);
            for (size_t done = 0; done < outputs;) {
                const size_t some = outputs - done < kMultiRateChunk ? outputs - done : kMultiRateChunk;
                place = filterRows(phases, rows, line, place, work, some);
                convertElements(work, to + done, some);
                done += some;
            }
        }
        moveElements(line + count, line, phases.window);
        return place;
    };
    filterChunks(Signal(src, dst, n, rates), phases, kMultiRateChunk, put, filter);
}
template void filterMultiRate<Fir64f>(ZppsFIRState*, const Zpp64f*, Zpp64f*, size_t);
template void filterMultiRate<Fir64fc>(ZppsFIRState*, const Zpp64fc*, Zpp64fc*, size_t);
template void filterMultiRate<Fir64f32f>(ZppsFIRState*, const Zpp32f*, Zpp32f*, size_t);
template void filterMultiRate<Fir64fc32fc>(ZppsFIRState*, const Zpp32fc*, Zpp32fc*, size_t);

namespace {

// Without a state.
template <class T>
struct Direct {
    const Rates rates;
    const Phases phases;
    const T* taps;
    T* line;  // newest first

    static constexpr size_t kPart = 1024 / sizeof(T) * kRowValues<T>;  // of a row
    static constexpr size_t kRoom = 16384 / sizeof(T);

    // Sample i of a chunk, which follows the delay line.
    const T& sample(const T* chunk, ptrdiff_t i) const { return i < 0 ? line[-1 - i] : chunk[i]; }

    // Rows and samples are gathered in parts.
    Place filter(Place place, const T* chunk, T* dst, size_t count) const {
        const size_t len = phases.rowLen<T>();
        for (size_t i = 0; i < count; ++i) {
            T h[kPart], x[kPart];
            Row<T> row;
            const size_t tapsInRow = phases.tapsOf(place.phase);
            for (size_t begin = 0; begin < len; begin += kPart) {
                const size_t size = len - begin < kPart ? len - begin : kPart;
                for (size_t k = 0; k < size; ++k) {
                    const size_t j = len - 1 - begin - k;
                    setRowElement(h[k], j < tapsInRow ? &taps[phases.tap(place.phase, j, rates)] : nullptr);
                    if (j < tapsInRow)
                        memcpy(&x[k],
                               &sample(chunk,
                                       static_cast<ptrdiff_t>(place.taken) - 1 - static_cast<ptrdiff_t>(j)),
                               sizeof(T));
                    else
                        memset(&x[k], 0, sizeof(T));
                }
                addProducts(row, h, x, size, Mask::behind<T>(0));
            }
            row.put(dst + i);
            phases.advance(place);
        }
        return place;
    }

    void replaceLine(const T* chunk, size_t count) const {
        const size_t kept = phases.window < count ? 0 : phases.window - count;
        moveElements(line, line + (phases.window - kept), kept);
        for (size_t j = 0; j < phases.window - kept; ++j) memcpy(&line[j], &chunk[count - 1 - j], sizeof(T));
    }

    [[gnu::noinline]] void run(const T* src, T* dst, size_t blocks) const {
        T chunk[kRoom];
        filterChunks(
            Signal<T>(src, dst, blocks, rates), phases, kRoom,
            [&](const T* from, size_t count) { copyElements(from, chunk, count); },
            [&](Place place, T* to, size_t outputs, size_t count) {
                place = filter(place, chunk, to, outputs);
                replaceLine(chunk, count);
                return place;
            });
    }
};

template <class T>
ZppStatus filterDirect(const T* pSrc, T* pDst, int numIters, const T* pTaps, const MultiRateNumbers& n,
                       T* pDlyLine) {
    if (const ZppStatus error = firstError(checkVectors(numIters, pSrc, pDst), checkPointers(pTaps), check(n),
                                           checkPointers(pDlyLine)))
        return error;
    const DoublePrecision precision;
    const Rates rates = ratesOf(n);
    Direct<T>{rates, Phases(rates), pTaps, pDlyLine}.run(pSrc, pDst, static_cast<size_t>(numIters));
    return zppStatusOk;
}

}  // namespace

ZppStatus zppsFIRMR_Direct_64f(const Zpp64f* pSrc, Zpp64f* pDst, int numIters, const Zpp64f* pTaps,
                               int tapsLen, int upFactor, int upPhase, int downFactor, int downPhase,
                               Zpp64f* pDlyLine) {
    return filterDirect(pSrc, pDst, numIters, pTaps, {tapsLen, upFactor, upPhase, downFactor, downPhase},
                        pDlyLine);
}
ZppStatus zppsFIRMR_Direct_64f_I(Zpp64f* pSrcDst, int numIters, const Zpp64f* pTaps, int tapsLen,
                                 int upFactor, int upPhase, int downFactor, int downPhase, Zpp64f* pDlyLine) {
    return filterDirect(pSrcDst, pSrcDst, numIters, pTaps,
                        {tapsLen, upFactor, upPhase, downFactor, downPhase}, pDlyLine);
}
ZppStatus zppsFIRMR_Direct_64fc(const Zpp64fc* pSrc, Zpp64fc* pDst, int numIters, const Zpp64fc* pTaps,
                                int tapsLen, int upFactor, int upPhase, int downFactor, int downPhase,
                                Zpp64fc* pDlyLine) {
    return filterDirect(pSrc, pDst, numIters, pTaps, {tapsLen, upFactor, upPhase, downFactor, downPhase},
                        pDlyLine);
}
ZppStatus zppsFIRMR_Direct_64fc_I(Zpp64fc* pSrcDst, int numIters, const Zpp64fc* pTaps, int tapsLen,
                                  int upFactor, int upPhase, int downFactor, int downPhase,
                                  Zpp64fc* pDlyLine) {
    return filterDirect(pSrcDst, pSrcDst, numIters, pTaps,
                        {tapsLen, upFactor, upPhase, downFactor, downPhase}, pDlyLine);
}

}  // namespace zpp::ZPP_ISA
