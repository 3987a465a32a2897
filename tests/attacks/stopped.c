/* Preloaded, stops a program before its main() until it is told to go on, so that a tracer can attach there
 * and does not see what the dynamic linker did. */
#include <signal.h>

__attribute__((constructor)) static void stop(void) {
    raise(SIGSTOP);
}
