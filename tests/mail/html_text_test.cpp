#include "mail/html_text.h"

#include <gtest/gtest.h>

namespace
{
struct Case
{
    QString html;
    QString text;
};
class HtmlText : public testing::TestWithParam<Case>
{
};

TEST_P(HtmlText, IsReadable)
{
    EXPECT_EQ(html_to_text(GetParam().html), GetParam().text);
}

INSTANTIATE_TEST_SUITE_P(
    Layout, HtmlText,
    testing::Values(Case{"<p>one<p>two", "one\ntwo"}, Case{"<b>a</b>b <i>c</i>", "ab c"},
                    Case{"a<br>b<br/><br>c", "a\nb\n\nc"}, Case{"a \n\t b", "a b"},
                    Case{"<div><div>a</div></div><div>b</div>", "a\nb\n"},
                    Case{"<ul><li>one</li><li>two</li></ul>", "one\ntwo\n"},
                    Case{"<tr><td>a</td><td>b</td></tr>", "a b\n"},
                    Case{"<pre>a\n  b</pre>c", "a\n  b\nc"},
                    Case{"<script>if (a < b) x();</script>a<STYLE>p {}</style >b", "ab"},
                    Case{"a<!-- <p>no</p> -->b", "ab"}, Case{"<!DOCTYPE html><?xml?>a", "a"}));

INSTANTIATE_TEST_SUITE_P(
    Entities, HtmlText,
    testing::Values(Case{"&lt;ann&#64;example.org&gt;", "<ann@example.org>"},
                    Case{"&auml;&Auml;&euro;&#x20AC;&#X20ac;", u"äÄ€€€"_qs},
                    Case{"to:&nbsp;ann@example.org",
                         "to: ann@example.org"}, // a blank that does not glue
                    Case{"a &amp b &; &# &#x; &nonsense; &", "a & b &; &# &#x; &nonsense; &"},
                    Case{"&#0;&#xD800;&#x110000;&#99999999999;", u"\uFFFD\uFFFD\uFFFD\uFFFD"_qs},
                    Case{"&#128512;", u"😀"_qs}));

INSTANTIATE_TEST_SUITE_P(
    Links, HtmlText,
    testing::Values(
        Case{"<a href=\"mailto:ann@example.org\">Ann</a>!", "Ann <ann@example.org>!"},
        Case{"<a href='mailto:ann@example.org?subject=x'>ANN@example.org</a>", "ANN@example.org"},
        Case{"<A class=x HREF = MAILTO:ann%40example.org >us</A>", "us <ann@example.org>"},
        Case{"<a href=\"mailto:a&#64;example.org\">us", "us <a@example.org>"}, // never closed
        Case{"<a href=\"mailto:a@x.example\">A<a href=\"mailto:b@x.example\">B</a>",
             "A <a@x.example>B <b@x.example>"},
        Case{"<a href=\"https://example.org\">page</a>", "page"}, Case{"<a href>x</a>", "x"},
        Case{"<a href=\"mailto:\">x</a>", "x"},
        Case{"<a href=\"mailto:a%0Db@x.example\">x</a>", "x <a b@x.example>"}));

INSTANTIATE_TEST_SUITE_P(BrokenMarkup, HtmlText,
                         testing::Values(Case{"a < b and c > d", "a < b and c > d"},
                                         Case{"<ann@example.org", "<ann@example.org"},
                                         Case{"a <3 b", "a <3 b"},
                                         Case{"<a title=\"1 > 2\">x</a>", "x"},
                                         Case{"<p title=\"open>a<p>b", "a\nb"},
                                         Case{"<!-- open <p>a", "a"}, Case{"<script>open", "open"},
                                         Case{"text <b", "text <b"}, Case{"", ""}));
TEST(HtmlToText, ALinkLongerThanAnyAddressIsNone)
{
    const QString address = QString(900, 'a') + "@x.example";
    EXPECT_EQ(html_to_text("<a href=mailto:" + address + ">x</a>"), "x <" + address + ">");
    EXPECT_EQ(html_to_text("<a href=mailto:" + QString(100, 'a') + address + ">x</a>"), "x");
}
} // namespace
