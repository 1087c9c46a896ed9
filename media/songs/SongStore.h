// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "SongRecord.h"

namespace lantern {

// What came of an attempt to read or write the records.
enum class StoreOutcome {
    Done,
    Later,        // it may go well in a moment: another program holds the file, the disk is full
    Damaged,      // the file has been put aside: all that is known is to be written anew
    ReadOnly,     // it may be read, and never written
    NewerVersion, // the file belongs to a later version of the program, and stays as it is
    Unusable,     // no such file can be made there
};

// What is to be written at one go: first all that goes, then all that is new. An empty record is
// taken away.
struct SongChanges {
    bool forgetAll = false;
    SongRecords records;

    bool IsEmpty() const { return !forgetAll && records.isEmpty(); }
};

// Where the records lie between two runs. It may take any time; one thread at a time uses it.
class SongStore {
public:
    virtual ~SongStore() = default;

    // Adds what is there, of a damaged file what can be read. Records that make no sense are left
    // out.
    virtual StoreOutcome Read(SongRecords& records) = 0;
    // All of the changes or none of them.
    virtual StoreOutcome Write(const SongChanges& changes) = 0;
};

} // namespace lantern
