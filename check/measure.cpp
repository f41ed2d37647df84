#include "check/measure.h"
namespace zpp::check {
bool addToDigest(const Function&, std::uint64_t&) { return false; }
std::vector<double> timeCalls(const Session&, const Function&, int) { return {}; }
}  // namespace zpp::check
