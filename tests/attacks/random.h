// Chance that can be repeated, and how much of it.
#pragma once

#include <cstdio>
#include <cstdlib>
#include <random>

namespace quillon::test {

/// A count that the environment may set; `usual` otherwise.
inline unsigned countFromEnvironment(char const* name, unsigned usual) {
    char const* const text = std::getenv(name);
    return text ? static_cast<unsigned>(std::strtoul(text, nullptr, 10)) : usual;
}

/// Random numbers, from the seed in TARVIK_SEED or from one of its own, which it prints. One thread.
class Random {
public:
    Random() {
        unsigned const seed = countFromEnvironment("TARVIK_SEED", std::random_device()());
        std::printf("TARVIK_SEED=%u\n", seed);
        m_engine.seed(seed);
    }
    explicit Random(unsigned seed) : m_engine(seed) {}

    /// 0 to `limit` - 1; `limit` is not 0.
    unsigned below(unsigned limit) { return static_cast<unsigned>(m_engine() % limit); }

private:
    std::mt19937 m_engine;
};

} // namespace quillon::test
