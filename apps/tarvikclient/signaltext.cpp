#include "tarvikclient/signaltext.h"

#include <pthread.h>
#include <unistd.h>

#include <atomic>
#include <cerrno>
#include <chrono>
#include <cstdint>
#include <ctime>
#include <iterator>

namespace quillon {

namespace {

constinit std::atomic<long> g_secondsEastOfUtc{0};

} // namespace

void SignalText::addCharacter(char character) noexcept {
    if (m_length < std::size(m_bytes))
        m_bytes[m_length++] = character;
}

SignalText& SignalText::add(char const* text) noexcept {
    while (*text)
        addCharacter(*text++);
    return *this;
}

void SignalText::addDigits(unsigned long number, unsigned base, unsigned digits) noexcept {
    char reversed[64];
    unsigned count = 0;
    for (unsigned long left = number; left != 0 || count < digits; left /= base)
        reversed[count++] = "0123456789abcdef"[left % base];
    while (count > 0)
        addCharacter(reversed[--count]);
}

SignalText& SignalText::addNumber(unsigned long number, unsigned digits) noexcept {
    addDigits(number, 10, digits);
    return *this;
}

SignalText& SignalText::addThread() noexcept {
    add("0x");
    addDigits((std::uintptr_t)pthread_self(), 16, 1); // a number on one system, a pointer on another
    return *this;
}

SignalText& SignalText::addLogTime() noexcept {
    using namespace std::chrono;
    timespec now{};
    clock_gettime(CLOCK_REALTIME, &now);
    sys_seconds const local{seconds(now.tv_sec + g_secondsEastOfUtc)};
    auto const day = floor<days>(local);
    year_month_day const date(day); // arithmetic, and nothing else
    hh_mm_ss const time(local - day);
    addNumber(static_cast<unsigned>(date.day()), 2).add("-");
    addNumber(static_cast<unsigned>(date.month()), 2).add("-");
    addNumber(static_cast<unsigned>(static_cast<int>(date.year()) % 100), 2).add(" ");
    addNumber(static_cast<unsigned long>(time.hours().count()), 2).add(":");
    addNumber(static_cast<unsigned long>(time.minutes().count()), 2).add(":");
    addNumber(static_cast<unsigned long>(time.seconds().count()), 2).add(".");
    return addNumber(static_cast<unsigned long>(now.tv_nsec / 1000000));
}

void SignalText::writeTo(int descriptor) const noexcept {
    std::size_t done = 0;
    while (done < m_length) {
        ssize_t const written = ::write(descriptor, m_bytes + done, m_length - done);
        if (written < 0 && errno != EINTR)
            return;
        done += written < 0 ? 0 : static_cast<std::size_t>(written);
    }
}

void SignalText::rememberTimeZone() noexcept {
    std::time_t const now = std::time(nullptr);
    std::tm local{};
    if (localtime_r(&now, &local))
        g_secondsEastOfUtc = local.tm_gmtoff;
}

} // namespace quillon
