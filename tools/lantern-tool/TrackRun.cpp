// SPDX-License-Identifier: GPL-3.0-or-later
#include "TrackRun.h"

#include "ErrorLine.h"
#include "ProgressBar.h"
#include "TrackList.h"

#include <algorithm>
#include <atomic>
#include <condition_variable>
#include <deque>
#include <map>
#include <mutex>
#include <new>
#include <system_error>
#include <thread>
#include <utility>

namespace lantern::tool {
namespace {

using namespace std::chrono_literals;

TrackResult Done(TrackCommand& command, const WantedTrack& track, const TellProgress& tell)
{
    try {
        return command.DoTrack(track, tell);
    } catch (const std::bad_alloc&) {
        return command.Failed(track, QStringLiteral("Out of memory"));
    }
}

// Prints results, and gathers the exit code.
class Printer {
public:
    Printer(TrackCommand& command, ProgressBar& bar) : m_command(command), m_bar(bar) {}

    void Error(const QString& error, int code)
    {
        m_bar.Hide();
        PrintError(error);
        m_exitCode = std::max(m_exitCode, code);
    }
    void Text(const QByteArray& text)
    {
        if (text.isEmpty() || !m_isGood)
            return;
        m_bar.Hide();
        const QString error = PrintText(text);
        m_isGood = error.isEmpty();
        if (!m_isGood)
            Error(error, m_command.FailureCode());
    }
    void Result(const TrackResult& result)
    {
        m_exitCode = std::max(m_exitCode, result.exitCode);
        Text(m_command.Next(result));
        if (!result.error.isEmpty())
            Error(result.error, result.exitCode);
    }

    // Nobody hears what would come.
    bool IsDeaf() const { return !m_isGood; }
    int ExitCode() const { return m_exitCode; }

private:
    TrackCommand& m_command;
    ProgressBar& m_bar;
    bool m_isGood = true;
    int m_exitCode = 0;
};

// Several threads at the tracks of a list, of which none goes far ahead of what is printed: so what
// waits to be printed stays little.
class Crew {
public:
    Crew(TrackCommand& command, const std::vector<WantedTrack>& tracks, int size)
        : m_command(command), m_tracks(tracks), m_parts(static_cast<std::size_t>(size)),
          m_mostAhead(static_cast<std::size_t>(size) * 16)
    {
        for (std::atomic<double>& part : m_parts) {
            try {
                m_threads.emplace_back([this, &part] { Work(part); });
            } catch (const std::system_error&) {
                break; // those that there are do it
            }
        }
    }
    ~Crew()
    {
        {
            const std::lock_guard lock(m_mutex);
            m_next = m_tracks.size();
        }
        m_mayGoOn.notify_all();
        for (std::thread& thread : m_threads)
            thread.join();
    }
    Crew(const Crew&) = delete;
    Crew& operator=(const Crew&) = delete;

    bool IsEmpty() const { return m_threads.empty(); }

    // The result of the track after the last one that was taken.
    TrackResult TakeNext(ProgressBar& bar)
    {
        std::unique_lock lock(m_mutex);
        while (!m_results.contains(m_taken)) {
            m_isThere.wait_for(lock, 100ms);
            bar.Show(TracksDone());
        }
        TrackResult result = std::move(m_results.extract(m_taken).mapped());
        ++m_taken;
        lock.unlock();
        m_mayGoOn.notify_all();
        return result;
    }

private:
    double TracksDone() const
    {
        double done = static_cast<double>(m_taken + m_results.size());
        for (const std::atomic<double>& part : m_parts)
            done += part;
        return done;
    }

    void Work(std::atomic<double>& part)
    {
        std::unique_lock lock(m_mutex);
        for (;;) {
            m_mayGoOn.wait(
                lock, [&] { return m_next >= m_tracks.size() || m_next < m_taken + m_mostAhead; });
            if (m_next >= m_tracks.size())
                return;
            const std::size_t mine = m_next++;
            lock.unlock();
            TrackResult result = Done(m_command, m_tracks[mine], [&](double told) { part = told; });
            lock.lock();
            part = 0;
            m_results.emplace(mine, std::move(result));
            m_isThere.notify_one();
        }
    }

    TrackCommand& m_command;
    const std::vector<WantedTrack>& m_tracks;
    std::deque<std::atomic<double>> m_parts; // of the track that each thread is at
    const std::size_t m_mostAhead;

    std::mutex m_mutex;
    std::condition_variable m_isThere;
    std::condition_variable m_mayGoOn;
    std::map<std::size_t, TrackResult> m_results;
    std::size_t m_next = 0;  // to be done
    std::size_t m_taken = 0; // all before it are printed
    std::vector<std::thread> m_threads;
};

void DoTracks(TrackCommand& command, const std::vector<WantedTrack>& tracks, int jobs,
              Printer& printer, ProgressBar& bar)
{
    const int size =
        static_cast<int>(std::min<std::size_t>(static_cast<std::size_t>(jobs), tracks.size()));
    if (size > 1) {
        Crew crew(command, tracks, size);
        if (!crew.IsEmpty()) {
            for (std::size_t i = 0; i < tracks.size() && !printer.IsDeaf(); ++i)
                printer.Result(crew.TakeNext(bar));
            return;
        }
    }
    for (std::size_t i = 0; i < tracks.size() && !printer.IsDeaf(); ++i) {
        const auto tell = [&](double part) { bar.Show(static_cast<double>(i) + part); };
        tell(0);
        printer.Result(Done(command, tracks[i], tell));
    }
}

} // namespace

int RunTracks(TrackCommand& command, const QStringList& words, const SharedOptions& options)
{
    const TrackList list = ListTracks(words, options.recursive);
    ProgressBar bar(!options.quiet && ProgressBar::IsOnTerminal(), list.tracks.size());
    Printer printer(command, bar);
    for (const QString& error : list.errors)
        printer.Error(error, command.FailureCode());
    printer.Text(command.Begin(options.several));
    const int processors = static_cast<int>(std::max(1U, std::thread::hardware_concurrency()));
    DoTracks(command, list.tracks, options.jobs > 0 ? options.jobs : processors, printer, bar);
    printer.Text(command.End());
    return printer.ExitCode();
}

} // namespace lantern::tool
