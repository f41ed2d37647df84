// Products with a table of weights.
#include "bench/peers/plain.h"

namespace zpp::bench {
namespace {

constexpr auto weighted = [](double x, double weight) { return x * weight; };
constexpr auto weightedComplex = [](Zpp64fc x, double weight) {
    return Zpp64fc{x.re * weight, x.im * weight};
};

[[maybe_unused]] const Peers tables("table-" ZPP_WHO, {
                                                          {"WinBartlett_64f", map<weighted>},
                                                          {"WinHann_64f", map<weighted>},
                                                          {"WinHann_64fc", map<weightedComplex>},
                                                          {"WinHamming_64f", map<weighted>},
                                                          {"WinBlackman_64f", map<weighted>},
                                                          {"WinBlackmanStd_64f", map<weighted>},
                                                          {"WinBlackmanOpt_64f", map<weighted>},
                                                          {"WinKaiser_64f", map<weighted>},
                                                      });

}  // namespace
}  // namespace zpp::bench
