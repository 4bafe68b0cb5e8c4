#include "mail/user_mail.h"
#include "tests/support/private_home.h"

#include <gtest/gtest.h>

namespace
{
TEST(UserMailDesk, KeepsTheStoreBusyWhileItWaits)
{
    const PrivateHome home;
    UserMail mail(home.file("profiles.ini"));
    const ProfileDesk desk = mail.profile_desk();
    bool was_busy = false;
    desk.run([&] { was_busy = mail.store().is_busy(); });
    EXPECT_TRUE(was_busy);
    EXPECT_FALSE(mail.store().is_busy());
    EXPECT_THROW(desk.run([] { throw RuntimeError(5, "failed"); }), RuntimeError);
    EXPECT_FALSE(mail.store().is_busy());
}
} // namespace
