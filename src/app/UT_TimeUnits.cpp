// UT_TimeUnits, and the counter behind UT_DynKey.
#include <PlumvaleBaseCore/app/UT_DynKey.h>
#include <PlumvaleBaseCore/app/UT_TimeUnits.h>
#include <PlumvaleBaseCore/text/UT_String.h>

#include <atomic>
#include <memory>
#include <string>

UT_TimeUnits::~UT_TimeUnits() = default;

UT_TimeUnits* UT_TimeUnits::GetInstance() {
    static const std::unique_ptr<UT_TimeUnits> instance(new UT_TimeUnits);
    return instance.get();
}

int UT_TimeUnits::GetNbColors() const {
    return m_units == eTimeUnitsFrames || m_units == eTimeUnitsFeetFrames ? 2 : 1;
}

int UT_TimeUnits::GetLabelDelta() const {
    return m_units == eTimeUnitsFeetFrames ? 16 : 10;
}

int UT_TimeUnits::GetColorDelta() const {
    return m_units == eTimeUnitsFeetFrames ? 8 : 10;
}

int UT_TimeUnits::GetCellColorIndex(int cell) const {
    // 64-bit, so that the last cell of the int range has a successor.
    const long long n = static_cast<long long>(cell) + 1;
    if (m_units == eTimeUnitsFrames) return n % 10 == 0 ? 1 : 0;
    if (m_units == eTimeUnitsFeetFrames) return (cell / 8) % 2 == 0 ? 1 : 0;
    return 0;
}

bool UT_TimeUnits::ShouldLabelCell(int cell) const {
    const long long n = static_cast<long long>(cell) + 1;
    if (m_units == eTimeUnitsFrames) return n % 10 == 0;
    if (m_units == eTimeUnitsFeetFrames) return n % 16 == 0;
    return false;
}

void UT_TimeUnits::GetFrameLabel(int cell, UT_String& out) const {
    const long long n = static_cast<long long>(cell) + 1;
    const std::string label = m_units == eTimeUnitsFeetFrames
                                  ? std::to_string(n / 16) + ":" + std::to_string(n % 16)
                                  : std::to_string(n);
    out = UT_String(label.c_str());
}

UT_DynKey::UT_DynKey() {
    // Atomic only so that misuse from two threads stays defined; keys are meant for one.
    static std::atomic<int> counter{0};
    m_value = counter.fetch_add(1, std::memory_order_relaxed) + 1;
}
