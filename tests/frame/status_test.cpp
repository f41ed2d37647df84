#include <cstring>

#include "tests/support/binding.h"
#include "zpp/frame.h"

namespace zpp::test {
namespace {

class Status : public BoundTest {};
ZPP_FOR_ALL_BINDINGS(Status);

// The table is long and its texts are an interface: their count and a checksum (FNV-1a) guard all of them,
// and a few are spelled out.
TEST_P(Status, EveryTextIsAsItWas) {
    constexpr char kUnknown[] = "Unknown Status Code";
    int known = 0;
    std::uint64_t hash = 0xCBF29CE484222325u;
    for (int status = -11000; status <= 11000; ++status) {
        const char* text = zppGetStatusString(status);
        if (std::strcmp(text, kUnknown) == 0) continue;
        ++known;
        for (const char c : std::to_string(status) + ":" + text + "\n") {
            hash ^= static_cast<unsigned char>(c);
            hash *= 0x100000001B3u;
        }
        EXPECT_EQ(zppGetStatusString(status), text);
    }
    EXPECT_EQ(known, 199);
    EXPECT_EQ(hash, 0x7AD4F272D4CB8BB7u);

    const std::map<int, const char*> texts = {
        {zppStatusOk, "No error, it's OK"},
        {zppStatusNullPointer, "Null pointer error"},
        {zppStatusNotSupportedMode, "The requested mode is currently not supported"},
        {-120, "A compromised key causes suspansion of requested cryptographic operation"},
        {28, "4th vertex of destination quad is not equal to customer's one"},
    };
    for (const auto& [status, text] : texts) EXPECT_STREQ(zppGetStatusString(status), text);
    for (const int status : {-1, -3, -68, -84, -89, -165, 29, -179, -9997, -10000, INT_MAX, INT_MIN})
        EXPECT_STREQ(zppGetStatusString(status), kUnknown) << status;
}

}  // namespace
}  // namespace zpp::test
