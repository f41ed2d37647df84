/* The block between watch.cpp and the assembled call: byte offsets, of 8-byte fields on every architecture.
 */
#define CALL_TARGET 0  /* in: the function */
#define CALL_STACK 8   /* in: its stack pointer, at the arguments that are passed in memory */
#define CALL_WATCH 16  /* in: 0: call and return; 1: watch; 3: vector registers as well (needs AVX) */
#define CALL_RESULT 24 /* out, as all that follows but the arguments */
#define CALL_STACK_AFTER 32
#define CALL_FLAGS 40
#define CALL_MXCSR 48
#define CALL_X87 64        /* environment, 28 bytes */
#define CALL_OWN_STACK 96  /* the stack pointer of the caller, for the way back */
#define CALL_UPPERS 112    /* the upper halves of all vector registers, or-ed: 16 bytes */
#define CALL_INTEGERS 144  /* in: 6 argument registers */
#define CALL_VECTORS 192   /* in: 8 argument registers, the low halves */
#define CALL_PRESERVED 256 /* the callee-saved registers, 28 words at most */
#define CALL_BLOCK_BYTES 480

/* What word i of the callee-saved registers holds during the call, plus i. */
#define CALL_SENTINEL 0x5EED0010
