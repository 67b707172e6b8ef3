// Out-of-line TUMaths helpers: angle wrapping, digit test and the 48-bit generator.
#include <PlumvaleBaseCore/numerics/TUMaths.h>

#include <atomic>

namespace {
constexpr double kPi = TUMaths::pi;
constexpr double kTwoPi = 2 * kPi;

/// Past a million turns the subtraction loops would crawl (or, once 2 pi is below the
/// spacing of doubles, never end): bring such angles near the range first.
double reduceHuge(double a) {
    return std::fabs(a) > 1e6 * kTwoPi ? std::fmod(a, kTwoPi) : a;
}
} // namespace

double TUMaths::wrapAngleToMinusPiToPi(double a) {
    if (!std::isfinite(a)) return a;
    a = reduceHuge(a);
    while (a >= kPi)
        a -= kTwoPi;
    while (a < -kPi)
        a += kTwoPi;
    return a;
}

double TUMaths::wrapAngleTo0To2Pi(double a) {
    if (!std::isfinite(a)) return a;
    a = reduceHuge(a);
    while (a >= kTwoPi)
        a -= kTwoPi;
    while (a < 0)
        a += kTwoPi;
    return a;
}

bool TUMaths::isDigit(const std::string* s) {
    if (!s || s->empty()) return false;
    const auto digit = [](char c) { return c >= '0' && c <= '9'; };
    if (s->size() == 1) return digit((*s)[0]);
    return digit((*s)[0]) || ((*s)[0] == '-' && digit((*s)[1]));
}

long TUMaths::lrand48() {
    static std::atomic<std::uint64_t> state{0x1234ABCD330Eull};
    constexpr std::uint64_t mask = (1ull << 48) - 1;
    std::uint64_t current = state.load(std::memory_order_relaxed);
    std::uint64_t next;
    do {
        next = (current * 0x5DEECE66Dull + 0xB) & mask;
    } while (!state.compare_exchange_weak(current, next, std::memory_order_relaxed));
    return static_cast<long>(next >> 17);
}
