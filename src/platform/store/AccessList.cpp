#include "platform/store/AccessList.h"

#include <QtEndian>
#include <cstdint>

namespace quillfern::store {

namespace {

constexpr unsigned allRights = 7;
constexpr std::uint32_t formVersion = 2;
constexpr std::uint32_t noId = 0xFFFFFFFF;
constexpr qsizetype headerSize = 4;
constexpr qsizetype entrySize = 8;

enum Tag : std::uint16_t { Owner = 1, User = 2, OwningGroup = 4, Group = 8, Mask = 0x10, Other = 0x20 };

void append(QByteArray& bytes, Tag tag, unsigned rights, std::uint32_t id = noId)
{
    char entry[entrySize];
    qToLittleEndian<std::uint16_t>(tag, entry);
    qToLittleEndian<std::uint16_t>(static_cast<std::uint16_t>(rights), entry + 2);
    qToLittleEndian<std::uint32_t>(id, entry + 4);
    bytes.append(entry, entrySize);
}

} // namespace

AccessList AccessList::ofMode(uid_t owner, gid_t group, mode_t mode)
{
    AccessList list;
    list.owner = owner;
    list.group = group;
    list.ownerRights = mode >> 6 & allRights;
    list.groupRights = mode >> 3 & allRights;
    list.otherRights = mode & allRights;
    return list;
}

std::optional<AccessList> AccessList::parsed(uid_t owner, gid_t group, const QByteArray& bytes)
{
    if (bytes.size() < headerSize || (bytes.size() - headerSize) % entrySize != 0 ||
        qFromLittleEndian<std::uint32_t>(bytes.constData()) != formVersion)
        return std::nullopt;
    AccessList list = ofMode(owner, group, 0);
    for (qsizetype at = headerSize; at < bytes.size(); at += entrySize) {
        const char* const entry = bytes.constData() + at;
        const unsigned rights = qFromLittleEndian<std::uint16_t>(entry + 2) & allRights;
        const auto id = qFromLittleEndian<std::uint32_t>(entry + 4);
        switch (qFromLittleEndian<std::uint16_t>(entry)) {
        case Owner:
            list.ownerRights = rights;
            break;
        case User:
            list.users[id] = rights;
            break;
        case OwningGroup:
            list.groupRights = rights;
            break;
        case Group:
            list.groups[id] = rights;
            break;
        case Mask:
            list.mask = rights;
            break;
        case Other:
            list.otherRights = rights;
            break;
        default:
            return std::nullopt;
        }
    }
    return list;
}

QByteArray AccessList::bytes() const
{
    // The system demands this order, and a mask where users or groups are named.
    QByteArray bytes(headerSize, '\0');
    qToLittleEndian<std::uint32_t>(formVersion, bytes.data());
    append(bytes, Owner, ownerRights);
    for (const auto& [id, rights] : users)
        append(bytes, User, rights, id);
    append(bytes, OwningGroup, groupRights);
    for (const auto& [id, rights] : groups)
        append(bytes, Group, rights, id);
    if (mask || hasNames()) append(bytes, Mask, mask.value_or(allRights));
    append(bytes, Other, otherRights);
    return bytes;
}

mode_t AccessList::mode() const
{
    return ownerRights << 6 | mask.value_or(groupRights) << 3 | otherRights;
}

AccessList AccessList::ownedBy(uid_t newOwner, gid_t newGroup) const
{
    AccessList list = *this;
    list.owner = newOwner;
    list.group = newGroup;
    return list;
}

AccessList AccessList::withoutNames() const
{
    AccessList list = *this;
    list.groupRights = masked(groupRights);
    list.users.clear();
    list.groups.clear();
    list.mask.reset();
    return list;
}

unsigned AccessList::leastOfUnnamed() const
{
    unsigned least = masked(groupRights) & otherRights;
    for (const auto& [id, rights] : groups)
        least &= masked(rights);
    return least;
}

unsigned AccessList::leastOfUser(uid_t id) const
{
    if (id == owner) return ownerRights;
    const auto named = users.find(id);
    return named == users.end() ? leastOfUnnamed() : masked(named->second);
}

unsigned AccessList::leastOfGroup(gid_t id) const
{
    if (id == group) return masked(groupRights);
    const auto named = groups.find(id);
    return named == groups.end() ? leastOfUnnamed() : masked(named->second);
}

AccessList AccessList::limitedBy(const AccessList& bound) const
{
    // Those whom `bound` names and this list does not may be in any group here, or in none.
    unsigned strangers = allRights;
    if (!namesUser(bound.owner)) strangers &= bound.ownerRights;
    for (const auto& [id, rights] : bound.users)
        if (!namesUser(id)) strangers &= bound.masked(rights);
    unsigned others = bound.otherRights & strangers;
    if (!namesGroup(bound.group)) others &= bound.masked(bound.groupRights);
    for (const auto& [id, rights] : bound.groups)
        if (!namesGroup(id)) others &= bound.masked(rights);

    AccessList list = *this;
    list.ownerRights &= bound.ownerRights;
    list.groupRights &= bound.leastOfGroup(group) & strangers;
    list.otherRights &= others;
    for (auto& [id, rights] : list.users)
        rights &= bound.leastOfUser(id);
    for (auto& [id, rights] : list.groups)
        rights &= bound.leastOfGroup(id) & strangers;
    return list;
}

} // namespace quillfern::store
