/* A plug-in in C that writes down every call, secrets included, and plays back status lines: script.txt in
 * the plug-in directory, one line for each poll, the last one again and again. */
#include "recorder.h"

#include <stdlib.h>
#include <tarvik/module.h>

static int the_instance;
static char const* next_line = "[{\"code\":\"8\",\"reason\":\"1\"}]"; /* asks for the end */
static int texts_out;

void* DllCreatePluginFrontal(void) {
    recorder_directory[0] = recorder_pending[0] = '\0';
    recorder_call(__func__, NULL);
    recorder_companion();
#ifdef TEST_NULL_INSTANCE
    return NULL;
#else
    return &the_instance;
#endif
}

void DllSetPluginDir2(void* instance, char const* directory) {
    (void)instance;
    recorder_call(__func__, directory);
    recorder_format(recorder_directory, sizeof recorder_directory, "%s", directory);
}

__attribute__((destructor)) static void unload(void) {
    recorder_call(__func__, NULL);
}

#define SETTER(name)                                                                                         \
    void name(void* instance, char const* value) {                                                           \
        recorder_call(instance == &the_instance ? #name : #name " of another instance", value);              \
    }

SETTER(DllSetDllVersion2)
SETTER(DllSetLogin2)
SETTER(DllSetOrganization2)
SETTER(DllSetHostname2)
SETTER(DllSetServer2)
SETTER(DllSetSuffix2)
SETTER(DllSetTicket2)
SETTER(DllSetSessionId2)
SETTER(DllSetCertDirectory2)
SETTER(DllSetCertFileName2)
SETTER(DllSetCaFileName2)
SETTER(DllSetCertPassword2)
SETTER(DllSetProxy2)

void DllSetDownloadDelegate2(void* instance, TarvikDownloadDelegate delegate) {
    char url[] = "/delegate/file";
    char path[4200];
    (void)instance;
    recorder_path(path, sizeof path, "fetched/by-delegate");
    recorder_call(__func__, delegate && delegate(url, path) ? "fetched" : "refused");
}

static char* out(char const* text, size_t length) {
    char* const copy = calloc(length + 1, 1);
    memcpy(copy, text, length);
    ++texts_out;
    return copy;
}

char* DllGetLogs2(void* instance) {
    (void)instance;
    recorder_call(__func__, NULL);
    return out("", 0);
}

int DllExecute2(void* instance, char const* first, char const* second, char const* third) {
    (void)instance;
    recorder_call(__func__, first);
    return (int)(strlen(first) + strlen(second) + strlen(third));
}

#ifndef TEST_OWN_START
void DllStart2(void* instance) {
    static char script[65536];
    char path[4200];
    size_t length = 0;
    (void)instance;
    recorder_call(__func__, NULL);
    recorder_path(path, sizeof path, "script.txt");
    FILE* const file = fopen(path, "r");
    if (file) {
        length = fread(script, 1, sizeof script - 1, file);
        fclose(file);
    }
    script[length] = '\0';
    next_line = length ? script : "[]";
}
#endif

char* DllGetErrors2(void* instance) {
    size_t const length = strcspn(next_line, "\n");
    char* const line = out(next_line, length);
    (void)instance;
    recorder_call(__func__, line);
    if (next_line[length] == '\n' && next_line[length + 1])
        next_line += length + 1;
    return line;
}

void DllStop2(void* instance) {
    (void)instance;
    recorder_call(__func__, texts_out == 0 ? "all texts returned" : "texts not returned");
}

void DllReleaseStr(char* text) {
    --texts_out;
    free(text);
}

#ifndef TEST_MISSING_EXPORT
int LaunchSafeResource(void* instance, int id, char const* text) {
    char argument[256];
    (void)instance;
    recorder_format(argument, sizeof argument, "%d %s", id, text);
    recorder_call(__func__, argument);
    return id;
}
#endif
