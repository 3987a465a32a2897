// Configuration records: their base, and reading named keys, each required or optional.
#pragma once

#include "base/serialize.h"

namespace quillon {

/// Base of configuration records: a record overrides the forms that it supports, at least write(IKeyReader&);
/// the others throw ENotImplemented.
class IConf : public ISerialize {
public:
    using ISerialize::read;
    using ISerialize::write;

    void write(IReader& reader) override;
    void read(IWriter& writer) const override;
    void read(IKeyWriter& writer) const override;
};

/// A required key of a configuration is absent or unreadable; the reason has been logged.
class EConfMissingKey : public Exception {
    using Exception::Exception;
};

/// A place in a configuration that may be absent. A small value; the reader it points at belongs to somebody
/// else and must outlive it.
class ConfReadHelper {
public:
    /// Flags of get() and readKey().
    static constexpr unsigned optional = 0;
    static constexpr unsigned required = 1;

    explicit ConfReadHelper(IKeyReader& reader) noexcept : m_reader(&reader) {}

    /// The place named `key` below this one. Absent: throws EConfMissingKey with `required`, else returns a
    /// missing helper, whose own get() stays quiet.
    ConfReadHelper get(char const* key, unsigned flags) const;

    bool missing() const noexcept { return m_missing; }
    /// Only of a helper that is not missing.
    IKeyReader& reader() const noexcept { return *m_reader; }

    /// Reads `key` into `value`, which a plain type's or a record's read() fills. Returns whether it was
    /// present and read; an absent optional key leaves `value` alone. Throws EConfMissingKey when a required
    /// key is absent or unreadable.
    template <class T>
    static bool readKey(IKeyReader& reader, char const* key, T& value, unsigned flags) {
        if (!reader.exists(key))
            return keyIsAbsent(key, flags);
        try {
            reader[key].read(value);
            return true;
        } catch (EKeyReader const& e) {
            return keyIsUnreadable(key, flags, e);
        }
    }

private:
    ConfReadHelper() noexcept : m_reader(nullptr), m_missing(true) {}

    static bool keyIsAbsent(char const* key, unsigned flags);
    static bool keyIsUnreadable(char const* key, unsigned flags, Exception const& reason);

    IKeyReader* m_reader;
    bool m_missing = false;
};

} // namespace quillon
