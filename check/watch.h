// One call of a function with its manners watched: what it does to the registers, the stack and the control
// words besides what it computes, and whether it touches memory that it was not given.
#pragma once

#include <cstdint>
#include <deque>
#include <string>
#include <vector>

#include "check/call.h"
#include "check/faults.h"
#include "check/prototype.h"
#include "frame/dispatch.h"

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
    void* faultAddress() const { return fault_.address; }

  private:
    void passWord(std::uintptr_t word);
    void layOutStack();
    bool stackIntact() const;
    std::string registerComplaint() const;
    std::string stateComplaint() const;

    alignas(8) unsigned char block_[CALL_BLOCK_BYTES] = {};
    unsigned phase_;
    unsigned integers_ = 0;
    unsigned vectors_ = 0;
    std::vector<std::uintptr_t> words_;              // the arguments in memory
    std::deque<std::vector<unsigned char>> copies_;  // those that are passed by reference
    std::uint16_t x87Control_;
    Fault fault_;
};

// Whether the machine has upper halves of vector registers, which a call must leave clean. Their content is
// watched: XGETBV tells of use too, but processors report use where there is none.
bool watchesVectors();

}  // namespace zpp::check
