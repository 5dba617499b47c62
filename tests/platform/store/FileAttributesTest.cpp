// Who may open a file after it was written anew: the same people as before, and never more.

#include "platform/store/FileAttributes.h"
#include "platform/store/AtomicFile.h"
#include "support/Tools.h"

#include <array>
#include <cerrno>
#include <grp.h>
#include <sys/stat.h>
#include <sys/xattr.h>
#include <unistd.h>

namespace quillfern::store {
namespace {

constexpr uid_t ann = 61001;
constexpr uid_t ben = 61002;
constexpr uid_t cat = 61003;
constexpr gid_t team = 62000;
constexpr gid_t annex = 62001;

AccessList listed(mode_t mode, std::map<uid_t, unsigned> users = {}, std::map<gid_t, unsigned> groups = {},
                  std::optional<unsigned> mask = {})
{
    AccessList list = AccessList::ofMode(ann, team, mode);
    list.users = std::move(users);
    list.groups = std::move(groups);
    list.mask = mask;
    return list;
}

TEST(AccessListTest, GrantsNobodyMoreThanTheBound)
{
    const AccessList usual = listed(0644);
    const Rows<const char*, AccessList, AccessList, AccessList> cases = {
        {"a private file", usual, listed(0600), listed(0600)},
        {"read only", usual, listed(0444), listed(0444)},
        {"an open one opens nothing", usual, listed(0777), usual},
        {"the group of the bound falls to the others", usual.ownedBy(ann, annex), listed(0604),
         listed(0600).ownedBy(ann, annex)},
        {"its members keep what they had", listed(0664).ownedBy(ann, annex), listed(0664),
         listed(0644).ownedBy(ann, annex)},
        {"its owner is one of the group now", listed(0660).ownedBy(ben, team), listed(0460),
         listed(0440).ownedBy(ben, team)},
        {"a mask bounds the group", usual, listed(0660, {{cat, 4}}, {}, 0), listed(0600)},
        {"who is denied is denied", listed(0644), listed(0644, {{cat, 0}}, {}, 7), listed(0600)},
        {"who is named keeps the rights", listed(0640, {{cat, 6}}, {{annex, 6}}, 6),
         listed(0640, {{cat, 4}}, {{annex, 4}}, 6), listed(0640, {{cat, 4}}, {{annex, 4}}, 6)},
        {"names of the folder get no more than others", listed(0664, {{cat, 6}}, {{annex, 6}}, 6),
         listed(0640), listed(0640, {{cat, 0}}, {{annex, 0}}, 6)},
    };
    for (const auto& [what, list, bound, expected] : cases) {
        EXPECT_EQ(list.limitedBy(bound), expected)
            << what << std::oct << ": mode " << list.limitedBy(bound).mode();
        EXPECT_EQ(bound.limitedBy(bound).mode(), bound.mode()) << what;
    }
}

TEST(AccessListTest, ComesBackFromItsBytes)
{
    const AccessList list = listed(0640, {{cat, 4}, {ben, 6}}, {{annex, 5}}, 6);
    EXPECT_EQ(AccessList::parsed(ann, team, list.bytes()), list);
    EXPECT_FALSE(AccessList::parsed(ann, team, list.bytes().chopped(1)));
    EXPECT_FALSE(AccessList::parsed(ann, team, "\1\0\0\0"));
}

/// Another user for as long as the object lives.
class Acting
{
  public:
    Acting(uid_t user, const std::vector<gid_t>& groups)
    {
        EXPECT_EQ(::setgroups(groups.size(), groups.data()), 0);
        EXPECT_EQ(::setegid(user), 0); // everybody has a group of the same number
        EXPECT_EQ(::seteuid(user), 0);
    }
    ~Acting()
    {
        EXPECT_EQ(::seteuid(0), 0);
        EXPECT_EQ(::setegid(0), 0);
        EXPECT_EQ(::setgroups(0, nullptr), 0);
    }
    Acting(const Acting&) = delete;
    Acting& operator=(const Acting&) = delete;
};

class FileAttributesTest : public testing::Test
{
  protected:
    void SetUp() override
    {
        ::umask(022);
        ::chmod(QFile::encodeName(scratch.path()).constData(), 0777);
        file = QFile::encodeName(scratch.write(u"file"_s, "before"));
    }

    [[nodiscard]] struct stat status() const
    {
        struct stat status = {};
        EXPECT_EQ(::stat(file.constData(), &status), 0);
        return status;
    }

    [[nodiscard]] bool set(const char* attribute, const QByteArray& value) const
    {
        return ::setxattr(file.constData(), attribute, value.constData(),
                          static_cast<std::size_t>(value.size()), 0) == 0;
    }

    [[nodiscard]] QByteArray get(const char* attribute) const
    {
        std::array<char, 256> value{};
        const ssize_t size = ::getxattr(file.constData(), attribute, value.data(), value.size());
        return size < 0 ? QByteArray() : QByteArray(value.data(), size);
    }

    void writeAnew() const { AtomicFile::writeWhole(FilePath::fromBytes(file), "after"); }

    static constexpr const char* acl = "system.posix_acl_access";
    Scratch scratch;
    QByteArray file;
};

TEST_F(FileAttributesTest, ListAndAttributesStay)
{
    AccessList list = listed(0600, {{cat, 4}}, {}, 4);
    list.groupRights = 0;
    if (!set(acl, list.bytes()) || !set("user.origin", "scanner 7"))
        GTEST_SKIP() << "the file system keeps no access lists or attributes";
    const QByteArray before = get(acl);
    const mode_t mode = status().st_mode;
    writeAnew();
    EXPECT_EQ(get(acl), before);
    EXPECT_EQ(status().st_mode, mode);
    EXPECT_EQ(get("user.origin"), QByteArray("scanner 7"));
    EXPECT_EQ(readFile(QFile::decodeName(file)), QByteArray("after"));
}

TEST_F(FileAttributesTest, AnotherWriterLocksNobodyOutAndLetsNobodyIn)
{
    if (::geteuid() != 0) GTEST_SKIP() << "only root can act as other users";
    // the mode, who writes, the groups of the writer; afterwards the owner, the group and the mode
    const Rows<const char*, mode_t, uid_t, std::vector<gid_t>, uid_t, gid_t, mode_t> cases = {
        {"the owner", 0640, ann, {team}, ann, team, 0640},
        {"root", 04660, 0, {}, ann, team, 04660},
        {"a member of the team", 0660, ben, {team}, ben, team, 0660},
        {"runs as its owner no more", 06775, ben, {team}, ben, team, 0775},
        {"a stranger", 0664, ben, {}, ben, ben, 0644},
        {"a stranger and a closed file", 0660, ben, {}, ben, ben, 0600},
        {"the owner, in the team no more", 0640, ann, {}, ann, ann, 0600},
    };
    for (const auto& [what, mode, writer, groups, owner, group, expected] : cases) {
        ASSERT_EQ(::chown(file.constData(), ann, team), 0);
        ASSERT_EQ(::chmod(file.constData(), mode), 0);
        {
            const Acting acting(writer, groups);
            writeAnew();
        }
        EXPECT_EQ(status().st_uid, owner) << what;
        EXPECT_EQ(status().st_gid, group) << what;
        EXPECT_EQ(status().st_mode & 07777, expected) << what << std::oct << " is " << status().st_mode;
    }
}

TEST_F(FileAttributesTest, AListSurvivesTheLossOfTheGroup)
{
    if (::geteuid() != 0) GTEST_SKIP() << "only root can act as other users";
    if (!set(acl, listed(0664, {{cat, 4}}, {{annex, 6}}, 6).bytes()))
        GTEST_SKIP() << "the file system keeps no access lists";
    ASSERT_EQ(::chown(file.constData(), ann, team), 0);
    {
        const Acting acting(ben, {});
        writeAnew();
    }
    const auto list = AccessList::parsed(ann, team, get(acl));
    ASSERT_TRUE(list);
    EXPECT_EQ(list->users, (std::map<uid_t, unsigned>{{cat, 4}}));
    EXPECT_EQ(list->groups, (std::map<gid_t, unsigned>{{annex, 6}}));
    EXPECT_EQ(list->groupRights, 4U) << "the writer's own group could read as everybody could";
    EXPECT_EQ(list->otherRights, 4U);
}

TEST_F(FileAttributesTest, ANewFileIsAsOpenAsItsFolderSaysAndItsBoundAllows)
{
    const std::pair<mode_t, mode_t> cases[] = {{0600, 0600}, {0640, 0640}, {0666, 0644}, {0444, 0444}};
    for (const auto& [bound, expected] : cases) {
        AtomicFile copy(FilePath::fromBytes(file));
        copy.limitAccess(AccessList::ofMode(::geteuid(), ::getegid(), bound));
        struct stat open = {};
        ASSERT_EQ(::fstat(copy.descriptor(), &open), 0);
        EXPECT_EQ(open.st_mode & 0777, 0600U) << "while it is written";
        copy.commit();
        EXPECT_EQ(status().st_mode & 07777, expected) << std::oct << bound;
    }
    ASSERT_EQ(::unlink(file.constData()), 0);
    writeAnew();
    EXPECT_EQ(status().st_mode & 07777, 0644U);
}

TEST_F(FileAttributesTest, TheFoldersOwnListIsKeptWithinTheBound)
{
    const AccessList given = listed(0660, {{cat, 6}}, {}, 6);
    const QByteArray folder = QFile::encodeName(scratch.path());
    if (::setxattr(folder.constData(), "system.posix_acl_default", given.bytes().constData(),
                   static_cast<std::size_t>(given.bytes().size()), 0) != 0)
        GTEST_SKIP() << "the file system keeps no access lists";
    const auto made = [&](const std::optional<AccessList>& bound) {
        ::unlink(file.constData());
        AtomicFile copy(FilePath::fromBytes(file));
        if (bound) copy.limitAccess(*bound);
        copy.commit();
        return AccessList::parsed(0, 0, get(acl)).value_or(AccessList()).users;
    };
    using Users = std::map<uid_t, unsigned>;
    EXPECT_EQ(made({}), (Users{{cat, 6}}));
    EXPECT_EQ(made(AccessList::ofMode(::geteuid(), ::getegid(), 0600)), (Users{{cat, 0}}));
    EXPECT_EQ(made(given.ownedBy(::geteuid(), ::getegid())), (Users{{cat, 6}}));
}

} // namespace
} // namespace quillfern::store
