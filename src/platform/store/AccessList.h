#pragma once

#include <QByteArray>
#include <map>
#include <optional>
#include <sys/types.h>

namespace quillfern::store {

/// Who may read (4), write (2) and run (1) a file: its owner, its group, everybody else, and the users and
/// groups that a POSIX access list names. A plain value; asks the system nothing.
struct AccessList
{
    uid_t owner = 0;
    gid_t group = 0;
    unsigned ownerRights = 0;
    unsigned groupRights = 0;
    unsigned otherRights = 0;
    std::map<uid_t, unsigned> users;  ///< named users
    std::map<gid_t, unsigned> groups; ///< named groups
    std::optional<unsigned> mask;     ///< bounds the rights of the group and of all that are named

    /// The list that the nine bits of a mode stand for.
    [[nodiscard]] static AccessList ofMode(uid_t owner, gid_t group, mode_t mode);
    /// A list in the form in which Linux keeps it ("system.posix_acl_access"); nothing for other bytes.
    [[nodiscard]] static std::optional<AccessList> parsed(uid_t owner, gid_t group, const QByteArray& bytes);
    /// In that form.
    [[nodiscard]] QByteArray bytes() const;
    /// The nine bits as the system shows them: those of the group are the mask where there is one.
    [[nodiscard]] mode_t mode() const;

    [[nodiscard]] bool hasNames() const { return !users.empty() || !groups.empty(); }
    /// The same rights for a file of another owner and group.
    [[nodiscard]] AccessList ownedBy(uid_t newOwner, gid_t newGroup) const;
    /// What is left on a file system without access lists; the mask is worked into the group's rights.
    [[nodiscard]] AccessList withoutNames() const;
    /// This list, less every right that somebody would have by it and has not by `bound`. Which users are in
    /// which groups is not known, so of all the ways in which `bound` may apply to them the least counts.
    [[nodiscard]] AccessList limitedBy(const AccessList& bound) const;

    bool operator==(const AccessList&) const = default;

  private:
    [[nodiscard]] unsigned masked(unsigned rights) const { return mask ? rights & *mask : rights; }
    [[nodiscard]] bool namesUser(uid_t id) const { return id == owner || users.contains(id); }
    [[nodiscard]] bool namesGroup(gid_t id) const { return id == group || groups.contains(id); }
    [[nodiscard]] unsigned leastOfUnnamed() const;
    [[nodiscard]] unsigned leastOfUser(uid_t id) const;
    [[nodiscard]] unsigned leastOfGroup(gid_t id) const;
};

} // namespace quillfern::store
