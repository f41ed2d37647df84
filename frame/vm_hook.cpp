#include "frame/vm_hook.h"

namespace zpp {

void vmErrorHook(ZppStatus, int, const Zpp64f*, const Zpp64f*, Zpp64f*, Zpp64f*, const char*) {}

}  // namespace zpp
