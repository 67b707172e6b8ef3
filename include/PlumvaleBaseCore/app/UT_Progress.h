// UT_Progress and UT_DoubleProgress: the progress displays that long operations report to.
#pragma once

#include <PlumvaleBaseCore/PlumvaleBaseCore_export.h>

#include <QString>

/// A progress display implemented by an application (a dialog, a status bar, a log).
/// Operations call start(), then step() as they go, and finish() at the end, whether they
/// complete or not. Called on the thread that owns the display.
class PLUMVALE_EXPORT UT_Progress {
public:
    virtual ~UT_Progress();
    /// A new operation named `title` with `total` steps (0 when the total is unknown).
    virtual void start(const QString& title, int total) = 0;
    /// `done` steps out of the total are complete. Returns false when the user asked to
    /// stop: the operation then ends as soon as it safely can.
    virtual bool step(int done) = 0;
    /// Replaces the line describing the current step.
    virtual void setText(const QString& text) = 0;
    /// Whether the user asked to stop.
    virtual bool isCancelled() const = 0;
    /// The operation is over.
    virtual void finish() = 0;
};

/// A two-level progress display: an outer count of items, each with its own inner count
/// (files of a batch, frames of each file). Returns and threads as for UT_Progress.
class PLUMVALE_EXPORT UT_DoubleProgress {
public:
    virtual ~UT_DoubleProgress();
    /// The outer count: `total` items.
    virtual void startOuter(int total) = 0;
    /// A new item, `title`, with `total` inner steps (0 when unknown).
    virtual void startInner(const QString& title, int total) = 0;
    /// `done` items are complete; false when the user asked to stop.
    virtual bool stepOuter(int done) = 0;
    /// `done` steps of the current item are complete; false when the user asked to stop.
    virtual bool stepInner(int done) = 0;
};
