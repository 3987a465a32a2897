#include "base/console.h"

#include "base/exception.h"
#include "base/immortal.h"
#include "base/processexit.h"
#include "base/systemlog.h"

#include <sys/utsname.h>

#include <chrono>
#include <ctime>
#include <mutex>

namespace quillon {

namespace {

constinit Immortal<gc::Pointer<Console>> g_console;
constinit std::once_flag g_consoleMade;

constexpr unsigned popTimeoutMs = 10000;

bool isStandard(FILE* file) {
    return file == stdout || file == stderr;
}

/// A text from the network must not be able to forge a line of the log, nor to hide the rest of its own.
String inOneLine(String const& text) {
    return text.replace('\n', ' ').replace('\r', ' ').replace('\0', ' ');
}

FILE* computeStream(String const& name) {
    if (name == "null")
        return nullptr;
    if (name == "stdout")
        return stdout;
    if (name == "stderr")
        return stderr;
    return std::fopen(name.str(), "we");
}

} // namespace

gc::Pointer<Console>& console = g_console.value;

gc::Pointer<Console>& Console::instance() {
    // What goes wrong while the console is made cannot be logged: the thread that makes it finds none.
    static constinit thread_local bool making = false;
    if (making)
        return g_console.value;
    std::call_once(g_consoleMade, [] {
        making = true;
        g_console.value = gc::Pointer<Console>(new Console);
        making = false;
        arrangeProcessExit();
    });
    return g_console.value;
}

namespace {
// Programs that never log early have their console before main() all the same.
[[maybe_unused]] gc::Pointer<Console>& g_madeBeforeMain = Console::instance();
} // namespace

Console::Console()
    : m_messages(&Message::create), m_task("console", *this, &Console::main, Thread::PRIORITY_NORMAL, false) {
    static constexpr char const* labels[] = {"TRACE", "DEBUG", "ERROR", "ASSERT"};
    for (std::size_t i = 0; i < m_streams.size(); ++i)
        m_streams[i].label = labels[i];
    m_task.run(true);
}

Console::~Console() {
    quit_and_join();
}

void Console::Message::takeFrom(Message& other) {
    category = other.category;
    tag = std::move(other.tag);
    cls = std::move(other.cls);
    method = std::move(other.method);
    text = std::move(other.text);
    marksDrain = std::exchange(other.marksDrain, false);
}

void Console::log(LogCategory category, String const& cls, String const& method, String const& text) {
    log(category, Thread::getMyIdString(), cls, method, text);
}

void Console::log(LogCategory category, String const& cls, int number, String const& text) {
    log(category, Thread::getMyIdString(), cls, number, text);
}

void Console::log(LogCategory category, String const& tag, String const& cls, int number,
                  String const& text) {
    log(category, tag, cls, String(), toString(number) + " " + text);
}

void Console::log(LogCategory category, String const& tag, String const& cls, String const& method,
                  String const& text) {
    if (!m_running.load(std::memory_order_acquire) || m_task.isMyThread()) {
        print(category, tag, cls, method, text);
        return;
    }
    Message* const message = m_messages.take();
    message->category = category;
    // The line is printed later: bytes that belong to the caller are copied now.
    message->tag = tag.owned();
    message->text = text.owned();
    message->cls = cls.owned();
    message->method = method.owned();
    m_messages.push(message);
}

void Console::print(LogCategory category, String const& tag, String const& cls, String const& method,
                    String const& text) {
    TSynchronize<Mutex> lock(m_streamsMutex);
    Stream const& stream = m_streams[category];
    String const line = method.empty()
                            ? "[" + tag + "] " + stream.label + " " + cls + ": " + text
                            : "[" + tag + "] " + stream.label + " " + cls + "." + method + " " + text;
    String const body = inOneLine(m_home.empty() ? line : line.replace(m_home, "~/"));
    if (stream.file) {
        using namespace std::chrono;
        auto const now = system_clock::now();
        std::time_t const seconds = system_clock::to_time_t(now);
        auto const ms = duration_cast<milliseconds>(now.time_since_epoch()).count() % 1000;
        std::tm local{};
        localtime_r(&seconds, &local);
        char time[26];
        std::strftime(time, sizeof time, "%d-%m-%y %H:%M:%S", &local);
        // Several categories may hold handles of their own on one file.
        std::fseek(stream.file, 0, SEEK_END);
        std::fprintf(stream.file, "%s.%d %s\n", time, static_cast<int>(ms), body.str());
        std::fflush(stream.file);
    }
    native::systemLog(category, body.str());
}

void Console::main() {
    Message message;
    while (m_running.load(std::memory_order_acquire)) {
        if (!m_messages.pop(message, popTimeoutMs))
            continue;
        try {
            handle(message);
        } catch (Exception const&) {
            // A line that cannot be printed is lost; the others are not.
        }
    }
}

void Console::handle(Message const& message) {
    if (message.marksDrain) {
        TSynchronize<Mutex> lock(m_drainMutex);
        ++m_drainsDone;
        m_drained.broadcast();
    } else if (!message.isEmpty()) {
        print(message.category, message.tag, message.cls, message.method, message.text);
    }
}

bool Console::drain(unsigned ms) {
    if (!m_running.load(std::memory_order_acquire) || m_task.isMyThread())
        return true;
    TSynchronize<Mutex> lock(m_drainMutex);
    unsigned const mine = ++m_drainsAsked;
    Message* const marker = m_messages.take();
    marker->marksDrain = true;
    m_messages.push(marker);
    auto const deadline = std::chrono::steady_clock::now() + std::chrono::milliseconds(ms);
    while (m_drainsDone < mine) {
        auto const left = deadline - std::chrono::steady_clock::now();
        if (left.count() <= 0)
            return false;
        m_drained.wait(
            static_cast<unsigned>(std::chrono::duration_cast<std::chrono::milliseconds>(left).count()) + 1,
            m_drainMutex);
    }
    return true;
}

void Console::quit() {
    if (m_running.exchange(false, std::memory_order_acq_rel))
        m_messages.push(m_messages.take());
}

void Console::join() {
    m_task.join(static_cast<unsigned long>(-1));
}

void Console::quit_and_join() {
    quit();
    join();
}

void Console::setStream(LogCategory category, String const& name) {
    setStream(category, computeStream(name), name);
}

void Console::setStream(LogCategory category, FILE* file, String const& name) {
    TSynchronize<Mutex> lock(m_streamsMutex);
    Stream& target = m_streams[category];
    FILE* const old = target.file;
    if (old && !isStandard(old) && old != file) {
        for (Stream& other : m_streams)
            if (&other != &target && other.file == old) {
                other.file = stdout;
                other.name = "stdout";
            }
        std::fclose(old);
    }
    target.file = file;
    target.name = name.owned();
}

void Console::setHome(String const& directory) {
    TSynchronize<Mutex> lock(m_streamsMutex);
    m_home = directory.empty() ? String() : String(directory + "/");
}

String Console::getFilename(LogCategory category) const {
    TSynchronize<Mutex> lock(m_streamsMutex);
    return m_streams[category].name;
}

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
