#include "send/group_list.h"

#include <gtest/gtest.h>

namespace
{
struct Place
{
    const char *folder;
    const char *name;
    const char *file;
};

class GroupFile : public testing::TestWithParam<Place>
{
};

TEST_P(GroupFile, LiesInTheFolderUnderTheGroupsName)
{
    EXPECT_EQ(group_file(GetParam().folder, GetParam().name), GetParam().file);
}

INSTANTIATE_TEST_SUITE_P(
    Places, GroupFile,
    testing::Values(Place{"c:\\Ostrix\\", "friends", "c:\\Ostrix\\friends.txt"},
                    Place{"c:\\Ostrix", "friends", "c:\\Ostrix\\friends.txt"},
                    Place{"/home/ann", "my friends", "/home/ann/my friends.txt"},
                    Place{"/home/ann/", "a.b", "/home/ann/a.b.txt"},
                    Place{"/home/ann", "", "/home/ann/.txt"},
                    Place{"/home/ann", "a:team", "/home/ann/a:team.txt"},
                    Place{"/home/ann", "/tmp/friends", "/tmp/friends.txt"},
                    Place{"/home/ann", "c:\\lists\\friends", "c:\\lists\\friends.txt"}));
} // namespace
