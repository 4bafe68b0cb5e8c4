#include "mail/sasl.h"
#include "mail/scram.h"
#include "platform/runtime_error.h"
#include "tests/support/print_qt.h"

#include <gtest/gtest.h>

namespace
{
Credentials password(const QString &user, const QString &secret)
{
    return {SignInKind::Password, user, secret};
}

Credentials token(const QString &user, const QString &secret)
{
    return {SignInKind::Token, user, secret};
}

QByteArray chosen(const QList<QByteArray> &offered, const Credentials &credentials)
{
    const auto exchange = choose_sasl(offered, credentials);
    return exchange ? exchange->name() : QByteArray();
}

QString refusal(const std::function<void()> &step)
{
    try {
        step();
    } catch (const RuntimeError &error) {
        EXPECT_EQ(error.number(), error_number::mail_failure);
        return error.description();
    }
    return QStringLiteral("nothing was refused");
}

TEST(ChooseSasl, TakesTheBestThatIsOffered)
{
    const Credentials ann = password("ann", "pencil");
    EXPECT_EQ(chosen({"LOGIN", "PLAIN", "SCRAM-SHA-256"}, ann), "SCRAM-SHA-256");
    EXPECT_EQ(chosen({"login", "Plain", "XOAUTH2"}, ann), "PLAIN");
    EXPECT_EQ(chosen({"LOGIN"}, ann), "LOGIN");
    EXPECT_EQ(chosen({"XOAUTH2", "CRAM-MD5", "GSSAPI"}, ann), "");
    EXPECT_EQ(chosen({}, ann), "");
}

TEST(ChooseSasl, SendsATokenAsATokenOnly)
{
    EXPECT_EQ(chosen({"PLAIN", "LOGIN", "SCRAM-SHA-256", "XOAUTH2"}, token("ann", "t0ken")),
              "XOAUTH2");
    EXPECT_EQ(chosen({"PLAIN", "LOGIN", "SCRAM-SHA-256"}, token("ann", "t0ken")), "");
    EXPECT_EQ(chosen({"PLAIN", "XOAUTH2"}, Credentials()), "");
}

TEST(Plain, IsUserAndPasswordBetweenNuls)
{
    const auto plain = choose_sasl({"PLAIN"}, password("tim", "tanstaaftanstaaf")); // RFC 4616
    EXPECT_FALSE(plain->is_complete());
    EXPECT_EQ(plain->initial_response(), QByteArray("\0tim\0tanstaaftanstaaf", 21));
    EXPECT_TRUE(plain->is_complete());
    EXPECT_THROW(plain->respond("more"), RuntimeError);
}

TEST(Plain, TakesAnyCharacterButNul)
{
    const auto plain = choose_sasl({"PLAIN"}, password("änn", "a\"b\\c\r\n€"));
    EXPECT_EQ(plain->initial_response(), QByteArray("\0\xC3\xA4nn\0a\"b\\c\r\n\xE2\x82\xAC", 16));
    const Credentials with_nul = password("ann", QString("a%1b").arg(QChar(u'\0')));
    EXPECT_EQ(refusal([&] { choose_sasl({"PLAIN"}, with_nul); }),
              "the password holds a character that cannot be sent");
}

TEST(Login, AnswersWhateverIsAskedWithUserThenPassword)
{
    const auto login = choose_sasl({"LOGIN"}, password("ann", "pencil"));
    EXPECT_EQ(login->initial_response(), std::nullopt);
    EXPECT_EQ(login->respond("Username:"), "ann");
    EXPECT_FALSE(login->is_complete());
    EXPECT_EQ(login->respond("Nom de guerre?"), "pencil");
    EXPECT_TRUE(login->is_complete());
    EXPECT_THROW(login->respond("And now?"), RuntimeError);
}

TEST(XOAuth2, CarriesTheTokenAndEndsARefusalWithNothing)
{
    const auto oauth = choose_sasl({"XOAUTH2"}, token("someuser@example.com", "vF9dft4qmT"));
    EXPECT_EQ(oauth->initial_response(), "user=someuser@example.com\x01"
                                         "auth=Bearer vF9dft4qmT\x01\x01");
    EXPECT_TRUE(oauth->is_complete());
    EXPECT_EQ(oauth->respond(R"({"status":"401"})"), "");
    EXPECT_FALSE(oauth->is_complete());
    EXPECT_EQ(refusal([&] { oauth->respond(""); }),
              "the server asks for more than the sign-on has"); // a refusal has one end
    EXPECT_THROW(choose_sasl({"XOAUTH2"}, token("ann", "to ken")), RuntimeError);
    EXPECT_THROW(choose_sasl({"XOAUTH2"}, token("ann", "token\n")), RuntimeError);
    EXPECT_THROW(choose_sasl({"XOAUTH2"}, token("ann\x01", "token")), RuntimeError);
}

// RFC 7677 section 3.
const QByteArray rfc_nonce = "rOprNGfwEbeRWgbNEkqO";
const QByteArray rfc_first = "r=rOprNGfwEbeRWgbNEkqO%hvYDpWUa2RaTCAfuxFIlj)hNlF$k0,"
                             "s=W22ZaJ0SNY7soEsUEjb6gQ==,i=4096";
const QByteArray rfc_final = "v=6rriTRBi23WpRR/wtup+mMhUZUn/dB5nLTJRsjl95G4=";

std::unique_ptr<SaslExchange> rfc_exchange(const QString &secret = "pencil")
{
    return choose_sasl({"SCRAM-SHA-256"}, password("user", secret), rfc_nonce);
}

TEST(Scram, SpeaksAsInTheStandard)
{
    const auto scram = rfc_exchange();
    EXPECT_EQ(scram->initial_response(), "n,,n=user,r=rOprNGfwEbeRWgbNEkqO");
    EXPECT_EQ(scram->respond(rfc_first),
              "c=biws,r=rOprNGfwEbeRWgbNEkqO%hvYDpWUa2RaTCAfuxFIlj)hNlF$k0,"
              "p=dHzbZapWIk4jUhN+Ute9ytag9zjfMHgsqmmiz7AndVQ=");
    EXPECT_FALSE(scram->is_complete());
    EXPECT_EQ(scram->respond(rfc_final), "");
    EXPECT_TRUE(scram->is_complete());
    EXPECT_THROW(scram->respond(rfc_final), RuntimeError);
}

TEST(Scram, IsNotCompleteWithoutTheServersProof)
{
    const auto scram = rfc_exchange();
    scram->respond(rfc_first);
    EXPECT_EQ(refusal([&] { scram->respond("v=AAAATRBi23WpRR/wtup+mMhUZUn/dB5nLTJRsjl95G4="); }),
              "the server has not proved that it knows the password");
    EXPECT_EQ(refusal([&] { scram->respond("v="); }),
              "the server has not proved that it knows the password");
    EXPECT_EQ(refusal([&] { scram->respond("e=invalid-proof"); }), "invalid-proof");
    EXPECT_FALSE(scram->is_complete());
}

struct Challenge
{
    const char *first;
    const char *refusal;
};

class ScramRefuses : public testing::TestWithParam<Challenge>
{
};

TEST_P(ScramRefuses, AChallenge)
{
    const auto scram = rfc_exchange();
    EXPECT_EQ(refusal([&] { scram->respond(GetParam().first); }), GetParam().refusal);
    EXPECT_FALSE(scram->is_complete());
}

constexpr const char *foreign = "the server's challenge does not belong to this sign-on";
constexpr const char *unreadable = "the server's challenge cannot be read";
INSTANTIATE_TEST_SUITE_P(
    Challenges, ScramRefuses,
    testing::Values(Challenge{"r=another,s=W22ZaJ0SNY7soEsUEjb6gQ==,i=4096", foreign},
                    Challenge{"r=rOprNGfwEbeRWgbNEkqO,s=W22ZaJ0SNY7soEsUEjb6gQ==,i=4096", foreign},
                    Challenge{"r=rOprNGfwEbeRWgbNEkqOx,s=,i=4096", foreign},
                    Challenge{"r=rOprNGfwEbeRWgbNEkqOx,s=*,i=4096", foreign},
                    Challenge{"m=x,r=rOprNGfwEbeRWgbNEkqOx,s=W22Z,i=4096", foreign},
                    Challenge{"r=rOprNGfwEbeRWgbNEkqOx,s=W22Z,i=4095",
                              "the server asks for 4095 iterations"},
                    Challenge{"r=rOprNGfwEbeRWgbNEkqOx,s=W22Z,i=1000001",
                              "the server asks for 1000001 iterations"},
                    Challenge{"r=rOprNGfwEbeRWgbNEkqOx,s=W22Z,i=99999999999999999999",
                              "the server asks for 99999999999999999999 iterations"},
                    Challenge{"e=unknown-user", "unknown-user"}, Challenge{"", unreadable},
                    Challenge{"r", unreadable}, Challenge{"r=x,r=x", unreadable}));

TEST(Scram, RefusesAnEndlessChallenge)
{
    const auto scram = rfc_exchange();
    EXPECT_EQ(refusal([&] { scram->respond(QByteArray(5'000, 'r')); }),
              "the server's challenge is too long");
}

TEST(Scram, EscapesTheUserName)
{
    const ScramSha256 unused(password("x", "y"), "n");
    const auto scram = choose_sasl({"SCRAM-SHA-256"}, password("a=b,c", "x"), "n0nce");
    EXPECT_EQ(scram->initial_response(), "n,,n=a=3Db=2Cc,r=n0nce");
}

TEST(Scram, PreparesTextsAsTheStandardDoes)
{
    const auto prepared = [](const QString &text) { return prepared_for_sasl(text, "password"); };
    EXPECT_EQ(prepared(u"I\u00ADX"_qs), "IX"); // RFC 4013 section 3
    EXPECT_EQ(prepared("user"), "user");
    EXPECT_EQ(prepared("USER"), "USER");
    EXPECT_EQ(prepared(u"\u00AA"_qs), "a");
    EXPECT_EQ(prepared(u"\u2168"_qs), "IX");
    EXPECT_EQ(prepared(u"a\u00A0b"_qs), "a b");
    EXPECT_EQ(refusal([&] { prepared(u"\u0007"_qs); }), "the password holds a control character");
}

TEST(Nonces, AreFreshAndPrintable)
{
    const QByteArray nonce = new_nonce();
    EXPECT_EQ(nonce.size(), 24);
    EXPECT_FALSE(nonce.contains(',') || nonce.contains('='));
    EXPECT_NE(nonce, new_nonce());
}

TEST(SaslTalk, SendsTheFirstResponseWithTheCommandOrOnRequest)
{
    const auto talk = [] { return SaslTalk(choose_sasl({"PLAIN"}, password("a", "b"))); };
    EXPECT_EQ(talk().opening(true), "PLAIN AGEAYg==");
    SaslTalk asked = talk();
    EXPECT_EQ(asked.opening(false), "PLAIN");
    EXPECT_EQ(asked.answer(""), "AGEAYg==");
    EXPECT_TRUE(asked.is_complete());
    EXPECT_EQ(talk().opening(true, 7), "PLAIN"); // too long for the command's line
    EXPECT_EQ(talk().opening(true, 8), "PLAIN AGEAYg==");
}

TEST(SaslTalk, ComesToAnEnd)
{
    class Endless : public SaslExchange
    {
        QByteArray name() const override { return "ENDLESS"; }
        std::optional<QByteArray> initial_response() override { return std::nullopt; }
        QByteArray respond(const QByteArray &) override { return "go on"; }
        bool is_complete() const override { return false; }
    };
    SaslTalk talk(std::make_unique<Endless>());
    talk.opening(true);
    for (int i = 0; i < 10; ++i)
        EXPECT_EQ(talk.answer(""), QByteArray("go on").toBase64());
    EXPECT_EQ(refusal([&] { talk.answer(""); }), "the server asks for more than the sign-on has");
}

TEST(SaslTalk, WrapsChallengesInBase64)
{
    SaslTalk login(choose_sasl({"LOGIN"}, password("ann", "pencil")));
    EXPECT_EQ(login.opening(true), "LOGIN");
    EXPECT_EQ(login.answer("VXNlcm5hbWU6"), "YW5u");
    EXPECT_EQ(refusal([&] { login.answer("*not base64*"); }),
              "the server's challenge is not in base64");
    EXPECT_EQ(login.answer(""), "cGVuY2ls");
    EXPECT_TRUE(login.is_complete());
}
} // namespace
