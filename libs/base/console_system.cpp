// The system that the process runs on, as the log and requests name it.
#include "base/console.h"

#include <sys/utsname.h>

namespace quillon {

void Console::infoSystem(bool logIt) {
    utsname system{};
    bool const known = uname(&system) == 0;
    {
        TSynchronize<Mutex> lock(m_osMutex);
        m_osName = known ? String(system.sysname).clone() : String("uname error");
        m_osVersion = known ? String(system.release).clone() : String();
        m_osPatch = known ? String(system.version).clone() : String();
    }
    if (logIt && known)
        log(TRACE, "Console", "infoSystem", getOs() + " " + system.nodename + " " + system.machine);
    else if (logIt)
        log(TRACE, "Console", "infoSystem", "can not read OS informations");
}

String Console::getOsName() {
    {
        TSynchronize<Mutex> lock(m_osMutex);
        if (!m_osName.empty())
            return m_osName;
    }
    infoSystem(false);
    TSynchronize<Mutex> lock(m_osMutex);
    return m_osName;
}

String Console::getOsVersion() {
    getOsName();
    TSynchronize<Mutex> lock(m_osMutex);
    return m_osVersion;
}

String Console::getOsPatch() {
    getOsName();
    TSynchronize<Mutex> lock(m_osMutex);
    return m_osPatch;
}

String Console::getOs() {
    String os = getOsName().clone();
    for (String const& part : {getOsVersion(), getOsPatch()})
        if (!part.empty())
            os.append(' ', part);
    return os;
}

} // namespace quillon
