// The start of a plug-in whose author broke the rules: the module's header promises that nothing is thrown,
// so this one does not include it.
#include <stdexcept>

extern "C" __attribute__((visibility("default"))) void DllStart2(void*) {
    throw std::runtime_error("out of the module");
}
