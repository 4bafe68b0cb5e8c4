#include "tests/mail/message_shapes.h"

namespace
{
QByteArray head(const QByteArray &subject)
{
    return "Received: from a (a [192.0.2.1])\n\tby b with ESMTP;\n\tMon, 5 Jan 2026 10:11:12 "
           "+0100\n"
           "From: =?utf-8?Q?J=C3=BCrgen?= <juergen@example.org>\nSubject: " +
           subject + "\nDate: Tue, 6 Jan 2026 08:09:10 +0000\nMIME-Version: 1.0\n";
}

QByteArray part(const QByteArray &fields, const QByteArray &body)
{
    return fields + "\n\n" + body;
}

QByteArray several(const QByteArray &type, const QByteArrayList &parts)
{
    static int number = 0;
    const QByteArray boundary = "bound" + QByteArray::number(++number);
    QByteArray text = "Content-Type: multipart/" + type + "; boundary=\"" + boundary +
                      "\"\n\nThis is in several parts.\n";
    for (const QByteArray &each : parts)
        text += "--" + boundary + '\n' + each + '\n';
    return text + "--" + boundary + "--\n";
}

QByteArray lines(int count, const QByteArray &line)
{
    return QByteArray(line + '\n').repeated(count);
}

const QByteArray plain = "Content-Type: text/plain; charset=utf-8";
const QByteArray in_base64 = "\nContent-Transfer-Encoding: base64";
const QByteArray in_quoted = "\nContent-Transfer-Encoding: quoted-printable";
const QByteArray attached = "\nContent-Disposition: attachment; filename=\"a b.bin\"";

QByteArray text(const QByteArray &words)
{
    return part(plain, words + "\n");
}

QByteArray attachment(int kilobytes)
{
    QByteArray encoded;
    for (int line = 0; line < kilobytes * 14; ++line)
        encoded += QByteArray("QUJD").repeated(18) + '\n';
    return part("Content-Type: application/octet-stream" + attached + in_base64, encoded);
}

QByteArray status(const QByteArray &failed)
{
    return part("Content-Type: message/delivery-status",
                "Reporting-MTA: dns; mx.example.org\n\nFinal-Recipient: rfc822; " + failed +
                    "\nAction: failed\nStatus: 5.1.1\n");
}

QByteArray returned(int kilobytes)
{
    return part("Content-Type: message/rfc822",
                head("returned") +
                    several("mixed", {text("returned text"), attachment(kilobytes)}));
}

QByteArray report(const QByteArrayList &parts)
{
    return several("report; report-type=delivery-status", parts);
}

QByteArrayList texts()
{
    const QByteArray html = "<html><body><p>one</p>" +
                            lines(900, "<p>two &amp; three, ann@example.org</p>") +
                            "</body></html>";
    return {
        head("plain and long") + text(lines(2'000, "a line with j\xC3\xBCrgen@example.org in it")),
        head("latin") +
            part("Content-Type: text/plain; charset=iso-8859-1", lines(500, "gr\xFC\xDF Gott")),
        head("unlabelled") + "\n" + lines(500, "no type at all"),
        head("in base64") +
            part(plain + in_base64, QByteArray(lines(900, "bas\xC3\xA9")).toBase64()),
        head("in quoted-printable") + part(plain + in_quoted, lines(900, "q=C3=BC=\nsoft break")),
        head("html alone") + part("Content-Type: text/html; charset=utf-8", html),
        head("alternative") +
            several("alternative",
                    {text("the plain one"), part("Content-Type: text/html; charset=utf-8", html)}),
        head("html first") +
            several("alternative",
                    {part("Content-Type: text/html; charset=utf-8", html), text("the plain one")}),
        head("odd type") + part("Content-Type: text", lines(500, "an odd type")),
        head("unknown type") + part("Content-Type: x-odd/thing", lines(500, "shown all the same")),
        head("calendar") + part("Content-Type: text/calendar", lines(500, "BEGIN:VCALENDAR")),
        head("one long line") + text(QByteArray(90'000, 'x')),
    };
}

QByteArrayList attachments()
{
    return {
        head("attached behind") + several("mixed", {text("in front"), attachment(200)}),
        head("attached before") + several("mixed", {attachment(200), text("behind")}),
        head("attached text first") +
            several("mixed", {part(plain + attached, lines(600, "not this")), text("but this")}),
        head("nothing but attached") + several("mixed", {attachment(20), attachment(20)}),
        head("itself attached") + part("Content-Type: application/pdf" + attached + in_base64,
                                       lines(300, "QUJDREVGR0g=")),
        head("text itself attached") + part(plain + attached, lines(600, "attached text")),
        head("nested") +
            several("mixed", {several("related", {several("alternative", {text("deep inside")}),
                                                  attachment(10)}),
                              attachment(50), text("a footer")}),
        head("forwarded") + several("mixed", {text("see below"), returned(100)}),
        head("forwarded alone") +
            part("Content-Type: message/rfc822", head("inner") + text(lines(500, "inner text"))),
    };
}

QByteArrayList reports()
{
    return {
        head("report") +
            report({text("It could not be delivered."), status("ann@example.net"), returned(100)}),
        head("two statuses") + report({text("Both failed."), status("ann@example.net"),
                                       status("bob@example.net"), returned(30)}),
        head("wrapped") +
            report({text("A gateway."),
                    part("Content-Type: message/rfc822",
                         head("inside") + report({text("It could not be delivered."),
                                                  status("eve@example.net"), returned(60)}))}),
        "X-Failed-Recipients: zoe@example.net, max@example.net\n" + head("failed field") +
            text(lines(400, "A message that you sent could not be delivered.")),
    };
}

QByteArrayList broken()
{
    return {
        head("no boundary") + "Content-Type: multipart/mixed\n\n" + lines(400, "just text"),
        head("boundary nowhere") + "Content-Type: multipart/mixed; boundary=xyz\n\n" +
            lines(400, "just text"),
        head("not ended") + "Content-Type: multipart/mixed; boundary=xyz\n\n--xyz\n" +
            text(lines(400, "and no end")),
        head("empty"),
        head("no body") + "\n",
        "no header at all\n" + lines(400, "a line"),
        head("charset that is none") +
            part("Content-Type: text/plain; charset=\"no\\\"such\"", lines(400, "caf\xC3\xA9")),
        head("dots") + text("..\n.\n. \n.a\n" + lines(400, ".")),
        head("long subject " + QByteArray("word ").repeated(3'000)) + text("short text"),
        "From: a@example.org (a comment)\nFrom: second@example.org\nSubject: twice\nDate: Tue, 6 "
        "Jan "
        "2026 08:09:10 +0000\n" +
            text(lines(300, "of repeated fields the first counts")),
    };
}
QByteArrayList odd_headers()
{
    const QByteArray few = several("mixed", {text("the text"), attachment(6)});
    const auto mixed = [](const QByteArray &fields) {
        return several("mixed", {part(fields, "its text\n"), attachment(6)});
    };
    return {
        "Subject: " + QByteArray("word ").repeated(240'000) + '\n' + head("second") + few,
        "From: " + QByteArray(1'200'000, 'x') + " <long@example.org>\n" + head("long sender") + few,
        head("long header") + "X-A: " + QByteArray("b ").repeated(600'000) + '\n' +
            text(lines(400, "behind a long header")),
        head("many parameters") + "Content-Type: text/plain" +
            QByteArray("; a=b").repeated(300'000) + "\n\n" + lines(400, "behind many parameters"),
        head("long part header") +
            mixed("X-A: " + QByteArray("b ").repeated(600'000) + '\n' + plain),
        QByteArray(head("returns")).replace("\n", "\r\r\n") + "\r\r\n" +
            lines(400, "of a header that does not end"),
        head("like a literal {123}") +
            several("mixed", {part(plain + "; name=\"a{10}\"; x=\"(((\"\nContent-Description: {99}",
                                   "the text\n"),
                              part("Content-Type: application/x; name=\"\\\"\\\\{3}\"\n"
                                   "Content-Description: \"\"\"{5}\nContent-ID: {7}",
                                   lines(400, "x"))}),
        head("eight bits enclosed") +
            several("mixed",
                    {text("the text"),
                     part("Content-Type: message/rfc822",
                          "From: J\xFCrgen \xFF\x01\x02 <j@x>\nSubject: \xE9 \"q\\t\" {5}\n\nin\n"),
                     attachment(6)}),
        head("folded") + "Content-Type:\n multipart/mixed;\n\tboundary=\n \"b d\"\n\n--b d\n" +
            text("the text") + "\n--b d\n" + attachment(6) + "\n--b d--\n",
        head("blank before the colon") +
            "Content-Type : multipart/mixed; boundary=bd\n\n--bd\n"
            "Content-Type : text/html\n\n<b>its text</b>\n--bd\n" +
            attachment(6) + "\n--bd--\n",
        head("encodings") + mixed(plain + in_base64 + "\nContent-Transfer-Encoding: 7bit"),
        head("empty disposition") + mixed(plain + "\nContent-Disposition:"),
        head("comments") + mixed("Content-Type: text (x) / plain (y)"),
        head("no header of its part") + mixed(""),
    };
}

QByteArrayList odd_types()
{
    return {
        head("external body") +
            several("mixed", {part("Content-Type: message/external-body; access-type=ftp; name=x",
                                   "Content-Type: text/plain\nContent-ID: <x>\n\nghost\n"),
                              text("the text"), attachment(6)}),
        head("external body alone") +
            part("Content-Type: message/external-body; access-type=ftp; name=x",
                 "Content-Type: text/plain\nContent-ID: <x>\n\n" + lines(400, "ghost")),
        head("partial") + part("Content-Type: message/partial; id=a; number=1; total=2",
                               "Subject: part\n\n" + lines(400, "a part")),
        head("enclosed in base64") +
            several("mixed",
                    {part("Content-Type: message/rfc822" + in_base64, "U3ViamVjdDogeAoKYm9keQo=\n"),
                     text("the text"), attachment(6)}),
        head("digest") + several("digest", {"\n" + head("in a digest") + "\nfirst\n",
                                            text("the text"), attachment(6)}),
        head("status in base64") +
            report({text("Failed."),
                    part("Content-Type: message/delivery-status" + in_base64,
                         QByteArray("Reporting-MTA: dns; x\n\nFinal-Recipient: rfc822; "
                                    "a@example.net\nAction: failed\n")
                             .toBase64()),
                    attachment(6)}),
        head("attached alternative") +
            several("mixed", {"Content-Disposition: attachment\n" +
                                  several("alternative", {text("the first")}),
                              text("the second"), attachment(6)}),
    };
}

// Structures that no server can be asked about as about others.
QByteArrayList excessive()
{
    QByteArray parts = text("in the middle");
    QByteArray messages = text("in the middle");
    QByteArray reports = report({text("in the middle"), status("ann@example.net")});
    for (int level = 0; level < 110; ++level) {
        parts = several("mixed", {parts});
        messages = part("Content-Type: message/rfc822", head("inner") + messages);
    }
    for (int level = 0; level < 45; ++level)
        reports = report({text("on level"), reports});
    QByteArrayList statuses;
    for (int i = 0; i < 990; ++i)
        statuses += status("n" + QByteArray::number(i) + "@example.net");
    QByteArrayList pieces;
    for (int i = 0; i < 3'000; ++i)
        pieces += text("piece");
    return {
        head("many levels of parts") + several("mixed", {text("in front"), parts}),
        head("many levels of messages") + several("mixed", {text("in front"), messages}),
        head("many levels of reports") + report({text("in front"), reports}),
        head("many statuses") + report(QByteArrayList{text("All failed.")} + statuses),
        head("many statuses far inside") +
            report({text("in front"), report(QByteArrayList{text("All failed.")} + statuses)}),
        head("many parts") + several("mixed", pieces),
    };
}
} // namespace

QByteArrayList message_shapes()
{
    return texts() + attachments() + reports() + broken() + odd_headers() + odd_types() +
           excessive();
}

QByteArray message_of_long_structure()
{
    const QByteArray recipients = "To: " + QByteArray("a@b,").repeated(600'000) + "a@b\n";
    return head("recipients enclosed") +
           several("mixed", {text("in front"), part("Content-Type: message/rfc822",
                                                    recipients + head("inside") + text("deep"))});
}

QByteArray letter(int number)
{
    return head("letter " + QByteArray::number(number)) +
           text("Words of letter " + QByteArray::number(number));
}
