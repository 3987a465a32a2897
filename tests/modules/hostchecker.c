/* A host checker in C that writes down every call and satisfies every rule. */
#include "recorder.h"

#include <tarvik/module.h>

int InitHostCheckerDll(char const* reserved1, char const* reserved2, char const* directory,
                       char const* hostname, char const* language) {
    char line[4200];
    recorder_pending[0] = '\0';
    recorder_format(recorder_directory, sizeof recorder_directory, "%s", directory);
    recorder_format(line, sizeof line, "[%s] [%s] %s %s", reserved1, reserved2, hostname, language);
    recorder_call(__func__, line);
    recorder_companion();
    return 0;
}

void CloseHostCheckerDll(void) {
    recorder_call(__func__, NULL);
}

char* GetValidRules(char const* request) {
    static char answer[1024];
    recorder_call(__func__, request);
    recorder_format(answer, sizeof answer, "valid: %s", request);
    return answer;
}
