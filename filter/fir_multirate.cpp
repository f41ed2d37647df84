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
    const size_t group = phases.step < room / 8 ? 8 * phases.step : room;
    room -= room % group;  // phases come again as often as one kernel takes
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

// Rows that outputs wait with, fewer than kGroup, and that of the phase at hand.
inline constexpr size_t kSlots = kGroup;

// Makes `count` outputs from a place on, and gives that of the one behind them. Every D / g inputs a phase
// comes again, U / g outputs later: so they are made phase by phase, several of one at once, and of what is
// left of each some of several phases. rowOf(phase, slot) gives the row of a phase, which has to stay until
// it is asked for another one for the same of kSlots slots; window + place.taken begins the samples of the
// first output.
template <class T, class RowOf>
Place filterPhases(const Phases& phases, RowOf rowOf, const T* window, Place place, T* dst, size_t count) {
    const size_t len = phases.rowLen<T>(), missing = len - phases.window;
    const Mask longMask = Mask::behind<T>(missing), shortMask = Mask::behind<T>(missing + 1);
    // Phases that are neighbours have their taps beside each other.
    const bool inTurn = count < phases.count;
    const Step& step = inTurn ? phases.toNext : phases.toNextPhase;
    Meeting<T> waiting[kGroup];
    size_t waitingCount = 0, slot = 0;
    Place at = place;
    const size_t each = count / phases.count, more = count % phases.count;
    for (size_t n = 0, left = inTurn ? count : phases.count; left > 0; --left) {
        const size_t outputs = each + (n < more ? 1 : 0);
        const T* const row = rowOf(at.phase, slot);
        const T* const x = window + at.taken - missing;
        const Mask* const mask = at.phase < phases.longRows ? &longMask : &shortMask;
        const size_t atOnce = kRowLanes > 1 ? outputs - outputs % kGroup : 0;
        if (atOnce > 0)
            meetStrided(Meeting<T>{row, x, mask, dst + n}, len, phases.step, phases.count, atOnce);
        for (size_t i = atOnce; i < outputs; ++i) {
            // Field by field: a copy of the whole would wait for the fields to be stored.
            Meeting<T>& m = waiting[waitingCount];
            m.taps = row;
            m.x = x + i * phases.step;
            m.mask = mask;
            m.y = dst + n + i * phases.count;
            if (++waitingCount < kGroup) continue;
            meetEach(waiting, len, waitingCount);
            waitingCount = 0;
        }
        if (atOnce < outputs) slot = (slot + 1) % kSlots;
        n += step.outputs;
        phases.advance(at, step);
        const size_t before =
            n >= phases.count ? phases.count : 0;  // without a branch: one would often be wrong
        n -= before;
        at.taken -= before == 0 ? 0 : phases.step;
    }
    meetEach(waiting, len, waitingCount);
    return phases.placeBehind(place, count);
}

}  // namespace

template <class F>
void filterMultiRate(ZppsFIRState* state, const typename F::Data* src, typename F::Data* dst, size_t n) {
    using Sample = typename F::Sample;
    const Rates rates = ratesOf(state);
    const Phases& phases = phasesOf(state);
    Sample* line = delayBufferOf<F>(state);
    const auto rowOf = [=, rows = rowsOf<F>(state), len = phases.rowLen<Sample>()](size_t phase, size_t) {
        return rows + (phase < phases.rows ? phase : phases.rows) * len;
    };
    const auto put = [=](const auto* chunk, size_t count) {
        convertElements(chunk, line + phases.window, count);
    };
    const auto filter = [=](Place place, typename F::Data* to, size_t outputs, size_t count) {
        if constexpr (std::is_same_v<Sample, typename F::Data>) {
            place = filterPhases(phases, rowOf, line, place, to, outputs);
        } else {
            auto* work = static_cast<Sample*>(state->work);
            for (size_t done = 0; done < outputs;) {
                const size_t some = outputs - done < kMultiRateChunk ? outputs - done : kMultiRateChunk;
                place = filterPhases(phases, rowOf, line, place, work, some);
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

// Without a state: the rows are gathered from the caller's taps, once for a chunk of the signal.
template <class T>
class Direct {
  public:
    Direct(const Rates& rates, const T* taps, T* line)
        : rates_(rates), phases_(rates), len_(phases_.rowLen<T>()), taps_(taps), line_(line) {}

    void filter(const Signal<T>& signal) const {
        if (len_ <= kLongest)
            filterShort(signal);
        else
            filterLong(signal);
    }

  private:
    static constexpr size_t kLongest = 4096 / sizeof(T);  // of the rows and windows that the stack holds
    static constexpr size_t kRoom = 16384 / sizeof(T);
    static constexpr size_t kApart = 64 / sizeof(T);  // or all rows would go to the same lines of the cache

    // `count` elements of a row, from `first` on.
    const T* gatherRow(size_t phase, size_t first, size_t count, T* row) const {
        const size_t taps = phase < phases_.rows ? phases_.tapsOf(phase) : 0;
        const size_t none = len_ - taps, up = static_cast<size_t>(rates_.up);
        const size_t missing = first < none ? none - first : 0;
        for (size_t i = 0; i < missing; ++i) setRowElement<T>(row[i], nullptr);
        if (missing == count) return row;
        const T* tap = taps_ + phases_.tap(phase, len_ - 1 - first - missing, rates_);
        for (size_t i = missing;; tap -= up) {
            convertElement(*tap, row[i]);
            if (++i == count) return row;
        }
    }

    // The window is on the stack too.
    [[gnu::noinline]] void filterShort(const Signal<T>& signal) const {
        T rows[kSlots][kLongest + kApart], buffer[kRowValues<T> + kLongest + kRoom];
        zeroElements(buffer, kRowValues<T>);
        T* const line = buffer + kRowValues<T>;
        const size_t window = phases_.window;
        for (size_t j = 0; j < window; ++j) convertElement(line_[window - 1 - j], line[j]);
        const auto put = [&](const T* src, size_t count) { copyElements(src, line + window, count); };
        const auto rowOf = [&](size_t phase, size_t slot) { return gatherRow(phase, 0, len_, rows[slot]); };
        const auto filter = [&](Place place, T* to, size_t outputs, size_t count) {
            place = filterPhases(phases_, rowOf, line, place, to, outputs);
            moveElements(line + count, line, window);
            return place;
        };
        filterChunks(signal, phases_, kRoom, put, filter);
        for (size_t j = 0; j < window; ++j) convertElement(line[window - 1 - j], line_[j]);
    }

    // Sample i of a chunk, which follows the delay line.
    const T& sample(const T* chunk, ptrdiff_t i) const { return i < 0 ? line_[-1 - i] : chunk[i]; }

    // Row and window of an output are gathered in parts.
    void filterOutput(const Place& place, const T* chunk, T* y) const {
        constexpr size_t part = kPartLen<T>;
        T row[part], window[part];
        RowSum<T> sum;
        const size_t taps = phases_.tapsOf(place.phase);
        for (size_t first = 0; first < len_; first += part) {
            const size_t rest = len_ - first, count = rest < part ? rest : part;
            for (size_t i = 0; i < count; ++i) {
                const size_t j = len_ - 1 - first - i;
                const auto at = static_cast<ptrdiff_t>(place.taken) - 1 - static_cast<ptrdiff_t>(j);
                if (j < taps)
                    convertElement(sample(chunk, at), window[i]);
                else
                    window[i] = T{};
            }
            addPart(sum, gatherRow(place.phase, first, count, row), count, window, kNoMask);
        }
        sum.put(y);
    }

    [[gnu::noinline]] void filterLong(const Signal<T>& signal) const {
        T chunk[kRoom];
        const auto put = [&](const T* src, size_t count) { copyElements(src, chunk, count); };
        const auto filter = [&](Place place, T* to, size_t outputs, size_t count) {
            for (size_t n = 0; n < outputs; ++n, phases_.advance(place, phases_.toNext))
                filterOutput(place, chunk, to + n);
            const size_t kept = phases_.window < count ? 0 : phases_.window - count;
            moveElements(line_, line_ + (phases_.window - kept), kept);
            for (size_t j = 0; j < phases_.window - kept; ++j) convertElement(chunk[count - 1 - j], line_[j]);
            return place;
        };
        filterChunks(signal, phases_, kRoom, put, filter);
    }

    Rates rates_;
    Phases phases_;
    size_t len_;
    const T* taps_;
    T* line_;
};

template <class T>
ZppStatus filterDirect(const T* pSrc, T* pDst, int numIters, const T* pTaps, const MultiRateNumbers& n,
                       T* pDlyLine) {
    if (const ZppStatus error = firstError(checkVectors(numIters, pSrc, pDst), checkPointers(pTaps), check(n),
                                           checkPointers(pDlyLine)))
        return error;
    const DoublePrecision precision;
    const Rates rates = ratesOf(n);
    Direct<T>(rates, pTaps, pDlyLine).filter(Signal<T>(pSrc, pDst, static_cast<size_t>(numIters), rates));
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
