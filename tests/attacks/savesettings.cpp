// savesettings FILE PASSWORD: reads the user's settings, changes the password for the proxy, and saves them.
// What the settings dialog does, for attacks on every system call of it.
#include "tarvikclient/clientlocalconfiguration.h"

#include <cstdio>

int main(int argc, char** argv) {
    using namespace quillon;
    if (argc != 3)
        return 64;
    try {
        ClientLocalConfiguration settings;
        settings.readFromFile(argv[1]);
        settings.setProxyCredentials(Credentials("alice", argv[2], ""));
        settings.save(argv[1]);
        return 0;
    } catch (Exception const& e) {
        std::fprintf(stderr, "savesettings: %s\n", e.toString().str());
        return 1;
    }
}
