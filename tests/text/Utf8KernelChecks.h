// Test helper: checks the whole-string UTF-8 kernels of one build against the buffer routines.
#pragma once

#include <PlumvaleBaseCore/text/ConvertUTF.h>

#include "text/Utf8Kernels.h"

#include <gtest/gtest.h>

#include <random>
#include <vector>

namespace {

using Units = std::vector<unsigned short>;

/// Random text of a given character mix: ASCII runs, 2- and 3-byte units, pairs, and
/// surrogates that are lone or cut at any place.
Units randomUnits(std::mt19937& rng, std::size_t n, unsigned mix) {
    Units u;
    while (u.size() < n) {
        switch (rng() % (mix + 1)) {
        case 0:
            u.push_back(static_cast<unsigned short>('a' + rng() % 26));
            break;
        case 1:
            u.push_back(static_cast<unsigned short>(0x80 + rng() % 0x780));
            break;
        case 2:
            u.push_back(static_cast<unsigned short>(0x800 + rng() % 0xD000));
            break;
        case 3:
            u.push_back(static_cast<unsigned short>(0xD800 + rng() % 0x400));
            u.push_back(static_cast<unsigned short>(0xDC00 + rng() % 0x400));
            break;
        case 4:
            u.push_back(static_cast<unsigned short>(0xE000 + rng() % 0x2000));
            break;
        default:
            u.push_back(static_cast<unsigned short>(0xD800 + rng() % 0x800));
            break;
        }
    }
    u.resize(n);
    return u;
}

std::string referenceEncode(const Units& u) {
    std::string out(u.size() * 3 + 1, '\0');
    const unsigned short* s = u.data();
    auto* t = reinterpret_cast<unsigned char*>(out.data());
    ConvertUTF16toUTF8(&s, s + u.size(), &t, t + out.size());
    out.resize(std::size_t(t - reinterpret_cast<unsigned char*>(out.data())));
    return out;
}

Units referenceDecode(const std::string& bytes) {
    Units out(bytes.size() + 1);
    const auto* s = reinterpret_cast<const unsigned char*>(bytes.data());
    unsigned short* t = out.data();
    ConvertUTF8toUTF16(&s, s + bytes.size(), &t, out.data() + out.size());
    out.resize(std::size_t(t - out.data()));
    return out;
}

/// encodeSpan called repeatedly with `room` bytes a call, as the chunked caller does.
std::string kernelEncode(const Units& u, std::size_t room) {
    std::vector<unsigned char> chunk(room + kEncodeMaxStep);
    std::string out;
    std::size_t i = 0;
    while (i < u.size()) {
        const std::size_t produced = encodeSpan(u.data(), u.size(), i, chunk.data(), room);
        out.append(reinterpret_cast<const char*>(chunk.data()), produced);
    }
    return out;
}

void checkKernelsAgainstBufferRoutines() {
    std::mt19937 rng(20261121);
    for (int round = 0; round < 4000; ++round) {
        const std::size_t n = round < 3000 ? rng() % 120 : 1000 + rng() % 9000;
        const unsigned mix = rng() % 6;
        const Units units = randomUnits(rng, n, mix);
        const std::string expected = referenceEncode(units);
        const std::size_t room = rng() % 2 ? 1 + rng() % 64 : 8192;
        ASSERT_EQ(kernelEncode(units, room), expected) << "round " << round << " mix " << mix;

        // Decoding: valid text, and the same bytes with random damage.
        std::string bytes = expected;
        if (round % 2 && !bytes.empty())
            for (int k = 0; k < 3; ++k)
                bytes[rng() % bytes.size()] = static_cast<char>(1 + rng() % 255);
        Units decoded(bytes.size());
        decoded.resize(decodeUtf8(reinterpret_cast<const unsigned char*>(bytes.data()),
                                  bytes.size(), decoded.data()));
        ASSERT_EQ(decoded, referenceDecode(bytes)) << "round " << round;
    }
}

} // namespace
