// One call of a function with its manners watched: what it does to the registers, the stack and the control
// words besides what it computes, and whether it touches memory that it was not given.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "check/call.h"
#include "check/prototype.h"
#include "core/dispatch.h"

namespace zpp::check {

class WatchedCall {
  public:
    // The stack begins `phase` steps of the alignment that a caller must keep above a multiple of 32 bytes.
    WatchedCall(Entry target, unsigned phase);

    void pass(const void* pointer) { passWord(reinterpret_cast<std::uintptr_t>(pointer)); }
    // The value as it lies in memory.
    void pass(const Element& type, const void* value);

    // Calls and gives the result register.
    std::uint64_t run();

    // Nanoseconds of a call when it is made so often, unwatched.
    double time(int calls);

    // What was wrong with the last call, empty if nothing. `faultAddress` is that of a forbidden access, or
    // null.
    std::string complaint() const;
    void* faultAddress() const { return fault_; }

  private:
    void passWord(std::uintptr_t word);
    void layOutStack();
    bool stackIntact() const;
    std::string registerComplaint() const;
    std::string stateComplaint() const;

    alignas(8) unsigned char block_[CALL_OWN_STACK + 8] = {};
    unsigned phase_;
    unsigned integers_ = 0;
    unsigned vectors_ = 0;
    std::vector<std::uintptr_t> words_;  // the arguments in memory
    std::uint16_t x87Control_;
    int signal_ = 0;
    void* fault_ = nullptr;
};

// Whether the machine lets the program see that upper halves of vector registers were left in use.
bool watchesVectors();

// Catches the signals of forbidden accesses in watched calls. To be called once.
void catchFaults();

}  // namespace zpp::check
