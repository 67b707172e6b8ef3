// UT_TimeUnits: how the timeline's frame cells are numbered, coloured and labelled.
#pragma once

#include <PlumvaleBaseCore/PlumvaleBaseCore_export.h>

class UT_String;

/// The numbering system of the timeline's cells (counted from 0 here, shown from 1).
///
/// Conventions: one process-wide instance, made on first use with eTimeUnitsFrames and
/// changed on the main thread.
class PLUMVALE_EXPORT UT_TimeUnits {
public:
    /// The numbering systems.
    enum eTimeUnits : int {
        eTimeUnitsPlain = 0,     ///< 1, 2, 3 ... without emphasis
        eTimeUnitsFrames = 1,    ///< every tenth cell coloured and labelled (the default)
        eTimeUnitsFeetFrames = 2 ///< film: 16 frames a foot, colour bands of 8 cells
    };

    virtual ~UT_TimeUnits();
    /// The instance, made on the first call.
    static UT_TimeUnits* GetInstance();

    /// Sets the numbering system.
    void SetNumberingSystem(eTimeUnits units) { m_units = units; }
    /// The numbering system.
    eTimeUnits GetNumberingSystem() const { return m_units; }
    /// 2 colours for frames and feet-and-frames, else 1.
    int GetNbColors() const;
    /// Cells between labels: 16 for feet-and-frames, else 10.
    int GetLabelDelta() const;
    /// Cells between colour changes: 8 for feet-and-frames, else 10.
    int GetColorDelta() const;
    /// Frames: 1 on every tenth cell; feet-and-frames: 1 on the first band of 8 cells and
    /// every other band after it; plain: 0.
    int GetCellColorIndex(int cell) const;
    /// Frames: every tenth cell; feet-and-frames: every sixteenth; plain: none.
    bool ShouldLabelCell(int cell) const;
    /// The label of `cell`: "feet:frames" of cell + 1 for feet-and-frames (the 16th frame
    /// reads 1:0), else the number cell + 1.
    void GetFrameLabel(int cell, UT_String& out) const;

private:
    UT_TimeUnits() = default;
    eTimeUnits m_units = eTimeUnitsFrames;
};
