// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QByteArray>
#include <QString>

#include <any>
#include <functional>

namespace lantern::tool {

// What every command takes.
struct SharedOptions {
    bool recursive = false; // folders with the folders in them
    bool quiet = false;     // no progress bar
    bool force = false;     // outputs that exist are replaced
    bool json = false;
    int jobs = 0;         // tracks at a time; 0: as many as there are processors
    bool several = false; // tracks, or a folder of them
};

// A track that is to be worked on.
struct WantedTrack {
    QString path;
    // Where it was found below the folder that was given, with a slash at its end.
    QString folder = {};
    // One of several, or found in a folder: the outputs then need a name for each.
    bool isOneOfMany = false;
};

struct TrackResult {
    int exitCode = 0;
    QByteArray output; // for standard output
    QString error;     // why there is none, or less; empty on success
    std::any found;    // what the command wants to know of it at the end

    static TrackResult Failure(const QString& error, int exitCode = 1)
    {
        return {.exitCode = exitCode, .output = {}, .error = error, .found = {}};
    }
    // Of what tells an error, empty on success.
    static TrackResult Of(const QString& error)
    {
        return error.isEmpty() ? TrackResult() : Failure(error);
    }
};

// How far the work on one track has come, from 0 to 1. Called from the thread that does it.
using TellProgress = std::function<void(double)>;

// A command with its options. It does one track after the other; what it prints comes in the order
// in which they were given, whatever was done first.
class TrackCommand {
public:
    virtual ~TrackCommand() = default;

    // On several threads at a time, once for each track.
    virtual TrackResult DoTrack(const WantedTrack& track, const TellProgress& tell) = 0;

    // What there is to tell where a track could not be done, as there was no memory for it.
    virtual TrackResult Failed(const WantedTrack& track, const QString& error)
    {
        return TrackResult::Failure(error + QStringLiteral(": ") + track.path);
    }

    // These come on the main thread. The first is called before any track is done, with whether
    // there may be several; the second for each result, in order; the last when all are done. What
    // they give goes to standard output.
    virtual QByteArray Begin(bool /*several*/) { return {}; }
    virtual QByteArray Next(const TrackResult& result) { return result.output; }
    virtual QByteArray End() { return {}; }

    // The exit code where the command line is bad, or a folder can't be read.
    virtual int FailureCode() const { return 1; }
};

} // namespace lantern::tool
