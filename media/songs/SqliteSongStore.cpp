// SPDX-License-Identifier: GPL-3.0-or-later
#include "SqliteSongStore.h"

#include "PathText.h"

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <cmath>
#include <filesystem>
#include <sqlite3.h>
#include <sys/stat.h>
#include <system_error>

namespace lantern {
namespace {

using Clock = std::chrono::steady_clock;

constexpr int kVersion = 1;
constexpr int kLongestValue = 1 << 16;
// No singer has more, and they cost some megabytes.
constexpr int kMostRecords = 200'000;
// A file may be made to keep a query busy for ever.
constexpr auto kTimeForAll = std::chrono::seconds(10);
constexpr int kStepsBetweenLooks = 10'000;

constexpr const char* kMakeTable =
    "CREATE TABLE song(id BLOB PRIMARY KEY NOT NULL, keypitch INTEGER NOT NULL, "
    "speed REAL NOT NULL, sound BLOB, lufs REAL, truepeak REAL) WITHOUT ROWID;"
    "PRAGMA user_version=1";

struct Closer {
    void operator()(sqlite3* file) const { sqlite3_close_v2(file); }
    void operator()(sqlite3_stmt* statement) const { sqlite3_finalize(statement); }
};
using Statement = std::unique_ptr<sqlite3_stmt, Closer>;

bool IsDamage(int code)
{
    return code == SQLITE_CORRUPT || code == SQLITE_NOTADB || code == SQLITE_MISMATCH ||
           code == SQLITE_ERROR || code == SQLITE_SCHEMA || code == SQLITE_CONSTRAINT ||
           code == SQLITE_TOOBIG;
}

StoreOutcome OutcomeOf(int code)
{
    switch (code & 0xFF) {
    case SQLITE_OK:
    case SQLITE_DONE:
    case SQLITE_ROW:
        return StoreOutcome::Done;
    case SQLITE_BUSY:
    case SQLITE_LOCKED:
    case SQLITE_FULL:
    case SQLITE_IOERR:
    case SQLITE_NOMEM:
        return StoreOutcome::Later;
    case SQLITE_READONLY:
        return StoreOutcome::ReadOnly;
    default:
        return StoreOutcome::Unusable;
    }
}

bool IsWithin(double value, double lowest, double highest)
{
    return value >= lowest && value <= highest; // not what is no number
}

// One opening of the file. Every step gives SQLite's code, and after a failure so do the next.
class Connection {
public:
    Connection(const QByteArray& path, int flags) : m_deadline(Clock::now() + kTimeForAll)
    {
        sqlite3* file = nullptr;
        m_code = sqlite3_open_v2(path.constData(), &file, flags | SQLITE_OPEN_NOMUTEX, nullptr);
        m_file.reset(file);
        if (!Works())
            return;
        sqlite3_busy_timeout(file, 0);
        sqlite3_limit(file, SQLITE_LIMIT_LENGTH, kLongestValue);
        sqlite3_db_config(file, SQLITE_DBCONFIG_DEFENSIVE, 1, nullptr);
        sqlite3_db_config(file, SQLITE_DBCONFIG_TRUSTED_SCHEMA, 0, nullptr);
        sqlite3_db_config(file, SQLITE_DBCONFIG_ENABLE_TRIGGER, 0, nullptr);
        sqlite3_db_config(file, SQLITE_DBCONFIG_ENABLE_VIEW, 0, nullptr);
        sqlite3_progress_handler(
            file, kStepsBetweenLooks,
            [](void* self) {
                return Clock::now() > static_cast<Connection*>(self)->m_deadline ? 1 : 0;
            },
            this);
        // A commit is on its way to the disk when it returns, whatever becomes of the program.
        Run("PRAGMA synchronous=NORMAL; PRAGMA cell_size_check=ON");
    }
    Connection(const Connection&) = delete;
    Connection& operator=(const Connection&) = delete;

    int Code() const { return m_code & 0xFF; }
    bool Works() const { return m_code == SQLITE_OK; }

    bool Run(const char* statements)
    {
        if (Works())
            m_code = sqlite3_exec(m_file.get(), statements, nullptr, nullptr, nullptr);
        return Works();
    }

    Statement Prepare(const char* text)
    {
        sqlite3_stmt* statement = nullptr;
        if (Works())
            m_code = sqlite3_prepare_v2(m_file.get(), text, -1, &statement, nullptr);
        return Statement(statement);
    }

    // Whether there is another row.
    bool Step(const Statement& statement)
    {
        if (!Works())
            return false;
        const int code = sqlite3_step(statement.get());
        if (code != SQLITE_ROW && code != SQLITE_DONE)
            m_code = code;
        return code == SQLITE_ROW;
    }

    // Runs a statement that gives no rows, and makes it ready for the next time.
    void Do(const Statement& statement)
    {
        Step(statement);
        sqlite3_reset(statement.get());
    }

    int Number(const char* query)
    {
        const Statement statement = Prepare(query);
        return Step(statement) ? sqlite3_column_int(statement.get(), 0) : 0;
    }

    void Fail(int code) { m_code = code; }

private:
    Clock::time_point m_deadline;
    int m_code = SQLITE_OK;
    std::unique_ptr<sqlite3, Closer> m_file;
};

void Bind(const Statement& statement, int place, const QByteArray& bytes)
{
    sqlite3_bind_blob(statement.get(), place, bytes.constData(), static_cast<int>(bytes.size()),
                      SQLITE_TRANSIENT);
}

QByteArray BytesAt(const Statement& row, int column)
{
    const void* bytes = sqlite3_column_blob(row.get(), column); // before its size is asked
    return {static_cast<const char*>(bytes), sqlite3_column_bytes(row.get(), column)};
}

// Adds the row, if it makes sense.
void TakeRow(const Statement& row, SongRecords& records)
{
    const SongId id = BytesAt(row, 0);
    const double key = sqlite3_column_double(row.get(), 1);
    const double speed = sqlite3_column_double(row.get(), 2);
    if (id.size() != kSongIdSize || !IsWithin(key, -10, 10) || !IsWithin(speed, -90, 90))
        return;
    SongRecord record;
    record.tune = {static_cast<int>(key), static_cast<float>(speed)};
    const KeptLoudness kept = {BytesAt(row, 3), sqlite3_column_double(row.get(), 4),
                               sqlite3_column_double(row.get(), 5)};
    if (kept.sound.size() == kSongIdSize && std::isfinite(kept.lufs) &&
        IsWithin(kept.truePeak, 0, 1e6))
        record.loudness = kept;
    if (!record.IsEmpty())
        records.insert(id, record);
}

class SqliteSongStore final : public SongStore {
public:
    explicit SqliteSongStore(const QString& file) : m_path(NativeFromText(file)) {}

    StoreOutcome Read(SongRecords& records) override
    {
        struct stat status = {};
        if (stat(m_path.constData(), &status) != 0)
            return errno == ENOENT ? StoreOutcome::Done : StoreOutcome::Unusable;
        if (!S_ISREG(status.st_mode))
            return StoreOutcome::Unusable;
        // Written, too, if need be: what a program left half done as it was killed is undone.
        Connection file(m_path, SQLITE_OPEN_READWRITE);
        file.Run("BEGIN");
        const int version = CheckedVersion(file);
        if (version == kVersion) {
            const Statement rows =
                file.Prepare("SELECT id, keypitch, speed, sound, lufs, truepeak FROM song");
            for (int i = 0; i < kMostRecords && file.Step(rows); ++i)
                TakeRow(rows, records);
        }
        return Ended(file, version);
    }

    StoreOutcome Write(const SongChanges& changes) override
    {
        std::error_code error;
        const bool isThere = std::filesystem::exists(m_path.toStdString(), error);
        const auto forgets = [](const SongRecord& record) { return record.IsEmpty(); };
        if (!isThere && !error && std::ranges::all_of(changes.records, forgets))
            return StoreOutcome::Done;
        std::filesystem::create_directories(
            std::filesystem::path(m_path.toStdString()).parent_path(), error);
        Connection file(m_path, SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE);
        file.Run("BEGIN IMMEDIATE");
        const int version = CheckedVersion(file);
        if (version == 0)
            file.Run(kMakeTable);
        if (version <= kVersion) {
            if (changes.forgetAll)
                file.Run("DELETE FROM song");
            WriteRecords(file, changes.records);
            file.Run("COMMIT");
        }
        return Ended(file, version);
    }

private:
    // The version of the format: 0 for an empty file. A file of somebody else's is damage.
    static int CheckedVersion(Connection& file)
    {
        const int version = file.Number("PRAGMA user_version");
        const int tables =
            version > kVersion ? 0 : file.Number("SELECT count(*) FROM sqlite_schema");
        if (version < 0 || (version == 0 && tables != 0))
            file.Fail(SQLITE_NOTADB);
        return version;
    }

    StoreOutcome Ended(const Connection& file, int version) const
    {
        if (file.Works())
            return version > kVersion ? StoreOutcome::NewerVersion : StoreOutcome::Done;
        return IsDamage(file.Code()) ? PutAside() : OutcomeOf(file.Code());
    }

    // The journal of a damaged file goes with it, or it would be played back into the new one.
    StoreOutcome PutAside() const
    {
        const QByteArray aside = m_path + ".damaged";
        std::error_code error;
        std::filesystem::rename(m_path.constData(), aside.constData(), error);
        if (error)
            return StoreOutcome::Unusable;
        for (const char* companion : {"-journal", "-wal", "-shm"})
            std::filesystem::remove((m_path + companion).constData(), error);
        return StoreOutcome::Damaged;
    }

    static void WriteRecords(Connection& file, const SongRecords& records)
    {
        const Statement keep = file.Prepare("INSERT OR REPLACE INTO song VALUES(?,?,?,?,?,?)");
        const Statement forget = file.Prepare("DELETE FROM song WHERE id=?");
        for (auto record = records.begin(); record != records.end() && file.Works(); ++record) {
            const Statement& statement = record->IsEmpty() ? forget : keep;
            sqlite3_clear_bindings(statement.get());
            Bind(statement, 1, record.key());
            if (!record->IsEmpty()) {
                sqlite3_bind_int(statement.get(), 2, record->tune.keyPitch);
                sqlite3_bind_double(statement.get(), 3, static_cast<double>(record->tune.speed));
            }
            if (record->loudness) {
                Bind(statement, 4, record->loudness->sound);
                sqlite3_bind_double(statement.get(), 5, record->loudness->lufs);
                sqlite3_bind_double(statement.get(), 6, record->loudness->truePeak);
            }
            file.Do(statement);
        }
    }

    QByteArray m_path;
};

} // namespace

std::unique_ptr<SongStore> MakeSqliteSongStore(const QString& file)
{
    return std::make_unique<SqliteSongStore>(file);
}

} // namespace lantern
