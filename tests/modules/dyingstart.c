/* A plug-in's DllStart2 that ends the process, in the way that the environment names. */
#include <pthread.h>
#include <signal.h>
#include <stdlib.h>
#include <string.h>
#include <tarvik/module.h>
#include <unistd.h>

static int volatile zero;

static int deeper(int depth) {
    char volatile room[4096];
    room[0] = (char)depth;
    return depth < 0 ? 0 : deeper(depth + 1) + room[0];
}

static void* on_own_thread(void* unused) {
    *(int volatile*)unused = 1;
    return NULL;
}

static int volatile handled;

static void repair(int number) {
    (void)number;
    handled = 1;
}

void DllStart2(void* instance) {
    char const* const way = getenv("TEST_DEATH");
    pthread_t thread;
    (void)instance;
    if (!way)
        return;
    if (strcmp(way, "segv") == 0)
        *(int volatile*)(size_t)zero = 1;
    else if (strcmp(way, "fpe") == 0)
        zero = 7 / zero;
    else if (strcmp(way, "abort") == 0)
        abort();
    else if (strcmp(way, "overflow") == 0)
        deeper(zero);
    else if (strcmp(way, "thread") == 0 && pthread_create(&thread, NULL, &on_own_thread, NULL) == 0)
        pthread_join(thread, NULL);
    else if (strcmp(way, "exit") == 0)
        exit(3);
    else if (strcmp(way, "_exit") == 0)
        _exit(3);
    else if (strcmp(way, "kill") == 0)
        kill(getpid(), SIGKILL);
    else if (strcmp(way, "fork") == 0 && fork() == 0)
        exit(0);
    else if (strcmp(way, "handles") == 0) {
        signal(SIGSEGV, &repair);
        raise(SIGSEGV);
        if (!handled)
            _exit(4);
    }
}
