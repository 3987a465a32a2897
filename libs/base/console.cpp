#include "base/console.h"

#include "base/assertion.h"
#include "base/exception.h"
#include "base/immortal.h"
#include "base/processexit.h"
#include "base/stringconversion.h"
#include "base/systemlog.h"
#include "base/visibletext.h"

#include <chrono>
#include <csignal>
#include <ctime>
#include <mutex>

namespace quillon {

namespace {

constinit Immortal<gc::Pointer<Console>> g_console;
constinit std::once_flag g_consoleMade;

constexpr unsigned popTimeoutMs = 10000;
constexpr unsigned drainBeforeAbortMs = 1000;
constexpr unsigned joinMs = 2000; // longer than a stream is waited for

/// A text from the network must not be able to forge a line of the log, nor to hide the rest of its own.
String inOneLine(String const& text) {
    return text.replace('\n', ' ').replace('\r', ' ').replace('\0', ' ');
}

/// What is kept of a part of a line until it is printed.
String kept(String const& part) {
    return cutText(part, Console::longestLine).owned();
}

/// A file that may grow no further is a failed write, which the writer hears of, and not the process's end.
/// What the program has decided, or decides later, stands.
void ignoreFileSizeSignal() {
    struct sigaction current {};
    if (sigaction(SIGXFSZ, nullptr, &current) == 0 && current.sa_handler == SIG_DFL)
        signal(SIGXFSZ, SIG_IGN);
}

String timeStamp() {
    using namespace std::chrono;
    auto const now = system_clock::now();
    std::time_t const seconds = system_clock::to_time_t(now);
    auto const ms = duration_cast<milliseconds>(now.time_since_epoch()).count() % 1000;
    std::tm local{};
    localtime_r(&seconds, &local);
    char time[26];
    std::strftime(time, sizeof time, "%d-%m-%y %H:%M:%S", &local);
    return String(time).clone().append(".", toString(static_cast<int>(ms)));
}

void reportAssertion(char const* text) noexcept {
    log(ASSERT, "Assert", String(), text);
    if (Console* const target = Console::instance().get())
        target->drain(drainBeforeAbortMs);
}

} // namespace

gc::Pointer<Console>& console = g_console.value;

gc::Pointer<Console>& Console::instance() {
    // What goes wrong while the console is made cannot be logged: the thread that makes it finds none.
    static constinit thread_local bool making = false;
    if (making)
        return g_console.value;
    std::call_once(g_consoleMade, [] {
        ignoreFileSizeSignal(); // the console's lines go to files, at any time
        reportAssertionsTo(&reportAssertion);
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
    for (std::size_t i = 0; i < m_streams.size(); ++i) {
        m_streams[i].label = labels[i];
        m_streams[i].target = m_standardOutput;
    }
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
    bool const running = m_running.load(std::memory_order_acquire);
    if (m_task.isMyThread() || (!running && join()))
        return print(category, tag, cls, method, text);
    if (!running)
        return;
    Message* const message = m_messages.take();
    message->category = category;
    // The line is printed later: bytes that belong to the caller are copied now.
    message->tag = kept(tag);
    message->text = kept(text);
    message->cls = kept(cls);
    message->method = kept(method);
    m_messages.push(message);
}

void Console::print(LogCategory category, String const& tag, String const& cls, String const& method,
                    String const& text) {
    Stream stream;
    {
        TSynchronize<Mutex> lock(m_streamsMutex);
        stream = m_streams[category];
    }
    String const line = method.empty()
                            ? "[" + tag + "] " + stream.label + " " + cls + ": " + text
                            : "[" + tag + "] " + stream.label + " " + cls + "." + method + " " + text;
    String const body = cutText(visibleText(inOneLine(line)), longestLine);
    TSynchronize<Mutex> lock(m_printing);
    if (stream.target)
        stream.target->write(String(timeStamp() + " " + body + "\n").view());
    native::systemLog(category, body.str());
}

void Console::main() {
    Message message;
    while (m_running.load(std::memory_order_acquire)) {
        if (!m_messages.pop(message, popTimeoutMs))
            continue;
        try {
            handle(message);
        } catch (std::exception const&) {
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
    return m_drained.waitUntil([&] { return m_drainsDone >= mine; }, ms, m_drainMutex);
}

void Console::quit() {
    if (m_running.exchange(false, std::memory_order_acq_rel))
        m_messages.push(m_messages.take());
}

bool Console::join() {
    // Who comes later does not wait again.
    m_givenUp = !m_task.join(m_givenUp ? 0 : joinMs);
    return !m_givenUp;
}

bool Console::quit_and_join() {
    quit();
    return join();
}

bool Console::setStream(LogCategory category, String const& name, String* reason) {
    if (name == "null" || name == "stdout" || name == "stderr") {
        setStream(category, name == "stdout" ? stdout : name == "stderr" ? stderr : nullptr, name);
        return true;
    }
    String refusal;
    std::shared_ptr<LogStream> const opened = LogStream::open(name, refusal);
    if (!opened && reason)
        *reason = refusal;
    TSynchronize<Mutex> lock(m_streamsMutex);
    install(category, opened, opened ? name : String("null"));
    return opened != nullptr;
}

void Console::setStream(LogCategory category, FILE* file, String const& name) {
    TSynchronize<Mutex> lock(m_streamsMutex);
    install(category, file ? streamOf(file) : nullptr, name);
}

std::shared_ptr<LogStream> Console::streamOf(FILE* file) const {
    if (file == stdout)
        return m_standardOutput;
    for (Stream const& stream : m_streams)
        if (stream.target && stream.target->file() == file)
            return stream.target;
    return std::make_shared<LogStream>(file);
}

void Console::install(LogCategory category, std::shared_ptr<LogStream> target, String const& name) {
    Stream& stream = m_streams[category];
    std::shared_ptr<LogStream> const old = std::exchange(stream.target, std::move(target));
    stream.name = name.owned();
    if (!old || old == stream.target || old->file() == stdout || old->file() == stderr)
        return;
    for (Stream& other : m_streams)
        if (other.target == old) {
            other.target = m_standardOutput;
            other.name = "stdout";
        }
}

String Console::getFilename(LogCategory category) const {
    TSynchronize<Mutex> lock(m_streamsMutex);
    return m_streams[category].name;
}

} // namespace quillon
