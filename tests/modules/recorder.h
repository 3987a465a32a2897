/* A file in which a test module writes down the calls that it receives. */
#ifndef TEST_MODULES_RECORDER_H
#define TEST_MODULES_RECORDER_H

#ifdef TEST_COMPANION
#include <dlfcn.h>
#endif
#include <stdarg.h>
#include <stdio.h>
#include <string.h>

/* The directory of the record; until it is known, lines are kept here. */
static char recorder_directory[4096];
static char recorder_pending[4096];

/* Formats into a buffer; what does not fit is cut off. */
static void recorder_format(char* buffer, size_t size, char const* format, ...) {
    va_list arguments;
    va_start(arguments, format);
    vsnprintf(buffer, size, format, arguments);
    va_end(arguments);
}

/* The path of a file in the module's directory. */
static void recorder_path(char* path, size_t size, char const* name) {
    recorder_format(path, size, "%s/%s", recorder_directory, name);
}

static void recorder_call(char const* function, char const* argument) {
    char path[4200];
    size_t const used = strlen(recorder_pending);
    recorder_format(recorder_pending + used, sizeof recorder_pending - used, argument ? "%s %s\n" : "%s\n",
                    function, argument);
    if (!recorder_directory[0])
        return;
    recorder_path(path, sizeof path, "calls.log");
    FILE* const file = fopen(path, "a");
    if (!file)
        return;
    fputs(recorder_pending, file);
    recorder_pending[0] = '\0';
    fclose(file);
}

/* Writes down the companion that the linker found by $ORIGIN, and whether the directory that the module
 * believes to be its own holds one. */
static void recorder_companion(void) {
#ifdef TEST_COMPANION
    extern char const* companion_name(void);
    char path[4200];
    Dl_info own;
    FILE* beside = NULL;
    if (dladdr(recorder_pending, &own)) {
        recorder_format(path, sizeof path, "%s", own.dli_fname);
        *(strrchr(path, '/') ? strrchr(path, '/') : path) = '\0';
        recorder_format(path + strlen(path), sizeof path - strlen(path), "/test_companion.so");
        beside = fopen(path, "r");
    }
    recorder_call("companion", companion_name());
    recorder_call("directory", beside ? "its own" : "not its own");
    if (beside)
        fclose(beside);
#endif
}

#endif
