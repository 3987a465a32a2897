/* A file in which a test module writes down the calls that it receives. */
#ifndef TEST_MODULES_RECORDER_H
#define TEST_MODULES_RECORDER_H

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

#endif
