// Forbidden accesses and instructions in watched calls: the call is given up, and the program goes on.
#pragma once

namespace zpp::check {

struct Fault {
    const char* what = nullptr;  // null: there was none
    void* address = nullptr;     // of the access
};

// To be called once.
void catchFaults();

// zpp_watched_call on the block; what stopped it.
Fault callCatching(void* block);

}  // namespace zpp::check
