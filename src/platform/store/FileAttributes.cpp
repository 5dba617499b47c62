#include "platform/store/FileAttributes.h"

#include "platform/system/Failure.h"

#include <cerrno>
#include <sys/stat.h>
#include <sys/xattr.h>
#include <unistd.h>

namespace quillfern::store {

namespace {

constexpr const char* accessListName = "system.posix_acl_access";

/// What a call that fills a buffer, and gives the size for a buffer of none, has to say.
template <class Call>
std::optional<QByteArray> filled(const Call& call)
{
    for (int attempt = 0; attempt < 4; ++attempt) { // the value may grow between the two calls
        const ssize_t size = call(nullptr, 0);
        if (size < 0) return std::nullopt;
        QByteArray bytes(size, '\0');
        if (size == 0) return bytes;
        const ssize_t got = call(bytes.data(), static_cast<std::size_t>(size));
        if (got >= 0) return bytes.first(got);
        if (errno != ERANGE) return std::nullopt;
    }
    return std::nullopt;
}

template <class Get>
AccessList accessFrom(const struct stat& status, const Get& get)
{
    const auto bytes = filled([&](void* to, std::size_t size) { return get(accessListName, to, size); });
    const auto list = bytes ? AccessList::parsed(status.st_uid, status.st_gid, *bytes) : std::nullopt;
    return list ? *list : AccessList::ofMode(status.st_uid, status.st_gid, status.st_mode);
}

auto attributeOf(int descriptor)
{
    return [descriptor](const char* name, void* to, std::size_t size) {
        return ::fgetxattr(descriptor, name, to, size);
    };
}

} // namespace

AccessList accessOf(int descriptor)
{
    struct stat status = {};
    if (::fstat(descriptor, &status) != 0) return {};
    return accessFrom(status, attributeOf(descriptor));
}

void setAccess(int descriptor, const AccessList& list, mode_t special)
{
    const QByteArray bytes = list.bytes();
    AccessList set = list;
    if (!list.hasNames()) {
        ::fremovexattr(descriptor, accessListName); // one that the folder has given
        set = list.withoutNames();
    } else if (::fsetxattr(descriptor, accessListName, bytes.constData(),
                           static_cast<std::size_t>(bytes.size()), 0) != 0) {
        set = list.withoutNames().limitedBy(list);
    }
    // Best effort: a file system may know no permissions at all.
    ::fchmod(descriptor, set.mode() | special);
}

template <class Get, class List>
void FileAttributes::read(const struct stat& status, const Get& get, const List& list)
{
    access_ = accessFrom(status, get);
    special_ = status.st_mode & 07000;
    accessed_ = status.st_atim;
    modified_ = status.st_mtim;
    const QByteArray all = filled(list).value_or(QByteArray());
    for (const QByteArray& name : all.split('\0')) {
        if (!name.startsWith("user.")) continue;
        const auto value =
            filled([&](void* to, std::size_t size) { return get(name.constData(), to, size); });
        if (value) userAttributes_[name] = *value;
    }
}

FileAttributes FileAttributes::of(int descriptor)
{
    struct stat status = {};
    if (::fstat(descriptor, &status) != 0)
        throw Failure::fromErrno(QT_TRANSLATE_NOOP("quillfern::Failure", "The file cannot be read."), errno);
    FileAttributes attributes;
    attributes.read(status, attributeOf(descriptor),
                    [&](char* to, std::size_t size) { return ::flistxattr(descriptor, to, size); });
    return attributes;
}

std::optional<FileAttributes> FileAttributes::ofFileAt(const FilePath& path)
{
    const char* const name = path.bytes().constData();
    struct stat status = {};
    if (::lstat(name, &status) != 0 || !S_ISREG(status.st_mode)) return std::nullopt;
    FileAttributes attributes;
    attributes.read(
        status,
        [&](const char* attribute, void* to, std::size_t size) {
            return ::lgetxattr(name, attribute, to, size);
        },
        [&](char* to, std::size_t size) { return ::llistxattr(name, to, size); });
    return attributes;
}

void FileAttributes::giveTo(int descriptor) const
{
    // First, while the file is surely ours to write to.
    for (const auto& [name, value] : userAttributes_)
        ::fsetxattr(descriptor, name.constData(), value.constData(), static_cast<std::size_t>(value.size()),
                    0);
    // Only root may give a file away; a group can be given by its members.
    if (::fchown(descriptor, access_.owner, access_.group) != 0 &&
        ::fchown(descriptor, static_cast<uid_t>(-1), access_.group) != 0)
        errno = 0;
    struct stat status = {};
    if (::fstat(descriptor, &status) != 0) return; // stays closed to others
    if (status.st_uid == access_.owner && status.st_gid == access_.group)
        setAccess(descriptor, access_, special_);
    else
        setAccess(descriptor, access_.ownedBy(status.st_uid, status.st_gid).limitedBy(access_));
}

void FileAttributes::giveDatesTo(int descriptor) const
{
    const std::timespec times[2] = {accessed_, modified_};
    ::futimens(descriptor, times);
}

} // namespace quillfern::store
