#include "bench/inputs/message.h"

#include "bench/inputs/encodings.h"
#include "bench/inputs/people.h"
#include "bench/inputs/prose.h"
#include "bench/inputs/random.h"

#include <array>

namespace
{
constexpr std::time_t first_date = 1'700'000'000; // 2023-11-14
constexpr std::time_t seconds_between = 613;
constexpr std::size_t senders = 20'000;

/// A header block below the fixed ones, and the body.
struct Content
{
    std::string headers;
    std::string body;
};

std::string date_header(std::time_t date)
{
    std::tm utc{};
    gmtime_r(&date, &utc);
    std::array<char, 64> text{};
    const std::size_t size =
        std::strftime(text.data(), text.size(), "%a, %d %b %Y %H:%M:%S +0000", &utc);
    return {text.data(), size};
}

// One random number a statement: the order within an expression is the compiler's choice.
std::string trace_headers(Random &random, const std::string &date)
{
    std::string headers;
    for (int hop = 3; hop > 0; --hop) {
        const std::string relay = "relay" + std::to_string(hop) + ".example.net";
        headers.append("Received: from ").append(relay).append(" (").append(relay);
        headers += " [192.0.2.";
        headers += std::to_string(random.below(250)) + "])\n\tby mx.example.org with ESMTPS id ";
        headers += std::to_string(random.below(1'000'000'000)) + "\n\tfor <list@example.org>; ";
        headers += date + '\n';
    }
    return headers;
}

std::string common_headers(Random &random, const Person &from, const std::string &date,
                           const std::string &subject)
{
    std::string headers = trace_headers(random, date);
    headers += "Message-ID: <" + std::to_string(random.below(1U << 30U)) + '.' + from.address;
    headers += ">\nDate: " + date + "\nFrom: " + encoded_words(from.name) + " <";
    headers += from.address + ">\nTo: \"The List\" <list@example.org>\nSubject: ";
    headers += encoded_words(subject) + "\nMIME-Version: 1.0\nX-Mailer: Letters 4.2\n";
    return headers;
}

std::string part(const std::string &type, const std::string &encoding, const std::string &body)
{
    return "Content-Type: " + type + "\nContent-Transfer-Encoding: " + encoding + "\n\n" + body;
}

Content multipart(Random &random, const std::string &type, std::initializer_list<std::string> parts)
{
    const std::string boundary = "=_part_" + std::to_string(random.below(1U << 30U));
    Content content{"Content-Type: multipart/" + type + "; boundary=\"" + boundary + "\"\n",
                    "This is a message of several parts.\n"};
    for (const std::string &each : parts)
        content.body.append("\n--").append(boundary).append("\n").append(each);
    content.body += "\n--" + boundary + "--\n";
    return content;
}

Content single(const std::string &whole_part)
{
    const std::size_t end = whole_part.find("\n\n") + 1;
    return {whole_part.substr(0, end), whole_part.substr(end + 1)};
}

std::string text_part(Random &random, std::size_t size, bool ascii)
{
    const std::string text = prose(random, size, ascii);
    if (ascii)
        return part("text/plain; charset=us-ascii", "7bit", text);
    switch (random.below(3)) {
    case 0:
        return part("text/plain; charset=utf-8", "8bit", text);
    case 1:
        return part("text/plain; charset=utf-8", "quoted-printable", quoted_printable(text));
    default:
        return part("text/plain; charset=utf-8", "base64", base64_lines(text));
    }
}

std::string html_part(Random &random, std::size_t size)
{
    std::string html = "<html><head><style>p { margin: 0 }</style></head><body>\n";
    while (html.size() < size)
        html += "<p class=\"text\">" + prose(random, 400, true) + "</p>\n<br>&nbsp;<b>&amp;</b>\n";
    return part("text/html; charset=utf-8", "quoted-printable",
                quoted_printable(html + "</body></html>\n"));
}

std::string attachment(Random &random, std::size_t size)
{
    std::string block(size, '\0');
    for (char &byte : block)
        byte = static_cast<char>(random.below(256));
    return part("application/octet-stream; name=\"plan.bin\"", "base64", base64_lines(block));
}

std::string status_part(const std::string &failed, const std::string &date)
{
    return "Content-Type: message/delivery-status\n\n"
           "Reporting-MTA: dns; mx.example.org\nArrival-Date: " +
           date + "\n\nFinal-Recipient: rfc822; " + failed + "\nAction: failed\nStatus: 5.1.1\n";
}

std::string returned_part(Random &random, const std::string &date)
{
    std::string returned = "Content-Type: message/rfc822\n\n";
    returned += common_headers(random, person(0), date, "News of the month");
    returned += text_part(random, random.between(1'000, 4'500), true);
    return returned;
}

Content notice(Random &random, const std::string &date)
{
    const std::string failed = person(random.below(1'000'000)).address;
    const std::string words =
        "This is the mail system at host mx.example.org.\n\n"
        "Your message could not be delivered to one or more recipients.\n\n<" +
        failed + ">: 550 5.1.1 user unknown\n\n" + prose(random, random.between(200, 900), true);
    return multipart(random, "report; report-type=delivery-status",
                     {part("text/plain; charset=us-ascii", "7bit", words),
                      status_part(failed, date), returned_part(random, date)});
}

Content rich(Random &random)
{
    switch (random.below(3)) {
    case 0:
        return single(html_part(random, random.between(14'000, 40'000)));
    case 1:
        return multipart(random, "alternative",
                         {text_part(random, random.between(2'000, 8'000), false),
                          html_part(random, random.between(12'000, 38'000))});
    default:
        return multipart(random, "mixed",
                         {text_part(random, random.between(1'000, 4'000), false),
                          attachment(random, random.between(16'000, 38'000))});
    }
}
Message returned_mail(Random &random, std::time_t sent, const std::string &date)
{
    const std::string host = "mx" + std::to_string(random.below(40)) + ".example.org";
    const Person from{"Mail Delivery System", "MAILER-DAEMON@" + host};
    const std::string headers =
        common_headers(random, from, date, "Undelivered Mail Returned to Sender");
    const Content content = notice(random, date);
    return {from.address, sent, headers + content.headers + '\n' + content.body};
}

Message letter(Random &random, std::time_t sent, const std::string &date, bool with_markup)
{
    const bool ascii = random.below(2) == 0;
    const Person from = person(random.below(senders));
    const std::string subject = subject_line(random, ascii);
    const std::string headers = common_headers(random, from, date, subject);
    const Content content =
        with_markup ? rich(random) : single(text_part(random, random.between(900, 8'000), ascii));
    return {from.address, sent, headers + content.headers + '\n' + content.body};
}
} // namespace

Message make_message(std::size_t number)
{
    Random random(number * 0x9E3779B97F4A7C15U + 1);
    const std::time_t sent = first_date + static_cast<std::time_t>(number) * seconds_between;
    const std::string date = date_header(sent);
    const std::size_t kind = random.below(10);
    if (kind < 2)
        return returned_mail(random, sent, date);
    return letter(random, sent, date, kind == 2);
}
