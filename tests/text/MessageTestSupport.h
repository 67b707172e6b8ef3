// Shared helpers of the message tests: a centre that records its reports.
#pragma once

#include <PlumvaleBaseCore/text/MSG_Text.h>
#include <PlumvaleBaseCore/text/TUMessage.h>

#include <QString>

#include <vector>

extern MSG_Text g_textMadeBeforeApplication;

/// A centre that records every writeLog and interactiveReport call instead of printing.
class RecordingCentre : public TUMessage {
public:
    struct Report {
        char kind;
        QString text;
        QString translated;
        bool important;
    };

    /// With `debug`, debug reports are recorded too.
    explicit RecordingCentre(bool debug = false)
        : TUMessage(QStringLiteral("tests"), debug, true) {}

    void writeLog(char kind, const QString& text, const QString& translated,
                  bool important) override {
        reports.push_back({kind, text, translated, important});
    }
    void interactiveReport(char kind, const QString& translated, bool*) override {
        reports.push_back({kind, QString(), translated, false});
    }

    std::vector<Report> reports;
};

/// Installs a fresh RecordingCentre as the singleton for the lifetime of the guard.
class RecordingInstall {
public:
    explicit RecordingInstall(bool debug = false) : centre(new RecordingCentre(debug)) {
        TUMessage::setInstance(centre);
    }
    ~RecordingInstall() { TUMessage::setInstance(nullptr); } // deletes the centre
    RecordingInstall(const RecordingInstall&) = delete;
    RecordingInstall& operator=(const RecordingInstall&) = delete;

    RecordingCentre* centre;
};
