/// The journal as a session file.
#pragma once

#include "host/serve/Journal.h"

#include <filesystem>
#include <fstream>
#include <string>

namespace host::serve {

enum class Secrets { Kept, BlankedOut };

/// A session file of what the journal holds: inputs that session files know with the outputs that they
/// caused, numbered anew, each input's outputs right behind it. Inputs of other kinds become comments;
/// outputs that belong to no input that is kept are left out.
/// Secrets that are blanked out leave names behind, see `Redactor`.
/// @param timeZone that the session ran in; empty leaves it unsaid
std::string sessionText(const JournalSlice& slice, Secrets secrets, const std::string& timeZone = {});

/// The file of a recording. It is opened before anything runs, so that it fails then if it has to.
class RecordingFile {
public:
    /// @param file empty: nothing is recorded
    /// @throws HostError where the file cannot be written
    RecordingFile(std::filesystem::path file, Secrets usedSecrets);

    /// What the journal has to keep.
    Journal::Limits limits() const;
    /// Writes all that the journal holds, unless nothing is recorded.
    /// @throws HostError where it cannot be written
    void write(const Journal& journal);

private:
    std::filesystem::path name;
    Secrets secrets;
    std::ofstream stream;
};

} // namespace host::serve
