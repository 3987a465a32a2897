// Files and directories.
#pragma once

#include "base/datetime.h"
#include "base/serializearray.h"

#include <algorithm>
#include <cstdio>

namespace quillon {

/// A file operation failed.
class EFile : public Exception {
    using Exception::Exception;
};

/// An open file as a stream, and static helpers on paths. Every operation takes "\" in a path for "/", and
/// a path with a NUL for one where nothing is or can be.
///
/// As a stream: numbers are stored in the machine's own form, strings and buffers as their bytes; reading a
/// String or a Memory without a count takes the rest of the file. A write that the disk refuses and a read
/// past the end throw EFile. One thread at a time for one object; the static helpers on any thread.
class File final : public IReader, public IWriter {
public:
    /// How to open, with the values of the standard streams' open modes; combinable.
    using ModeOption = unsigned;
    static constexpr ModeOption append = 1;
    static constexpr ModeOption atEnd = 2;
    static constexpr ModeOption binary = 4;
    static constexpr ModeOption in = 8;
    static constexpr ModeOption out = 16;
    static constexpr ModeOption truncate = 32;
    /// With truncating alone: fails where there is something already.
    static constexpr ModeOption exclusive = 64;

    enum SeekDir { begin = SEEK_SET, current = SEEK_CUR, end = SEEK_END };

    File() = default;
    File(File const&) = delete;
    File& operator=(File const&) = delete;
    ~File() override { close(); }

    /// Opens in binary; writing without reading or appending truncates. A file opened for writing gets mode
    /// 0777: modules are executable and every process of the user may read them; what keeps others out is the
    /// mode of the directory. False when it cannot be opened.
    bool open(String const& path, ModeOption mode);
    /// False when what was written has not reached the system.
    bool close();
    bool isOpened() const noexcept { return m_file != nullptr; }
    /// In bytes.
    unsigned long size() const noexcept { return m_size; }
    bool seek(int offset, SeekDir from);
    unsigned tell() const;
    /// Closes the file and leaves it empty, whatever has been written.
    void closeEmpty();
    /// From now on a write that would make the file longer throws; in bytes.
    void limitSize(unsigned long bytes) noexcept { m_maxSize = bytes; }
    /// Hands what was written to the system; false when it does not take it.
    bool flush();
    /// Waits until what was written is on the disk; false when it cannot be.
    bool sync();

    using IWriter::write;
    void read(unsigned short& value) override { readBytes(&value, sizeof value); }
    void read(unsigned int& value) override { readBytes(&value, sizeof value); }
    void read(short& value) override { readBytes(&value, sizeof value); }
    void read(int& value) override { readBytes(&value, sizeof value); }
    void read(bool& value) override;
    void read(unsigned char& value) override { readBytes(&value, sizeof value); }
    void read(char& value) override { readBytes(&value, sizeof value); }
    void read(String& value) override;
    void read(Memory& value) override;
    void read(ISerialize& object) override { object.write(static_cast<IReader&>(*this)); }
    void read(Memory& bytes, unsigned count) override;
    void read(char* bytes, unsigned count) override { readBytes(bytes, count); }
    /// At most npos, however long the file is.
    unsigned sizeToRead() const override;
    unsigned getReadPos() const override { return tell(); }
    void setReadPos(unsigned position) override { seekTo(static_cast<long>(position), begin); }

    void write(unsigned short value) override { writeBytes(&value, sizeof value); }
    void write(unsigned int value) override { writeBytes(&value, sizeof value); }
    void write(short value) override { writeBytes(&value, sizeof value); }
    void write(int value) override { writeBytes(&value, sizeof value); }
    void write(bool value) override { write(static_cast<unsigned char>(value)); }
    void write(unsigned char value) override { writeBytes(&value, sizeof value); }
    void write(char value) override { writeBytes(&value, sizeof value); }
    void write(String const& value) override { writeBytes(value.array(), value.length()); }
    void write(Memory const& value) override { writeBytes(value.array(), value.size()); }
    void write(ISerialize const& object) override { object.read(static_cast<IWriter&>(*this)); }
    /// At most what `bytes` holds.
    void write(Memory const& bytes, unsigned count) override {
        writeBytes(bytes.array(), std::min<std::size_t>(count, bytes.size()));
    }
    void write(char const* bytes, unsigned count) override { writeBytes(bytes, count); }
    void reserve(unsigned) override {}

    /// The whole content; throws EFile, after a log line, when the file cannot be opened or does not fit into
    /// a String.
    static String readAllFile(String const& path);
    static void writeAllFile(String const& path, String const& content);
    /// Writes the content beside the file, where its owner alone may read it, waits until it is on the disk
    /// and puts it, with `mode`, in the file's place: whatever happens, the file holds the old content or
    /// the new. Several threads and processes may do that to one file; the last one wins. What one that was
    /// killed has left beside the file is removed. Throws EFile after a log line; nothing is left then.
    static void replaceAllFile(String const& path, String const& content, unsigned mode = 0777);

    /// Whether it can be opened for reading; a directory counts as absent.
    static bool exists(String const& path);
    /// Throws EFile without a log line.
    static void remove(String const& path);
    /// Renames, replacing what is there; across file systems copies and removes. Throws EFile.
    static void move(String const& from, String const& to);
    /// Throws EFile.
    static void copy(String const& from, String const& to);

    static bool isDirectory(String const& path);
    /// Makes the directory and its missing parents, each with mode 0700. Throws EFile after a log line.
    static void createDirectory(String const& path);
    static void ensureDirectory(String const& path);
    /// Removes an empty directory; throws EFile.
    static void removeDirectory(String const& path);
    /// Removes a directory and all that is in it, without following links; throws EFile.
    static void eraseDirectory(String const& path);
    static void moveDirectory(String const& from, String const& to) { move(from, to); }

    // Listings append names to `list`, in the order in which the system gives them, without "." and "..". A
    // directory that cannot be read is logged and adds nothing.
    static void getFilesList(String const& directory, List<String>& names);
    static void getFullList(String const& directory, List<String>& names);
    static void getSubDirectoriesList(String const& directory, List<String>& names);
    /// Paths relative to `directory`; links to directories are not followed.
    static void getRecursiveFilesList(String const& directory, List<String>& names);
    /// `extension` without its dot.
    static void getFilesListByExtension(String const& directory, String const& extension,
                                        List<String>& names);

    /// What follows the last "/".
    static String getFileName(String const& path);
    /// What stands before the last "/"; empty without one.
    static String getFolderName(String const& path);
    /// What follows the last "." of the file name; empty without one.
    static String getFileExtension(String const& path);
    /// The directory part with its "/", without double quotes; a "/" at the end of the path is not taken for
    /// the one that parts. The path unchanged when it has no directory part.
    static String getSubPath(String const& path);
    /// In bytes; 0 when there is no such file.
    static unsigned long getFileSize(String const& path);
    /// The same; of a directory, the sum of the files in it.
    static unsigned long getSize(String const& path);

    /// Where the user's settings and modules are; ends in "/". The current directory when neither HOME nor
    /// USER says where the user is at home.
    static String getUserApplicationDataDirectory();
    static String getCurrentDirectory();

    // Time stamps; all throw EFile when the file is not there.
    static DateTime getFileLastWrite(String const& path);
    static DateTime getFileLastAccess(String const& path);
    /// When the file's entry last changed.
    static DateTime getFileLastChange(String const& path);
    static void setFileLastWrite(String const& path, DateTime const& time);
    static void setFileLastAccess(String const& path, DateTime const& time);

private:
    static constexpr unsigned long unlimited = static_cast<unsigned long>(-1);

    bool seekTo(long offset, SeekDir from);
    /// sizeToRead(), or EFile when that is not all.
    unsigned restToRead() const;
    void readBytes(void* bytes, std::size_t count);
    void writeBytes(void const* bytes, std::size_t count);

    FILE* m_file = nullptr;
    String m_path;
    unsigned long m_size = 0;
    unsigned long m_position = 0;
    unsigned long m_maxSize = unlimited;
};

} // namespace quillon
