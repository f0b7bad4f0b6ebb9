// SPDX-License-Identifier: MIT
// AtomicFile: writes a whole file so that its name always refers to the old content or to the new
// one, even if the process is killed or the medium is pulled out. FileManager writes device files
// with it, a host its output files. All results are 0 or an errno. [any]

#pragma once

#include "OpenFile.h"

#include <cstdint>
#include <string>
#include <string_view>

namespace gps {

class FileSystem;

/// The name under which open() creates the temporary file. Fixed, so that the next write removes
/// what a killed process left, and that a host can tell such a file from data. Short, because the
/// target's own name may be as long as names can be.
inline constexpr char kTemporaryName[] = ".~write.tmp";

/// How many bytes of whole files this process has handed to the system so far, for a host that
/// shows progress. Only FileManager's writes count.
[[nodiscard]] std::uint64_t fileBytesWritten() noexcept;

/// One write. The content goes into a hidden temporary file in the target's folder, which commit()
/// renames. A link at the target is replaced, not followed. The mode of a replaced file is kept if
/// the volume has modes. Destroying the object before commit() discards the write.
///
/// Order of use: one of the two open functions, writes to descriptor(), then commit() or discard().
class AtomicFile {
public:
    explicit AtomicFile(FileSystem& files);
    ~AtomicFile();
    AtomicFile(const AtomicFile&) = delete;
    AtomicFile& operator=(const AtomicFile&) = delete;

    /// Creates the temporary file under a fixed name, after removing one that a killed process left
    /// there. Locks the folder until the end of the write, so that only one write at a time uses
    /// that name. A volume without locks is written without.
    /// @return  EWOULDBLOCK if another write in the folder holds the lock
    [[nodiscard]] int open(const std::string& path);

    /// Creates the temporary file under the first free name of PREFIX0, PREFIX1 and so on, without
    /// locking the folder: any number of writes in one folder may run at a time. The file itself is
    /// locked, so that a program can recognise one that a killed process left.
    /// @param prefix  begins with "." so that the file is hidden
    [[nodiscard]] int openUnlocked(const std::string& path, std::string_view prefix);

    /// The temporary file, open for reading and writing; owned by this object.
    [[nodiscard]] int descriptor() const noexcept { return file_.get(); }

    /// The temporary file's path, for a signal handler that removes it; empty when there is none.
    [[nodiscard]] const std::string& temporaryPath() const noexcept { return temporaryPath_; }

    /// Flushes the temporary file, renames it to the target, and returns when both the content and
    /// the name are on the medium. After a failure before the rename, the old file is unchanged and
    /// the temporary file is removed.
    [[nodiscard]] int commit();

    /// commit(), unless something exists at the target: nothing is replaced then.
    /// @return  EEXIST if something exists there
    [[nodiscard]] int commitNew();

    /// commit() under another name in the same folder; the target is left unchanged.
    [[nodiscard]] int commitAs(const std::string& name);

    /// Whether commit() has renamed the file. If commit() failed nevertheless, the new content is
    /// complete but may be lost if the medium is pulled out.
    [[nodiscard]] bool isRenamed() const noexcept { return isRenamed_; }

    /// Removes the temporary file. Does nothing after a commit() or without an open file.
    void discard();

private:
    [[nodiscard]] int openFolder(const std::string& path);
    [[nodiscard]] int create(std::string name);
    void keepMode();
    [[nodiscard]] int renameTo(const std::string& name);
    [[nodiscard]] int renameToFree(const std::string& name);
    [[nodiscard]] int finish(int failure);
    [[nodiscard]] int flushAfterRename();

    FileSystem& files_;
    OpenFile folder_;
    OpenFile file_;
    std::string folderPath_; // with a "/" at its end
    std::string name_;       // the target's, within the folder
    std::string temporaryName_;
    std::string temporaryPath_;
    bool isRenamed_ = false;
};

/// Writes a whole file by AtomicFile::open() and commit(). [any]
[[nodiscard]] int writeAtomically(FileSystem& files, const std::string& path,
                                  std::string_view data);

/// Writes a whole file by AtomicFile::open() and commitNew(). [any]
[[nodiscard]] int writeNewAtomically(FileSystem& files, const std::string& path,
                                     std::string_view data);

/// What would make `writeAtomically` fail, as far as it can be seen without trying. [any]
[[nodiscard]] int obstacleToWriting(FileSystem& files, const std::string& path);

} // namespace gps
