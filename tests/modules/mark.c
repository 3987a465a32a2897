/* What no client may ever load: its constructor makes the file that TARVIK_TEST_MARK names. It answers as a
 * companion does, too. */
#include <stdio.h>
#include <stdlib.h>

__attribute__((constructor)) static void leave_mark(void) {
    char const* const path = getenv("TARVIK_TEST_MARK");
    FILE* const file = path ? fopen(path, "w") : NULL;
    if (file)
        fclose(file);
}

__attribute__((visibility("default"))) char const* companion_name(void);
char const* companion_name(void) {
    return "hostile";
}
