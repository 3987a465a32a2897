#include "base/threadname.h"

#include <pthread.h>

namespace quillon::native {

void nameThisThread(char const* name) {
    pthread_setname_np(name);
}

} // namespace quillon::native
